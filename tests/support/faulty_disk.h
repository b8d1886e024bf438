/// Makes a chosen call of the embedded engine's file layer fail.
///
///     pelm::test::FaultyDisk& disk = pelm::test::FaultyDisk::installed();
///     disk.fail_at(3, pelm::test::FaultyDisk::Fault::Full);
///     … the third write from now on, and all after it, find the disk full …
///     disk.stop();
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "support/file_layer.h"

namespace pelm::test {

/// Any thread may use it; there is one in a process.
class FaultyDisk : public FileWatcher {
 public:
  enum class Fault : std::uint8_t {
    IoError,      ///< one call of any kind fails
    LastingIo,    ///< that call, and all after it
    Full,         ///< from then on every write finds the disk full
    ReadOnly,     ///< from then on every write is forbidden
    CorruptPage,  ///< one page read from the database's file is nonsense
  };

  static FaultyDisk& installed();

  /// The n-th call that the fault concerns, 1 being the next; counting begins anew.
  void fail_at(std::size_t n, Fault fault);
  /// No call fails any more; counting begins anew.
  void stop();
  /// True when a call has failed since counting began.
  bool failed() const { return failed_; }

  int before(const FileCall& call) override;
  void after_read(const FileCall& call, std::span<char> data) override;

 private:
  FaultyDisk() = default;

  bool fails();

  std::atomic<std::size_t> left_ = 0;  ///< calls until the one that fails; 0: none does
  std::atomic<Fault> fault_ = Fault::IoError;
  std::atomic<bool> failed_ = false;
};

}  // namespace pelm::test
