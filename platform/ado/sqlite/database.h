/// An open database file: the engine's connection, its settings and its time limit.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/ado/sqlite/connection_options.h"
#include "platform/ado/sqlite/watchdog.h"

struct sqlite3;
struct sqlite3_stmt;

namespace pelm::ado::sqlite {

struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const noexcept;
};
using StatementHandle = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

/// Write-ahead log, foreign keys on, "…" never a text, nothing beside the file but its log. Pages
/// are not mapped into memory: a file cut short by another program would then end the process
/// instead of raising an error.
class Database {
 public:
  /// Opens within `options.connection_timeout`. Raises kProviderFailure saying which file and why.
  explicit Database(Options options);
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database();

  sqlite3* handle() const { return handle_.get(); }
  Watchdog& watchdog() { return watchdog_; }
  bool read_only() const { return read_only_; }
  bool in_transaction() const;
  /// False when the file was moved, replaced or deleted since.
  bool file_is_there() const;

  /// Before a time without work, after which another thread may take it over.
  void rest();

  /// Begins a transaction that holds the write lock. Waits for others that hold it, but not for a
  /// transaction of this very thread, which could not end meanwhile. Raises.
  void begin_writing();

  /// Runs statements of our own that give no rows. Raises.
  void run(const char* sql);
  /// The same for a single one, a constant, that is run time and again: it stays prepared.
  void run_again(const char* sql);
  /// So that its first run asks for no memory. Raises.
  void keep_prepared(const char* sql) { (void)repeated(sql); }
  /// One for repeated use. Raises.
  StatementHandle prepare(std::string_view sql) const;
  /// Raises the engine's last error. `sql` is what was being run.
  [[noreturn]] void fail(int code, std::string_view sql) const;

 private:
  struct Closer {
    void operator()(sqlite3* db) const noexcept;
  };
  void open();
  void configure();
  void use_write_ahead_log();
  bool waits_for_itself() const;
  std::string reason(int code) const;
  sqlite3_stmt* repeated(const char* sql);

  struct Repeated {
    std::string_view sql;
    StatementHandle statement;
  };

  Options options_;
  std::string file_;  ///< absolute, for messages
  std::unique_ptr<sqlite3, Closer> handle_;
  std::vector<Repeated> repeated_;
  Watchdog watchdog_;
  std::thread::id writer_;  ///< whose transaction last took the write lock here; guarded by the
                            ///< open files' lock
  bool read_only_ = false;
};

}  // namespace pelm::ado::sqlite
