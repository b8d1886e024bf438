// Between the engine and the system's files: it asks the watcher before each call, and then passes
// the call on.
#include "support/file_layer.h"

#include <sqlite3.h>

#include <atomic>
#include <stdexcept>

namespace pelm::test {
namespace {

using Kind = FileCall::Kind;

/// The system's own file stands behind it in the same piece of memory.
struct File {
  sqlite3_file base;
  const char* path;  // the engine keeps it until the file is closed
  bool is_database;
};

std::atomic<FileWatcher*> the_watcher = nullptr;

FileCall call_of(sqlite3_file* file, Kind kind) {
  const auto* ours = reinterpret_cast<File*>(file);
  return {kind, ours->path, ours->is_database};
}
int ask(const FileCall& call) { return the_watcher.load()->before(call); }
int ask(sqlite3_file* file, Kind kind) { return ask(call_of(file, kind)); }
std::string_view path_of(const char* name) { return name == nullptr ? "" : name; }

sqlite3_vfs* system_files(sqlite3_vfs* ours) { return static_cast<sqlite3_vfs*>(ours->pAppData); }
sqlite3_file* behind(sqlite3_file* file) {
  return reinterpret_cast<sqlite3_file*>(reinterpret_cast<File*>(file) + 1);
}

int close(sqlite3_file* file) { return behind(file)->pMethods->xClose(behind(file)); }

int read(sqlite3_file* file, void* into, int size, sqlite3_int64 at) {
  FileCall call = call_of(file, Kind::Read);
  call.at = at;
  if (const int failure = ask(call)) return failure;
  const int result = behind(file)->pMethods->xRead(behind(file), into, size, at);
  the_watcher.load()->after_read(call, {static_cast<char*>(into), static_cast<std::size_t>(size)});
  return result;
}

int write(sqlite3_file* file, const void* from, int size, sqlite3_int64 at) {
  FileCall call = call_of(file, Kind::Write);
  call.at = at;
  call.data = {static_cast<const char*>(from), static_cast<std::size_t>(size)};
  if (const int failure = ask(call)) return failure;
  return behind(file)->pMethods->xWrite(behind(file), from, size, at);
}

int truncate(sqlite3_file* file, sqlite3_int64 size) {
  FileCall call = call_of(file, Kind::Truncate);
  call.at = size;
  if (const int failure = ask(call)) return failure;
  return behind(file)->pMethods->xTruncate(behind(file), size);
}

int sync(sqlite3_file* file, int flags) {
  if (const int failure = ask(file, Kind::Sync)) return failure;
  return behind(file)->pMethods->xSync(behind(file), flags);
}

int file_size(sqlite3_file* file, sqlite3_int64* size) {
  if (const int failure = ask(file, Kind::Size)) return failure;
  return behind(file)->pMethods->xFileSize(behind(file), size);
}

int lock(sqlite3_file* file, int kind) {
  if (const int failure = ask(file, Kind::Lock)) return failure;
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
  if (const int failure = ask(file, Kind::ShareMemory)) return failure;
  return behind(file)->pMethods->xShmMap(behind(file), page, size, extend, memory);
}

int shm_lock(sqlite3_file* file, int offset, int count, int flags) {
  const bool takes = (flags & SQLITE_SHM_LOCK) != 0;  // letting go cannot fail
  if (const int failure = takes ? ask(file, Kind::LockMemory) : SQLITE_OK) return failure;
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
  const bool is_database = (flags & SQLITE_OPEN_MAIN_DB) != 0;
  if (const int failure = ask({Kind::Open, path_of(name), is_database})) return failure;
  sqlite3_vfs* system = system_files(ours);
  const int result = system->xOpen(system, name, behind(file), flags, flags_out);
  if (result != SQLITE_OK) return result;
  auto* opened = reinterpret_cast<File*>(file);
  opened->path = name == nullptr ? "" : name;
  opened->is_database = is_database;
  file->pMethods = &kMethods;
  return SQLITE_OK;
}

int remove(sqlite3_vfs* ours, const char* name, int sync_folder) {
  if (const int failure = ask({Kind::Delete, path_of(name)})) return failure;
  return system_files(ours)->xDelete(system_files(ours), name, sync_folder);
}

int access(sqlite3_vfs* ours, const char* name, int flags, int* result) {
  if (const int failure = ask({Kind::Access, path_of(name)})) return failure;
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
  ours.zName = "pelm-watched";
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

void watch_files(FileWatcher& watcher) {
  the_watcher = &watcher;
  static const bool registered = sqlite3_vfs_register(make_layer(), 1) == SQLITE_OK;
  if (!registered) throw std::runtime_error("SQLite did not take the watched file layer");
}

}  // namespace pelm::test
