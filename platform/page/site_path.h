/// Files of a site, which never lie outside its root.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace pelm::page {

/// A site's folder, where it really is: links to it are followed once, here.
class SiteRoot {
 public:
  SiteRoot(const std::filesystem::path& folder);  // a folder is one wherever a root is asked for
  const std::filesystem::path& path() const noexcept { return path_; }

 private:
  std::filesystem::path path_;
};

/// The file that `path` names, seen from the folder `from` (a path of the site, begins with "/"):
/// one that begins with "/" is taken from the root. "\" counts as "/". Nothing when it leaves
/// the site, by ".." or by a symbolic link, or has a null byte. The file need not exist.
std::optional<std::filesystem::path> resolve_in_site(const SiteRoot& site, std::string_view from,
                                                     std::string_view path);

/// The folder of a page: "/loja/item.page" gives "/loja/".
std::string_view folder_of(std::string_view page_path) noexcept;

}  // namespace pelm::page
