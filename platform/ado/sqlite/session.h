/// One conversation with an embedded database.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/provider.h"
#include "platform/ado/sqlite/catalog.h"
#include "platform/ado/sqlite/database.h"
#include "platform/ado/sqlite/known_procedures.h"
#include "platform/ado/sqlite/session_state.h"
#include "platform/ado/sqlite/shape.h"
#include "platform/ado/sqlite/statement_cache.h"

namespace pelm::ado::sqlite {

/// Values of a procedure's parameters, by name with its @, compared without case.
using Variables = std::vector<std::pair<std::string, Variant>>;

class SqliteSession final : public Session {
 public:
  explicit SqliteSession(Options options);
  ~SqliteSession() override;

  void command_timeout(std::int32_t seconds) override { database_.watchdog().limit(seconds); }
  std::unique_ptr<Cursor> execute(std::string_view sql, std::span<const Variant> values) override;
  ColumnList describe(std::string_view table) override;
  std::string quoted(std::string_view identifier) const override;
  std::string same_value(const Column& column) const override;
  void call(std::string_view procedure, std::span<ProcedureArgument> arguments) override;
  void begin(IsolationLevelEnum level) override;
  void commit() override;
  void rollback() override;
  bool begin_reading() override;
  void end_reading() noexcept override;
  bool reset() noexcept override;
  bool still_good() noexcept override { return database_.file_is_there(); }

  /// Also when nothing in it has taken the write lock yet.
  bool in_transaction() const;

  // For the parts of a session.
  Database& database() { return database_; }
  Catalog& catalog() { return catalog_; }
  SessionState& state() { return state_; }
  StatementCache& cache() { return cache_; }
  /// Runs one statement of a text of several or of a procedure; `values` are those of its own "?".
  std::unique_ptr<Cursor> run_one(std::string_view sql, std::span<const Variant> values,
                                  const Variables* variables);
  /// Runs a text of one or several statements; the rows of the first that has any are the result.
  std::unique_ptr<Cursor> run(std::string_view sql, std::span<const Variant> values,
                              const Variables* variables);
  /// Ends a stretch of reading, and takes the write lock of a transaction that has begun without.
  void about_to_write();
  /// After a statement that may have changed definitions.
  void definitions_changed();
  /// Runs a statement of ours, a constant, that takes nothing and gives nothing.
  void control(const char* sql) { database_.run_again(sql); }
  KnownProcedures& procedures() { return procedures_; }

 private:
  std::shared_ptr<Plan> plan_for(std::string_view sql);
  std::shared_ptr<Plan> make_plan();
  StatementLease prepare(std::shared_ptr<Plan> plan);
  void bind(const StatementLease& lease, std::span<const Variant> values,
            const Variables* variables);
  std::unique_ptr<Cursor> start(std::shared_ptr<Plan> plan, std::span<const Variant> values,
                                const Variables* variables);
  std::unique_ptr<Cursor> run_several(std::string_view sql, std::span<const Variant> values,
                                      const Variables* variables);
  void transaction_has_ended();

  Database database_;
  SessionState state_;
  Catalog catalog_;
  StatementCache cache_;
  Shape shape_;
  KnownProcedures procedures_;
  bool keeps_traces_ = false;
  bool reading_ = false;           // under one view of the database
  bool lock_to_take_ = false;      // a transaction is open in which nothing was written yet
  bool definitions_open_ = false;  // changed in a transaction that has not ended
};

}  // namespace pelm::ado::sqlite
