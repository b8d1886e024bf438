/// The compiled pages of one thread, each good until one of its files changes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/page_source.h"
#include "host/script_engine.h"
#include "platform/page/site_path.h"

namespace pelm::host {

class PageCache {
 public:
  /// `engine` must outlive it.
  PageCache(ScriptEngine& engine, page::SiteRoot root);

  /// The page as its files stand now. Raises PageSyntaxError.
  std::shared_ptr<const CompiledScript> get(const std::string& page_path);

 private:
  /// What tells that a file is another one than it was.
  struct Stamp {
    std::int64_t modified_ns = 0;
    std::uintmax_t size = 0;
    std::uint64_t inode = 0;

    friend bool operator==(const Stamp&, const Stamp&) = default;
  };
  struct StampedFile {
    std::string path;  ///< of the file system
    Stamp stamp;
  };
  struct Entry {
    std::shared_ptr<const CompiledScript> script;
    std::vector<StampedFile> files;
  };

  static Stamp stamp_of(const std::string& file);
  static bool is_current(const Entry& entry);
  Entry compile(const std::string& page_path);

  ScriptEngine& engine_;
  page::SiteRoot root_;
  PageFiles files_;
  std::unordered_map<std::string, Entry> entries_;
};

}  // namespace pelm::host
