/// Statement handles of a session: prepared ones kept by their text, others used again.
#pragma once

#include <sql.h>

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <string_view>

namespace pelm::ado::odbc {

/// A handle, freed when this goes. The manager frees all of a connection that is closed before.
struct StatementHandle {
  explicit StatementHandle(SQLHSTMT made) : handle(made) {}
  StatementHandle(const StatementHandle&) = delete;
  StatementHandle& operator=(const StatementHandle&) = delete;
  ~StatementHandle();

  SQLHSTMT handle;
  std::string text;  ///< what is prepared; empty: nothing
};

class StatementPool;

/// The right to use a handle; closes its cursor and gives it back when it goes.
class StatementLease {
 public:
  StatementLease() = default;
  StatementLease(StatementPool& pool, std::unique_ptr<StatementHandle> statement)
      : pool_(&pool), statement_(std::move(statement)) {}
  StatementLease(StatementLease&&) noexcept = default;
  StatementLease& operator=(StatementLease&&) = delete;
  StatementLease(const StatementLease&) = delete;
  StatementLease& operator=(const StatementLease&) = delete;
  ~StatementLease();

  SQLHSTMT get() const noexcept { return statement_->handle; }
  const std::string& prepared_text() const noexcept { return statement_->text; }
  void prepared(std::string_view text) { statement_->text = text; }
  /// After a failure: not to be used again.
  void spoil() noexcept { spoiled_ = true; }

 private:
  StatementPool* pool_ = nullptr;
  std::unique_ptr<StatementHandle> statement_;
  bool spoiled_ = false;
};

class StatementPool {
 public:
  /// A handle with `text` prepared where one is kept, else one with nothing prepared; null when
  /// the driver has none to give, which the connection's diagnostics tell.
  std::unique_ptr<StatementHandle> take(SQLHDBC connection, std::string_view text);
  void give_back(std::unique_ptr<StatementHandle> statement) noexcept;
  void clear() noexcept { idle_.clear(); }

 private:
  std::list<std::unique_ptr<StatementHandle>> idle_;  // the longest idle first
};

}  // namespace pelm::ado::odbc
