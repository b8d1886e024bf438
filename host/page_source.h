/// Pages as text: includes put together, `<% %>` turned into one script with a source map.
///
/// Contents: `PageSource`, `PagePiece`, `read_page`, `PageSyntaxError`.
///
///     const PageSource page = read_page(files, "/agenda/default.page");
///     page.script;                      // what the script engine compiles
///     page.place_of(12);                // the file and line that line 12 of it comes from
///
/// Knows no socket and no script engine. Text outside `<% %>` is kept byte for byte.
#pragma once

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/page/site_path.h"

namespace pelm::host {

/// A line of a file of the site.
struct SourcePlace {
  std::string file;  ///< path of the site, begins with "/"
  int line = 1;

  friend bool operator==(const SourcePlace&, const SourcePlace&) = default;
};

/// A page that cannot be put together: where and why, in Portuguese.
class PageSyntaxError : public std::runtime_error {
 public:
  PageSyntaxError(SourcePlace place, const std::string& why)
      : std::runtime_error(why), place_(std::move(place)) {}
  const SourcePlace& place() const noexcept { return place_; }

 private:
  SourcePlace place_;
};

/// The names that the script calls; `host/page_runner` defines them.
inline constexpr std::string_view kWriteHtml = "__pelm_html";    ///< (index into `html`)
inline constexpr std::string_view kWriteValue = "__pelm_value";  ///< (value of a `<%= %>`)

struct PageSource {
  std::string script;
  std::vector<std::string> html;   ///< the texts between scripts, in order
  std::vector<std::string> files;  ///< the page first, then what it includes, each once

  /// Where line `script_line` (from 1) of the script comes from.
  SourcePlace place_of(int script_line) const;

  struct Segment {
    int script_line;  ///< first line of the script that it covers
    std::size_t file;
    int file_line;
    int last_file_line;  ///< an engine may find an error just behind the end
  };
  std::vector<Segment> segments;  ///< by script line
};

/// How a page's files are found: the text of a file of the site, and the file that an include
/// names. Both throw PageSyntaxError without a place for what cannot be read.
struct PageFiles {
  /// `path` begins with "/".
  std::function<std::string(const std::string& path)> read;
  /// The path of the site that `name` means in a file of folder `from`; `from_root` for
  /// `virtual="…"`.
  std::function<std::string(std::string_view from, std::string_view name, bool from_root)> resolve;
};

/// Raises PageSyntaxError: a file that is missing or outside the site, an include that comes back
/// to itself, a `<%` without end, a server script block that pages do not have.
PageSource read_page(const PageFiles& files, const std::string& page_path);

/// The files of a folder, never outside it.
PageFiles files_below(const page::SiteRoot& root);

}  // namespace pelm::host
