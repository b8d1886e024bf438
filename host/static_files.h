/// Files that go out as they are: which of them may, and what tells one version from another.
#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/page/site_path.h"

namespace pelm::host {

/// "Sun, 06 Nov 1994 08:49:37 GMT".
std::string http_date(std::time_t time);
/// Nothing when the text is no such date.
std::optional<std::time_t> parse_http_date(std::string_view text);

struct StaticFile {
  std::filesystem::path path;
  std::string media_type;
  std::uintmax_t size = 0;
  std::string etag;           ///< with its quotes
  std::string last_modified;  ///< HTTP date

  /// Whether a client that sent these headers has this version already. Either may be empty.
  bool is_known_to(std::string_view if_none_match, std::string_view if_modified_since) const;
};

class StaticFiles {
 public:
  /// `more_types`: suffixes with or without "." and their media types.
  StaticFiles(page::SiteRoot root,
              const std::vector<std::pair<std::string, std::string>>& more_types);

  /// The file at a site path; nothing when there is none, when it lies outside the root, or when
  /// its suffix has no media type: sources of pages, includes, databases and settings never go out.
  std::optional<StaticFile> find(const std::string& site_path) const;

 private:
  page::SiteRoot root_;
  std::vector<std::pair<std::string, std::string>> types_;
};

}  // namespace pelm::host
