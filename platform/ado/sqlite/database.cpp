// An open database file: the engine's connection, its settings and its time limit.
#include "platform/ado/sqlite/database.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "pelm/error.h"
#include "platform/ado/sqlite/errors.h"

namespace pelm::ado::sqlite {
namespace {

namespace fs = std::filesystem;

// Each session may keep this much of the database (8 MB); it takes it only as it reads.
constexpr const char* kCacheSize = "PRAGMA cache_size=-8000";
// An idle session keeps no more than this.
constexpr int kIdleCacheBytes = 2 * 1024 * 1024;

const char* synchronous_pragma(Synchronous s) {
  switch (s) {
    case Synchronous::Normal:
      return "PRAGMA synchronous=NORMAL";
    case Synchronous::Off:
      return "PRAGMA synchronous=OFF";
    case Synchronous::Full:
      break;
  }
  return "PRAGMA synchronous=FULL";
}

// With the rights of the process as they are now.
bool may(const fs::path& path, int what) {
  return faccessat(AT_FDCWD, path.c_str(), what, AT_EACCESS) == 0;
}

// Why the file at `path` cannot be opened, as far as the file system tells.
std::string why_not_opened(const fs::path& path, bool read_only) {
  std::error_code error;
  const fs::path folder = path.parent_path();
  if (fs::is_directory(path, error)) return "it is a folder";
  if (!fs::exists(folder, error)) return "the folder does not exist";
  if (!fs::exists(path, error)) {
    return may(folder, W_OK) ? "the file does not exist" : "folder is not writable";
  }
  if (!may(path, R_OK)) return "the file may not be read by this user";
  if (!may(folder, W_OK)) {
    return "folder is not writable: the engine keeps its log beside the file";
  }
  if (!read_only && !may(path, W_OK)) return "the file is not writable";
  return {};
}

/// Every open file of this process, so that a thread can find its own among them.
struct OpenFiles {
  std::mutex guard;
  std::vector<const Database*> all;

  /// Never destroyed: sessions that lie in the pool are closed when the process ends.
  static OpenFiles& instance() {
    static OpenFiles& files = *new OpenFiles;
    return files;
  }
};

}  // namespace

void FinalizeStatement::operator()(sqlite3_stmt* statement) const noexcept {
  sqlite3_finalize(statement);
}

void Database::Closer::operator()(sqlite3* db) const noexcept { sqlite3_close_v2(db); }

Database::Database(Options options) : options_(std::move(options)) {
  watchdog_.limit(options_.connection_timeout);
  open();
  configure();
  OpenFiles& files = OpenFiles::instance();
  const std::lock_guard lock(files.guard);
  files.all.push_back(this);
}

Database::~Database() {
  OpenFiles& files = OpenFiles::instance();
  const std::lock_guard lock(files.guard);
  std::erase(files.all, this);
}

void Database::open() {
  int flags = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
  flags |= options_.read_only ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
  std::error_code error;
  if (options_.in_memory()) {
    file_ = options_.path;
    flags |= SQLITE_OPEN_CREATE;
  } else {
    // Absolute, so that a working folder changed later and a name like "file:x" mean nothing.
    file_ = fs::absolute(options_.path, error).lexically_normal().string();
    if (options_.create && !options_.read_only) flags |= SQLITE_OPEN_CREATE;
    if ((flags & SQLITE_OPEN_CREATE) == 0 && !fs::exists(file_, error)) {
      raise_provider_error(error_number::kProviderFailure,
                           "unable to open database file: " + file_ +
                               " (the file does not exist; write Create=True in the connection "
                               "string to begin an empty database)");
    }
  }
  sqlite3* db = nullptr;
  const int code = sqlite3_open_v2(file_.c_str(), &db, flags, nullptr);
  handle_.reset(db);
  if (code != SQLITE_OK) fail(code, {});
}

void Database::configure() {
  sqlite3* const db = handle();
  watchdog_.install(db, [this] { return waits_for_itself(); });
  sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  sqlite3_db_config(db, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  read_only_ = sqlite3_db_readonly(db, "main") == 1;
  run(synchronous_pragma(options_.synchronous));
  run("PRAGMA foreign_keys=ON");
  run("PRAGMA temp_store=MEMORY");
  run(kCacheSize);
  if (!options_.in_memory()) use_write_ahead_log();
  run("SELECT 1 FROM sqlite_schema LIMIT 1");  // a file that is no database is told now
}

// Once in the file it stays there; only the first opening writes it. The engine does not wait for
// other users of the file here, so we do.
void Database::use_write_ahead_log() {
  if (read_only_) return;
  const auto start = std::chrono::steady_clock::now();
  const auto limit = std::chrono::seconds(options_.connection_timeout);
  for (;;) {
    const int code = sqlite3_exec(handle(), "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
    if (code == SQLITE_OK) return;
    const bool busy = (code & 0xFF) == SQLITE_BUSY;
    if (!busy || (limit.count() > 0 && std::chrono::steady_clock::now() - start > limit)) {
      fail(code, "PRAGMA journal_mode=WAL");
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

bool Database::in_transaction() const { return sqlite3_get_autocommit(handle()) == 0; }

bool Database::file_is_there() const {
  if (options_.in_memory()) return true;
  int moved = 0;
  sqlite3_file_control(handle(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
  return moved == 0;
}

void Database::rest() {
  int used = 0, highest = 0;
  sqlite3_db_status(handle(), SQLITE_DBSTATUS_CACHE_USED, &used, &highest, 0);
  if (used > kIdleCacheBytes) sqlite3_db_release_memory(handle());
  const std::lock_guard lock(OpenFiles::instance().guard);
  writer_ = {};
}

void Database::begin_writing() {
  {
    const std::lock_guard lock(OpenFiles::instance().guard);
    writer_ = std::this_thread::get_id();
  }
  run_again("BEGIN IMMEDIATE");
}

// Only this thread's are looked into: those of others may be at work.
bool Database::waits_for_itself() const {
  OpenFiles& files = OpenFiles::instance();
  const std::lock_guard lock(files.guard);
  return std::ranges::any_of(files.all, [&](const Database* other) {
    return other != this && other->writer_ == std::this_thread::get_id() && other->file_ == file_ &&
           sqlite3_txn_state(other->handle(), "main") == SQLITE_TXN_WRITE;
  });
}

void Database::run(const char* sql) {
  watchdog_.restart();
  const int code = sqlite3_exec(handle(), sql, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) fail(code, sql);
}

StatementHandle Database::prepare(std::string_view sql) const {
  sqlite3_stmt* statement = nullptr;
  const int code = sqlite3_prepare_v3(handle(), sql.data(), static_cast<int>(sql.size()),
                                      SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  if (code != SQLITE_OK) fail(code, sql);
  return StatementHandle(statement);
}

sqlite3_stmt* Database::repeated(const char* sql) {
  auto known = std::ranges::find(repeated_, sql, &Repeated::sql);
  if (known == repeated_.end()) {
    repeated_.push_back({sql, prepare(sql)});
    known = std::prev(repeated_.end());
  }
  return known->statement.get();
}

void Database::run_again(const char* sql) {
  sqlite3_stmt* const statement = repeated(sql);
  watchdog_.restart();
  const int code = sqlite3_step(statement);
  sqlite3_reset(statement);  // the engine's message stands until the next call
  if (code != SQLITE_DONE) fail(code, sql);
}

std::string Database::reason(int code) const {
  const auto in_file = [&](const std::string& why) {
    return ": " + file_ + (why.empty() ? "" : " (" + why + ")");
  };
  const std::string limit = std::to_string(watchdog_.seconds()) + " s";
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return in_file(watchdog_.waited_for_itself()
                         ? "a transaction that this thread has begun on another connection is "
                           "writing to it: end that one first, or work on its connection"
                         : "others were writing for the whole time-out of " + limit);
    case SQLITE_INTERRUPT:
      return " (the statement ran longer than its time-out of " + limit + ")";
    case SQLITE_CANTOPEN:
      return in_file(why_not_opened(file_, options_.read_only));
    case SQLITE_READONLY:
      return in_file(options_.read_only ? "it was opened for reading only"
                                        : why_not_opened(file_, options_.read_only));
    case SQLITE_CORRUPT:
      return in_file("restore it from a copy");
    case SQLITE_NOTADB:
    case SQLITE_FULL:
    case SQLITE_IOERR:
      return in_file({});
    default:
      return {};
  }
}

void Database::fail(int code, std::string_view sql) const {
  sqlite3* const db = handle();
  if (db == nullptr) raise_engine_error(code, sqlite3_errstr(code), reason(code), sql);
  const int extended = sqlite3_extended_errcode(db);
  const bool same = (extended & 0xFF) == (code & 0xFF);
  const std::string message = same ? sqlite3_errmsg(db) : sqlite3_errstr(code);
  raise_engine_error(same ? extended : code, message, reason(code), sql);
}

}  // namespace pelm::ado::sqlite
