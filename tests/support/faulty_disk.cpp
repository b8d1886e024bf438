// A file layer of SQLite's that asks before each call whether it is to fail, and otherwise passes
// it on to the system's own.
#include "support/faulty_disk.h"

#include <sqlite3.h>

#include <cstring>
#include <new>
#include <stdexcept>

namespace pelm::test {
namespace {

using Call = FaultyDisk::Call;
using Fault = FaultyDisk::Fault;

/// The system's own file stands behind it in the same piece of memory.
struct File {
  sqlite3_file base;
  bool is_database;
};

FaultyDisk& disk() { return FaultyDisk::installed(); }
sqlite3_vfs* system_files(sqlite3_vfs* ours) { return static_cast<sqlite3_vfs*>(ours->pAppData); }
sqlite3_file* behind(sqlite3_file* file) {
  return reinterpret_cast<sqlite3_file*>(reinterpret_cast<File*>(file) + 1);
}

int write_failure() {
  switch (disk().fault()) {
    case Fault::Full:
      return SQLITE_FULL;
    case Fault::ReadOnly:
      return SQLITE_READONLY;
    default:
      return SQLITE_IOERR_WRITE;
  }
}

int close(sqlite3_file* file) { return behind(file)->pMethods->xClose(behind(file)); }

int read(sqlite3_file* file, void* into, int size, sqlite3_int64 at) {
  const bool is_database = reinterpret_cast<File*>(file)->is_database;
  const bool fails = disk().fails(is_database ? Call::ReadDatabase : Call::Read);
  if (fails && disk().fault() != Fault::CorruptPage) return SQLITE_IOERR_READ;
  const int result = behind(file)->pMethods->xRead(behind(file), into, size, at);
  if (fails) std::memset(into, 0xA5, static_cast<std::size_t>(size));
  return result;
}

int write(sqlite3_file* file, const void* from, int size, sqlite3_int64 at) {
  if (disk().fails(Call::Write)) return write_failure();
  return behind(file)->pMethods->xWrite(behind(file), from, size, at);
}

int truncate(sqlite3_file* file, sqlite3_int64 size) {
  if (disk().fails(Call::Write)) return write_failure();
  return behind(file)->pMethods->xTruncate(behind(file), size);
}

int sync(sqlite3_file* file, int flags) {
  if (disk().fails(Call::Other)) return SQLITE_IOERR_FSYNC;
  return behind(file)->pMethods->xSync(behind(file), flags);
}

int file_size(sqlite3_file* file, sqlite3_int64* size) {
  if (disk().fails(Call::Other)) return SQLITE_IOERR_FSTAT;
  return behind(file)->pMethods->xFileSize(behind(file), size);
}

int lock(sqlite3_file* file, int kind) {
  if (disk().fails(Call::Other)) return SQLITE_IOERR_LOCK;
  return behind(file)->pMethods->xLock(behind(file), kind);
}

int unlock(sqlite3_file* file, int kind) {
  return behind(file)->pMethods->xUnlock(behind(file), kind);
}

int check_reserved(sqlite3_file* file, int* result) {
  return behind(file)->pMethods->xCheckReservedLock(behind(file), result);
}

int control(sqlite3_file* file, int what, void* argument) {
  return behind(file)->pMethods->xFileControl(behind(file), what, argument);
}

int sector_size(sqlite3_file* file) { return behind(file)->pMethods->xSectorSize(behind(file)); }

int characteristics(sqlite3_file* file) {
  return behind(file)->pMethods->xDeviceCharacteristics(behind(file));
}

int shm_map(sqlite3_file* file, int page, int size, int extend, void volatile** memory) {
  if (disk().fails(Call::Other)) return SQLITE_IOERR_SHMMAP;
  return behind(file)->pMethods->xShmMap(behind(file), page, size, extend, memory);
}

int shm_lock(sqlite3_file* file, int offset, int count, int flags) {
  const bool takes = (flags & SQLITE_SHM_LOCK) != 0;  // letting go cannot fail
  if (takes && disk().fails(Call::Other)) return SQLITE_IOERR_SHMLOCK;
  return behind(file)->pMethods->xShmLock(behind(file), offset, count, flags);
}

void shm_barrier(sqlite3_file* file) { behind(file)->pMethods->xShmBarrier(behind(file)); }

int shm_unmap(sqlite3_file* file, int remove) {
  return behind(file)->pMethods->xShmUnmap(behind(file), remove);
}

/// Version 2: without memory maps, which would read past this layer.
constexpr sqlite3_io_methods kMethods = {2,
                                         close,
                                         read,
                                         write,
                                         truncate,
                                         sync,
                                         file_size,
                                         lock,
                                         unlock,
                                         check_reserved,
                                         control,
                                         sector_size,
                                         characteristics,
                                         shm_map,
                                         shm_lock,
                                         shm_barrier,
                                         shm_unmap,
                                         nullptr,
                                         nullptr};

int open(sqlite3_vfs* ours, const char* name, sqlite3_file* file, int flags, int* flags_out) {
  file->pMethods = nullptr;
  if (disk().fails(Call::Other)) return SQLITE_CANTOPEN;
  sqlite3_vfs* system = system_files(ours);
  const int result = system->xOpen(system, name, behind(file), flags, flags_out);
  if (result != SQLITE_OK) return result;
  reinterpret_cast<File*>(file)->is_database = (flags & SQLITE_OPEN_MAIN_DB) != 0;
  file->pMethods = &kMethods;
  return SQLITE_OK;
}

int remove(sqlite3_vfs* ours, const char* name, int sync_folder) {
  if (disk().fails(Call::Write)) return SQLITE_IOERR_DELETE;
  return system_files(ours)->xDelete(system_files(ours), name, sync_folder);
}

int access(sqlite3_vfs* ours, const char* name, int flags, int* result) {
  if (disk().fails(Call::Other)) return SQLITE_IOERR_ACCESS;
  return system_files(ours)->xAccess(system_files(ours), name, flags, result);
}

int full_path(sqlite3_vfs* ours, const char* name, int size, char* path) {
  return system_files(ours)->xFullPathname(system_files(ours), name, size, path);
}

/// A copy of the system's layer, so that clock, chance and pauses are its own.
sqlite3_vfs* make_layer() {
  sqlite3_vfs* system = sqlite3_vfs_find(nullptr);
  if (!system) throw std::runtime_error("SQLite has no file layer here");
  static sqlite3_vfs ours = *system;
  ours.zName = "pelm-faulty";
  ours.pNext = nullptr;
  ours.pAppData = system;
  ours.szOsFile = static_cast<int>(sizeof(File)) + system->szOsFile;
  ours.xOpen = open;
  ours.xDelete = remove;
  ours.xAccess = access;
  ours.xFullPathname = full_path;
  return &ours;
}

}  // namespace

FaultyDisk::FaultyDisk() = default;

FaultyDisk& FaultyDisk::installed() {
  static FaultyDisk disk;
  static const bool registered = [] {
    if (sqlite3_vfs_register(make_layer(), 1) != SQLITE_OK) {
      throw std::runtime_error("SQLite did not take the faulty file layer");
    }
    return true;
  }();
  static_cast<void>(registered);
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

bool FaultyDisk::fails(Call call) {
  if (left_ == 0) return false;
  const Fault fault = fault_;
  const bool concerned = fault == Fault::CorruptPage ? call == Call::ReadDatabase
                         : fault == Fault::Full || fault == Fault::ReadOnly ? call == Call::Write
                                                                            : true;
  if (!concerned) return false;
  const bool lasts = fault != Fault::IoError && fault != Fault::CorruptPage;
  if (left_ > 1) {
    --left_;
    return false;
  }
  if (!lasts) left_ = 0;
  failed_ = true;
  return true;
}

}  // namespace pelm::test
