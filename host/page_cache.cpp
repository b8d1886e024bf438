// Compiled once, then four system calls at most for a page of four files.
#include "host/page_cache.h"

#include <sys/stat.h>

#include <algorithm>
#include <utility>

namespace pelm::host {

PageCache::PageCache(ScriptEngine& engine, page::SiteRoot root)
    : engine_(engine), root_(std::move(root)), files_(files_below(root_)) {}

std::shared_ptr<const CompiledScript> PageCache::get(const std::string& page_path) {
  const auto known = entries_.find(page_path);
  if (known != entries_.end() && is_current(known->second)) return known->second.script;
  Entry entry = compile(page_path);
  auto script = entry.script;
  entries_.insert_or_assign(page_path, std::move(entry));
  return script;
}

PageCache::Entry PageCache::compile(const std::string& page_path) {
  // Stamped before it is read: a file that changes meanwhile is read again next time.
  Entry entry;
  PageFiles stamping = files_;
  stamping.read = [&](const std::string& path) {
    const std::string file = (root_.path() / path.substr(1)).string();
    const auto same = [&](const StampedFile& stamped) { return stamped.path == file; };
    if (std::none_of(entry.files.begin(), entry.files.end(), same)) {
      entry.files.push_back({file, stamp_of(file)});
    }
    return files_.read(path);
  };
  entry.script = engine_.compile(read_page(stamping, page_path));
  return entry;
}

bool PageCache::is_current(const Entry& entry) {
  return std::all_of(entry.files.begin(), entry.files.end(),
                     [](const StampedFile& file) { return stamp_of(file.path) == file.stamp; });
}

PageCache::Stamp PageCache::stamp_of(const std::string& file) {
  struct stat status = {};
  if (::stat(file.c_str(), &status) != 0) return {};
  return {std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec,
          static_cast<std::uintmax_t>(status.st_size), status.st_ino};
}

}  // namespace pelm::host
