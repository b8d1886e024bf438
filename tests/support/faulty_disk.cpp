// Which calls a fault concerns, and what they fail with.
#include "support/faulty_disk.h"

#include <sqlite3.h>

#include <algorithm>

namespace pelm::test {
namespace {

using Kind = FileCall::Kind;

bool writes(Kind kind) {
  return kind == Kind::Write || kind == Kind::Truncate || kind == Kind::Delete;
}

int io_error(Kind kind) {
  switch (kind) {
    case Kind::Open:
      return SQLITE_CANTOPEN;
    case Kind::Access:
      return SQLITE_IOERR_ACCESS;
    case Kind::Read:
      return SQLITE_IOERR_READ;
    case Kind::Write:
    case Kind::Truncate:
      return SQLITE_IOERR_WRITE;
    case Kind::Sync:
      return SQLITE_IOERR_FSYNC;
    case Kind::Size:
      return SQLITE_IOERR_FSTAT;
    case Kind::Lock:
      return SQLITE_IOERR_LOCK;
    case Kind::ShareMemory:
      return SQLITE_IOERR_SHMMAP;
    case Kind::LockMemory:
      return SQLITE_IOERR_SHMLOCK;
    case Kind::Delete:
      break;
  }
  return SQLITE_IOERR_DELETE;
}

}  // namespace

FaultyDisk& FaultyDisk::installed() {
  static FaultyDisk disk;
  watch_files(disk);
  return disk;
}

void FaultyDisk::fail_at(std::size_t n, Fault fault) {
  stop();
  fault_ = fault;
  left_ = n;
}

void FaultyDisk::stop() {
  left_ = 0;
  failed_ = false;
}

int FaultyDisk::before(const FileCall& call) {
  const Fault fault = fault_;
  if (fault == Fault::CorruptPage) return SQLITE_OK;
  const bool of_writes = fault == Fault::Full || fault == Fault::ReadOnly;
  if ((of_writes && !writes(call.kind)) || !fails()) return SQLITE_OK;
  if (of_writes && call.kind != Kind::Delete) {
    return fault == Fault::Full ? SQLITE_FULL : SQLITE_READONLY;
  }
  return io_error(call.kind);
}

void FaultyDisk::after_read(const FileCall& call, std::span<char> data) {
  if (fault_ == Fault::CorruptPage && call.is_database && fails()) {
    std::ranges::fill(data, '\xA5');
  }
}

bool FaultyDisk::fails() {
  if (left_ == 0) return false;
  if (left_ > 1) {
    --left_;
    return false;
  }
  const Fault fault = fault_;
  if (fault == Fault::IoError || fault == Fault::CorruptPage) left_ = 0;  // the others last
  failed_ = true;
  return true;
}

}  // namespace pelm::test
