/// A file layer of the embedded engine's: whatever it asks of a file, a watcher hears of first.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace pelm::test {

struct FileCall {
  enum class Kind : std::uint8_t {
    Open,
    Access,
    Read,
    Write,
    Truncate,
    Sync,
    Size,
    Lock,
    ShareMemory,
    LockMemory,
    Delete,
  };
  Kind kind;
  std::string_view path;  ///< empty for a file without a name
  bool is_database = false;
  std::int64_t at = 0;  ///< of a write where it begins, of a truncation the new size
  std::span<const char> data = {};
};

/// Called from any thread.
class FileWatcher {
 public:
  FileWatcher() = default;
  FileWatcher(const FileWatcher&) = delete;
  FileWatcher& operator=(const FileWatcher&) = delete;
  virtual ~FileWatcher() = default;

  /// The engine's code that the call fails with; 0 lets it go on.
  virtual int before(const FileCall& call) = 0;
  /// What a read gave, which may be changed.
  virtual void after_read(const FileCall& /*call*/, std::span<char> /*data*/) {}
};

/// Every file that is opened from now on is `watcher`'s, and those that were another watcher's are
/// too. It is there as long as the program runs.
void watch_files(FileWatcher& watcher);

}  // namespace pelm::test
