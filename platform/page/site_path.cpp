// Path arithmetic first, then the file system's word: both must stay inside the root.
#include "platform/page/site_path.h"

#include <algorithm>
#include <string>
#include <system_error>

namespace pelm::page {
namespace fs = std::filesystem;
namespace {

bool lies_within(const fs::path& root, const fs::path& file) {
  const auto [root_end, unused] = std::mismatch(root.begin(), root.end(), file.begin(), file.end());
  return root_end == root.end();
}

/// Without a "/" at the end, which would count as one more, empty, component.
fs::path canonical_root(const fs::path& root, std::error_code& error) {
  fs::path canonical = fs::weakly_canonical(root, error);
  return canonical.has_filename() ? canonical : canonical.parent_path();
}

}  // namespace

std::optional<fs::path> resolve_in_site(const fs::path& root, std::string_view from,
                                        std::string_view path) {
  if (path.find('\0') != std::string_view::npos) return std::nullopt;
  std::string site_path(path);
  std::replace(site_path.begin(), site_path.end(), '\\', '/');
  if (!site_path.starts_with('/')) site_path.insert(0, from);

  const fs::path relative =
      fs::path(site_path.substr(site_path.find_first_not_of('/') == std::string::npos
                                    ? site_path.size()
                                    : site_path.find_first_not_of('/')))
          .lexically_normal();
  if (!relative.empty() && *relative.begin() == "..") return std::nullopt;

  std::error_code error;
  const fs::path real_root = canonical_root(root, error);
  if (error) return std::nullopt;
  const fs::path file = relative == "." ? real_root : real_root / relative;
  const fs::path real_file = fs::weakly_canonical(file, error);
  if (error || !lies_within(real_root, real_file)) return std::nullopt;
  return file;
}

std::string_view folder_of(std::string_view page_path) noexcept {
  return page_path.substr(0, page_path.rfind('/') + 1);
}

}  // namespace pelm::page
