// One conversation with a database server.
#include "platform/ado/odbc/session.h"

#include <sqlext.h>

#include <utility>

#include "pelm/error.h"
#include "platform/ado/odbc/attribute.h"
#include "platform/ado/odbc/cursor.h"
#include "platform/ado/odbc/errors.h"
#include "platform/ado/odbc/identity.h"
#include "platform/ado/odbc/wide_text.h"

namespace pelm::ado::odbc {
namespace {

/// What a page set up on a server of the usual kind.
constexpr IsolationLevelEnum kUsualIsolation = adXactReadCommitted;

/// A session that rested longer is asked whether it lives before it is handed out.
constexpr std::chrono::seconds kRest{1};

}  // namespace

OdbcSession::OdbcSession(const SessionSettings& settings)
    : link_(settings),
      connection_timeout_(settings.connection_timeout),
      last_answer_(std::chrono::steady_clock::now()),
      losses_seen_(Link::losses()) {
  link_.isolation(kUsualIsolation);
}

void OdbcSession::fail(StatementLease& lease, std::string_view sql, bool limit_passed) {
  lease.spoil();
  std::vector<DiagnosticRecord> records = diagnostics_of(SQL_HANDLE_STMT, lease.get());
  bool lost = false;
  for (const DiagnosticRecord& r : records) lost = lost || says_lost(link_.kind(), r);
  if (lost || link_.known_dead()) link_.lose();
  throw error_of(link_.kind(), std::move(records), sql, limit_passed ? error_number::kTimeout : 0);
}

StatementLease OdbcSession::take_statement(std::string_view prepared) {
  std::unique_ptr<StatementHandle> statement = statements_.take(link_.handle(), prepared);
  if (statement == nullptr) link_.fail({});
  // A driver that does not know the attribute has its statements cancelled all the same.
  SQLSetStmtAttrW(statement->handle, SQL_ATTR_QUERY_TIMEOUT,
                  attribute_value(static_cast<std::uintptr_t>(timeout_)), SQL_IS_UINTEGER);
  return {statements_, std::move(statement)};
}

template <class Start>
bool OdbcSession::run(StatementLease& lease, std::string_view sql, Start start) {
  watch_.arm(lease.get(), timeout_);
  SQLRETURN rc = start();
  while (rc == SQL_NEED_DATA) {
    SQLPOINTER asked = nullptr;
    rc = SQLParamData(lease.get(), &asked);
    if (rc != SQL_NEED_DATA) break;
    const SQLRETURN put = static_cast<BoundValue*>(asked)->put(lease.get());
    if (!SQL_SUCCEEDED(put)) rc = put;
  }
  const bool limit_passed = watch_.disarm();
  doubtful_ = doubtful_ || limit_passed;
  if (rc != SQL_NO_DATA && !SQL_SUCCEEDED(rc)) fail(lease, sql, limit_passed);
  last_answer_ = std::chrono::steady_clock::now();
  return rc != SQL_NO_DATA;
}

bool OdbcSession::run_direct(StatementLease& lease, std::string_view sql) {
  WideText text(sql);
  return run(lease, sql, [&] {
    return SQLExecDirectW(lease.get(), text.data(), static_cast<SQLINTEGER>(text.size()));
  });
}

bool OdbcSession::run_prepared(StatementLease& lease, std::string_view sql,
                               std::span<const Variant> values) {
  BoundValues bound;
  return run(lease, sql, [&]() -> SQLRETURN {
    if (lease.prepared_text().empty()) {
      WideText text(sql);
      const SQLRETURN rc =
          SQLPrepareW(lease.get(), text.data(), static_cast<SQLINTEGER>(text.size()));
      if (!SQL_SUCCEEDED(rc)) return rc;
      lease.prepared(sql);
    }
    for (std::size_t i = 0; i < values.size(); ++i) {
      const SQLRETURN rc =
          bound.emplace_back().bind_input(lease.get(), static_cast<SQLUSMALLINT>(i + 1), values[i]);
      if (!SQL_SUCCEEDED(rc)) return rc;
    }
    return SQLExecute(lease.get());
  });
}

std::unique_ptr<Cursor> OdbcSession::execute(std::string_view sql,
                                             std::span<const Variant> values) {
  if (const auto name = asks_identity(sql)) {
    if (link_.kind() == ServerKind::PostgreSql) return answer_last_value(*name);
    if (speaks_oracle()) return answer_identity(sql, *name);
  }
  return run_statement(sql, values);
}

std::unique_ptr<Cursor> OdbcSession::run_statement(std::string_view sql,
                                                   std::span<const Variant> values) {
  StatementLease lease = take_statement(values.empty() ? std::string_view() : sql);
  const bool has_result =
      values.empty() ? run_direct(lease, sql) : run_prepared(lease, sql, values);
  std::unique_ptr<Cursor> result = result_of(std::move(lease), sql, has_result);
  if (std::string table = inserted_table(sql); !table.empty()) last_inserted_ = std::move(table);
  return result;
}

SQLRETURN OdbcSession::more_results(StatementLease& lease, std::string_view sql) {
  const SQLRETURN rc = SQLMoreResults(lease.get());
  if (rc != SQL_NO_DATA && !SQL_SUCCEEDED(rc)) fail(lease, sql);
  return rc;
}

std::unique_ptr<Cursor> OdbcSession::result_of(StatementLease lease, std::string_view sql,
                                               bool has_result) {
  std::int64_t affected = has_result ? -1 : 0;
  while (has_result) {
    std::vector<Column> columns;
    std::vector<ResultColumn> how;
    if (!describe_result(lease.get(), columns, how)) fail(lease, sql);
    if (!columns.empty()) {
      return std::make_unique<OdbcCursor>(*this, std::move(lease), std::move(columns),
                                          std::move(how));
    }
    SQLLEN count = -1;
    if (SQL_SUCCEEDED(SQLRowCount(lease.get(), &count)) && affected < 0) affected = count;
    // MariaDB's driver ends the process here when a text holds ";" that part no statements.
    if (link_.kind() == ServerKind::MariaDb) break;
    if (more_results(lease, sql) == SQL_NO_DATA) break;
  }
  return std::make_unique<FinishedCursor>(affected);
}

bool OdbcSession::fetch(StatementLease& lease) {
  watch_.arm(lease.get(), timeout_);
  const SQLRETURN rc = SQLFetch(lease.get());
  const bool limit_passed = watch_.disarm();
  doubtful_ = doubtful_ || limit_passed;
  if (rc == SQL_NO_DATA) return false;
  if (!SQL_SUCCEEDED(rc)) fail(lease, {}, limit_passed);
  return true;
}

ColumnList OdbcSession::describe(std::string_view table) {
  std::string sql = "select * from ";
  sql += table;
  sql += " where 1 = 0";
  std::vector<Column> columns;
  std::vector<ResultColumn> how;
  {
    StatementLease lease = take_statement();
    run_direct(lease, sql);
    if (!describe_result(lease.get(), columns, how)) fail(lease, sql);
  }
  if (auto known = catalog_.find(table, columns)) return known;
  std::vector<std::string> key;
  {
    // MariaDB's driver reads freed memory when a statement that was used before asks for keys.
    statements_.clear();
    StatementLease lease = take_statement();
    watch_.arm(lease.get(), timeout_);
    key = key_columns(lease.get(), table);
    doubtful_ = watch_.disarm() || doubtful_;
    lease.spoil();  // some drivers leave bindings of their own behind
  }
  return catalog_.keep(table, std::move(columns), key);
}

std::string OdbcSession::quoted(std::string_view identifier) const {
  const std::string& mark = link_.quote();
  if (mark.empty()) return std::string(identifier);
  std::string out = mark;
  for (const char c : identifier) {
    if (c == mark.front()) out += c;
    out += c;
  }
  return out + mark;
}

std::string OdbcSession::same_value(const Column& column) const {
  if (column.key) return quoted(column.name) + " = ?";
  return same_value_condition(link_.kind(), quoted(column.name), column.type);
}

void OdbcSession::call(std::string_view procedure, std::span<ProcedureArgument> arguments) {
  const bool returns = !arguments.empty() && arguments[0].direction == adParamReturnValue;
  std::string sql = returns ? "{? = call " : "{call ";
  sql += procedure;
  std::string_view separator = "(";
  for (std::size_t i = returns ? 1 : 0; i < arguments.size(); ++i) {
    sql += separator;
    sql += '?';
    separator = ", ";
  }
  sql += separator == ", " ? ")}" : "}";

  const TextOutput texts =
      link_.kind() == ServerKind::MariaDb ? TextOutput::Utf8 : TextOutput::Wide;
  StatementLease lease = take_statement();
  BoundValues bound;
  WideText text(sql);
  // Prepared first: run at once, MariaDB's driver leaves an output as the text it came in.
  const bool has_result = run(lease, sql, [&]() -> SQLRETURN {
    const SQLRETURN prepared =
        SQLPrepareW(lease.get(), text.data(), static_cast<SQLINTEGER>(text.size()));
    if (!SQL_SUCCEEDED(prepared)) return prepared;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      const SQLRETURN rc = bound.emplace_back().bind_argument(
          lease.get(), static_cast<SQLUSMALLINT>(i + 1), arguments[i], texts);
      if (!SQL_SUCCEEDED(rc)) return rc;
    }
    return SQLExecute(lease.get());
  });
  // What the procedure writes is there once its results have passed.
  while (has_result && more_results(lease, sql) != SQL_NO_DATA) continue;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i].direction != adParamInput) arguments[i].value = bound[i].output();
  }
}

void OdbcSession::begin(IsolationLevelEnum level) {
  link_.isolation(level);
  link_.begin();
}

void OdbcSession::commit() { link_.commit(); }

void OdbcSession::rollback() { link_.rollback(); }

bool OdbcSession::speaks_oracle() {
  if (!oracle_) {
    oracle_ = link_.kind() == ServerKind::Oracle;
    if (link_.kind() == ServerKind::MariaDb) {
      const auto mode = run_statement("select @@sql_mode", {});
      oracle_ = mode->next() && mode->value(0).is_text() &&
                mode->value(0).text().find("ORACLE") != std::string::npos;
    }
  }
  return *oracle_;
}

std::unique_ptr<Cursor> OdbcSession::answer_identity(std::string_view sql,
                                                     const std::string& name) {
  Variant number = Null{};
  if (!last_inserted_.empty()) {
    try {
      const auto cursor =
          run_statement("select " + sequence_of(last_inserted_) + ".CURRVAL from dual", {});
      if (cursor->next()) number = cursor->value(0);
    } catch (const Error&) {
      if (link_.lost() || doubtful_) throw;
      // The table has no sequence, or it gave this session no number.
      if (link_.kind() == ServerKind::MariaDb) return run_statement(sql, {});
    }
  }
  return std::make_unique<SingleValueCursor>(name, number);
}

std::unique_ptr<Cursor> OdbcSession::answer_last_value(const std::string& name) {
  Variant number = Null{};
  try {
    const auto cursor = run_statement("select lastval()", {});
    if (cursor->next()) number = cursor->value(0);
  } catch (const Error&) {
    if (link_.lost() || doubtful_) throw;
    // No sequence gave this session a number.
  }
  return std::make_unique<SingleValueCursor>(name, number);
}

bool OdbcSession::is_alive() {
  const std::int32_t usual = std::exchange(timeout_, connection_timeout_);
  bool alive = false;
  try {
    StatementLease lease = take_statement();
    alive = run_direct(lease, probe_statement(link_.kind()));
  } catch (const Error&) {
    alive = false;
  }
  timeout_ = usual;
  return alive;
}

bool OdbcSession::reset() noexcept {
  try {
    if (link_.lost() || doubtful_) return false;
    if (link_.in_transaction()) link_.rollback();
    last_inserted_.clear();
    link_.isolation(kUsualIsolation);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool OdbcSession::still_good() noexcept {
  try {
    const std::uint64_t losses_now = Link::losses();
    const bool rested = std::chrono::steady_clock::now() - last_answer_ > kRest;
    if (!rested && losses_now == losses_seen_) return true;
    if (link_.known_dead() || !is_alive()) {
      link_.lose();
      return false;
    }
    losses_seen_ = losses_now;
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace pelm::ado::odbc
