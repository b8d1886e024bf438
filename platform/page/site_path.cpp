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

/// Without links on the way, a path below a real root is the file's real path.
bool may_have_links(const fs::path& root, const fs::path& relative) {
  fs::path file = root;
  for (const fs::path& component : relative) {
    file /= component;
    std::error_code ignored;
    const fs::file_type type = fs::symlink_status(file, ignored).type();
    if (type == fs::file_type::not_found) return false;
    if (type == fs::file_type::symlink || type == fs::file_type::none) return true;
  }
  return false;
}

}  // namespace

SiteRoot::SiteRoot(const fs::path& folder) {
  std::error_code error;
  path_ = fs::weakly_canonical(folder, error);
  if (error) path_ = folder;
  // A "/" at the end would count as one more, empty, component.
  if (!path_.has_filename()) path_ = path_.parent_path();
}

std::optional<fs::path> resolve_in_site(const SiteRoot& site, std::string_view from,
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

  const fs::path& root = site.path();
  fs::path file = relative == "." ? root : root / relative;
  if (!may_have_links(root, relative)) return file;
  std::error_code error;
  const fs::path real_file = fs::weakly_canonical(file, error);
  if (error || !lies_within(root, real_file)) return std::nullopt;
  return file;
}

std::string_view folder_of(std::string_view page_path) noexcept {
  return page_path.substr(0, page_path.rfind('/') + 1);
}

}  // namespace pelm::page
