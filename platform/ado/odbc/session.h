/// One conversation with a database server through its driver.
#pragma once

#include <sql.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/ado/odbc/catalog.h"
#include "platform/ado/odbc/link.h"
#include "platform/ado/odbc/statement.h"
#include "platform/ado/odbc/values.h"
#include "platform/ado/odbc/watchdog.h"
#include "platform/ado/provider.h"

namespace pelm::ado::odbc {

class OdbcSession final : public Session {
 public:
  explicit OdbcSession(const SessionSettings& settings);

  void command_timeout(std::int32_t seconds) override { timeout_ = seconds; }
  std::unique_ptr<Cursor> execute(std::string_view sql, std::span<const Variant> values) override;
  ColumnList describe(std::string_view table) override;
  std::string quoted(std::string_view identifier) const override;
  std::string same_value(const Column& column) const override;
  void call(std::string_view procedure, std::span<ProcedureArgument> arguments) override;
  void begin(IsolationLevelEnum level) override;
  void commit() override;
  void rollback() override;
  bool reset() noexcept override;
  bool still_good() noexcept override;

  // For cursors.
  /// The next row of a running statement; false at the end. Raises.
  bool fetch(StatementLease& lease);
  [[noreturn]] void fail(StatementLease& lease, std::string_view sql, bool limit_passed = false);

 private:
  std::unique_ptr<Cursor> run_statement(std::string_view sql, std::span<const Variant> values);
  StatementLease take_statement(std::string_view prepared = {});
  /// Runs what `start` begins within the time limit, and gives the pieces it asks for. True when
  /// there is something to read, false for a statement that found no row to change.
  template <class Start>
  bool run(StatementLease& lease, std::string_view sql, Start start);
  bool run_direct(StatementLease& lease, std::string_view sql);
  bool run_prepared(StatementLease& lease, std::string_view sql, std::span<const Variant> values);
  std::unique_ptr<Cursor> result_of(StatementLease lease, std::string_view sql, bool has_result);
  SQLRETURN more_results(StatementLease& lease, std::string_view sql);

  std::unique_ptr<Cursor> answer_identity(std::string_view sql, const std::string& name);
  std::unique_ptr<Cursor> answer_last_value(const std::string& name);
  bool speaks_oracle();
  bool is_alive();

  Link link_;
  StatementPool statements_;
  Watch watch_;
  Catalog catalog_;
  std::int32_t timeout_ = 30;
  std::int32_t connection_timeout_;
  std::string last_inserted_;  // the table of the last INSERT
  std::optional<bool> oracle_;
  bool doubtful_ = false;  // a statement was cancelled from outside
  std::chrono::steady_clock::time_point last_answer_;
  std::uint64_t losses_seen_;
};

}  // namespace pelm::ado::odbc
