/// What the web server does for a page.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "pelm/object.h"
#include "platform/page/site_path.h"

namespace pelm::page {

class Server : public Object {
 public:
  /// Creates an object by its programmatic identifier. Given by whoever knows the classes.
  using Creator = std::function<ObjectRef(std::string_view programmatic_identifier)>;
  Server(SiteRoot root, std::string page_path, Creator creator);

  /// Raises 429 when nobody creates such an object.
  ObjectRef CreateObject(std::string_view programmatic_identifier) const;
  /// &, <, >, " and ' as character references.
  static std::string HTMLEncode(std::string_view text);
  /// UTF-8 bytes outside letters, digits, "-", "_" and "." as %XX; a blank as "+".
  static std::string URLEncode(std::string_view text);
  /// A file of the site: a path that begins with "/" is taken from the root, another from the
  /// page's folder; "\\" counts as "/". The file need not exist. Raises invalid call (5) for a
  /// path that leaves the root, by ".." or by a symbolic link, or has a null byte.
  std::string MapPath(std::string_view path) const;
  /// Seconds a page may run; the host reads it. 0 leaves the host's own limit. Raises invalid
  /// call (5) for a negative number.
  std::int32_t ScriptTimeout() const { return script_timeout_; }
  void ScriptTimeout(std::int32_t seconds);

 private:
  SiteRoot root_;
  std::string page_path_;  ///< from the root, begins with "/"
  Creator creator_;
  std::int32_t script_timeout_ = 0;
};

}  // namespace pelm::page
