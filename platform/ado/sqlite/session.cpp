// One conversation with an embedded database.
#include "platform/ado/sqlite/session.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

#include "pelm/error.h"
#include "platform/ado/sqlite/cursor.h"
#include "platform/ado/sqlite/errors.h"
#include "platform/ado/sqlite/functions.h"
#include "platform/ado/sqlite/procedures.h"
#include "platform/ado/sqlite/settings.h"
#include "platform/ado/sqlite/values.h"

namespace pelm::ado::sqlite {
namespace {

constexpr std::int32_t kDefaultCommandTimeout = 30;

using Action = Plan::Action;

// What a statement asks of the session rather than of the engine.
Action action_of(std::span<const Token> statement) {
  struct Verb {
    std::string_view word;
    Action action;
  };
  constexpr std::array kVerbs = {
      Verb{"SET", Action::Setting},       Verb{"EXEC", Action::Procedure},
      Verb{"EXECUTE", Action::Procedure}, Verb{"BEGIN", Action::Begin},
      Verb{"COMMIT", Action::Commit},     Verb{"ROLLBACK", Action::Rollback},
      Verb{"SAVE", Action::Savepoint}};
  const Token& first = statement.front();
  if (first.is_symbol("{") && !(statement.size() > 1 && statement[1].is_word("FN"))) {
    return Action::Procedure;
  }
  const auto found = std::find_if(kVerbs.begin(), kVerbs.end(),
                                  [&](const Verb& v) { return first.is_word(v.word); });
  return found == kVerbs.end() ? Action::Run : found->action;
}

// Definitions name no values whose types would matter; each of them would make the catalogue be
// read again for the next.
bool needs_catalog(std::span<const Token> statement) {
  const Token& first = statement.front();
  const bool view = std::any_of(statement.begin(), statement.end(),
                                [](const Token& t) { return t.is_word("VIEW"); });
  return view || !(first.is_word("CREATE") || first.is_word("DROP") || first.is_word("ALTER"));
}

class NoNames : public SchemaNames {
 public:
  const std::vector<NamedColumn>* find(std::string_view) const override { return nullptr; }
};

bool begins_with(const std::string& sql, std::string_view word) {
  return sql.size() >= word.size() &&
         equal_names(std::string_view(sql).substr(0, word.size()), word);
}

bool changes_rows(const std::string& sql) {
  return begins_with(sql, "INSERT") || begins_with(sql, "UPDATE") || begins_with(sql, "DELETE") ||
         begins_with(sql, "REPLACE");
}

bool changes_schema(const std::string& sql) {
  return begins_with(sql, "CREATE") || begins_with(sql, "DROP") || begins_with(sql, "ALTER");
}

const Variant* find_variable(const Variables* variables, std::string_view name) {
  if (variables == nullptr) return nullptr;
  const auto found = std::find_if(variables->begin(), variables->end(),
                                  [&](const auto& v) { return equal_names(v.first, name); });
  return found == variables->end() ? nullptr : &found->second;
}

[[noreturn]] void refuse(const std::string& why) {
  raise_provider_error(error_number::kErrorsInCommand, why);
}

bool bound_as_text(const Variant& value) {
  return value.is_text() || value.type() == Variant::Type::Date;
}

LiteralReading reading_of(Slot::Reading reading) {
  switch (reading) {
    case Slot::Reading::Date:
      return LiteralReading::Date;
    case Slot::Reading::Number:
      return LiteralReading::Number;
    case Slot::Reading::AsItIs:
      break;
  }
  return LiteralReading::AsItIs;
}

}  // namespace

SqliteSession::SqliteSession(Options options) : database_(std::move(options)), catalog_(database_) {
  register_all_functions(database_.handle(), state_);
  database_.watchdog().limit(kDefaultCommandTimeout);
}

SqliteSession::~SqliteSession() = default;

std::string SqliteSession::quoted(std::string_view identifier) const {
  return quoted_name(identifier);
}

// A key is found through its index. Any other text must be the same letter by letter, and a date
// the same moment in whatever form it was stored.
std::string SqliteSession::same_value(const Column& column) const {
  const std::string name = quoted_name(column.name);
  if (column.key) return name + " = ?";
  switch (column.type) {
    case adVarWChar:
    case adLongVarWChar:
      return name + " COLLATE \"BINARY\" = ?";
    case adDate:
      return "CONVERT(DATETIME, " + name + ") = ?";
    default:
      return name + " = ?";
  }
}

ColumnList SqliteSession::describe(std::string_view table) { return catalog_.describe(table); }

std::unique_ptr<Cursor> SqliteSession::execute(std::string_view sql,
                                               std::span<const Variant> values) {
  return run(sql, values, nullptr);
}

std::unique_ptr<Cursor> SqliteSession::run(std::string_view sql, std::span<const Variant> values,
                                           const Variables* variables) {
  std::shared_ptr<Plan> plan = plan_for(sql);
  if (plan->action == Action::Several) return run_several(sql, values, variables);
  if (plan->action == Action::Run) return start(std::move(plan), values, variables);
  return run_one(sql, values, variables);
}

std::unique_ptr<Cursor> SqliteSession::run_one(std::string_view sql,
                                               std::span<const Variant> values,
                                               const Variables* variables) {
  std::shared_ptr<Plan> plan = plan_for(sql);
  switch (plan->action) {
    case Action::Several:
      return run_several(sql, values, variables);
    case Action::Run:
      return start(std::move(plan), values, variables);
    case Action::Setting:
      apply_setting(tokenize(sql), state_);
      break;
    case Action::Begin:
      begin(adXactUnspecified);
      break;
    case Action::Commit:
      commit();
      break;
    case Action::Rollback:
      rollback();
      break;
    case Action::Savepoint:
      refuse("SAVE TRANSACTION is not known to the embedded database");
    case Action::Procedure:
      return call_from_text(*this, sql, values);
  }
  return std::make_unique<FinishedCursor>(-1);
}

std::shared_ptr<Plan> SqliteSession::plan_for(std::string_view sql) {
  shape_.read(sql);
  std::shared_ptr<Plan>& known = shape_.plan();
  if (known != nullptr && !known->forgotten) {
    cache_.touch(*known);
    return known;
  }
  known = cache_.find(shape_.text());
  if (known != nullptr) return known;
  known = make_plan();
  cache_.insert(shape_.text(), known);
  return known;
}

std::shared_ptr<Plan> SqliteSession::make_plan() {
  auto plan = std::make_shared<Plan>();
  const std::vector<Token> tokens = tokenize(shape_.text(), true);
  const auto statements = split_statements(tokens);
  if (statements.empty()) refuse("the command text is empty");
  if (statements.size() > 1) {
    plan->action = Action::Several;
    return plan;
  }
  plan->action = action_of(statements.front());
  if (plan->action != Action::Run) return plan;
  if (needs_catalog(statements.front())) {
    catalog_.refresh();
    plan->translation = translate(statements.front(), catalog_);
  } else {
    plan->translation = translate(statements.front(), NoNames());
  }
  const std::string& run = plan->translation.sql;
  plan->changes_rows = changes_rows(run);
  plan->changes_schema = changes_schema(run);
  if (!plan->translation.inserted_table.empty()) {
    const auto* const known = catalog_.find(plan->translation.inserted_table);
    if (known != nullptr) {
      const ColumnList columns = catalog_.describe(quoted_name(plan->translation.inserted_table));
      plan->gives_identity = std::any_of(columns->begin(), columns->end(),
                                         [](const Column& c) { return c.auto_number; });
    }
  }
  return plan;
}

StatementLease SqliteSession::prepare(std::shared_ptr<Plan> plan) {
  if (std::unique_ptr<Prepared> idle = plan->take_idle()) {
    return {std::move(plan), std::move(idle)};
  }
  const std::string& sql = plan->translation.sql;
  sqlite3_stmt* statement = nullptr;
  const char* tail = nullptr;
  database_.watchdog().restart();
  const int code =
      sqlite3_prepare_v3(database_.handle(), sql.c_str(), static_cast<int>(sql.size() + 1),
                         SQLITE_PREPARE_PERSISTENT, &statement, &tail);
  if (code != SQLITE_OK) {
    cache_.erase(plan.get());  // a mistake need not be remembered
    database_.fail(code, sql);
  }
  if (statement == nullptr) refuse("the command text is empty");
  auto prepared = std::make_unique<Prepared>(StatementHandle(statement));
  if (sqlite3_column_count(statement) > 0) {
    prepared->columns = catalog_.result_columns(statement, plan->translation);
  }
  return {std::move(plan), std::move(prepared)};
}

void SqliteSession::bind(const StatementLease& lease, std::span<const Variant> values,
                         const Variables* variables) {
  const auto literals = shape_.literals();
  int position = 0;
  std::size_t used = 0;
  // A statement without rows ends before the text can go.
  const bool text_stays = lease.prepared().columns == nullptr;
  for (const Slot& slot : lease.plan().translation.slots) {
    ++position;
    int code = SQLITE_OK;
    switch (slot.source) {
      case Slot::Source::Literal:
        if (literals[slot.index].kind != Literal::Kind::Number) lease.prepared().holds_texts = true;
        code = bind_literal(lease.get(), position, literals[slot.index], reading_of(slot.reading),
                            state_.language.date_order, text_stays);
        break;
      case Slot::Source::Value:
        ++used;
        if (slot.index >= values.size()) {
          refuse("the statement has more \"?\" than the " + std::to_string(values.size()) +
                 " values it was given");
        }
        if (bound_as_text(values[slot.index])) lease.prepared().holds_texts = true;
        code = bind_value(lease.get(), position, values[slot.index], text_stays);
        break;
      case Slot::Source::Variable: {
        const Variant* const value = find_variable(variables, slot.name);
        if (value == nullptr) refuse("Must declare the variable '" + slot.name + "'.");
        if (bound_as_text(*value)) lease.prepared().holds_texts = true;
        code = bind_value(lease.get(), position, *value, text_stays);
        break;
      }
    }
    if (code != SQLITE_OK) database_.fail(code, lease.plan().translation.sql);
  }
  if (used < values.size()) {
    refuse("the statement has " + std::to_string(used) + " \"?\" and was given " +
           std::to_string(values.size()) + " values");
  }
}

std::unique_ptr<Cursor> SqliteSession::start(std::shared_ptr<Plan> plan,
                                             std::span<const Variant> values,
                                             const Variables* variables) {
  if (plan->translation.leaves_traces) keeps_traces_ = true;
  StatementLease lease = prepare(std::move(plan));
  bind(lease, values, variables);
  auto cursor = std::make_unique<SqliteCursor>(*this, std::move(lease));
  cursor->start();
  return cursor;
}

// Each statement runs to its end before the next begins; the first rows are kept meanwhile.
std::unique_ptr<Cursor> SqliteSession::run_several(std::string_view sql,
                                                   std::span<const Variant> values,
                                                   const Variables* variables) {
  const std::vector<Token> tokens = tokenize(sql);
  std::unique_ptr<Cursor> rows;
  std::int64_t affected = -1;
  for (const std::span<const Token> statement : split_statements(tokens)) {
    const char* const begin = statement.front().text.data();
    const char* const end = statement.back().text.data() + statement.back().text.size();
    const auto own = static_cast<std::size_t>(std::count_if(
        statement.begin(), statement.end(), [](const Token& t) { return t.is(TokenKind::Value); }));
    const std::size_t given = std::min(own, values.size());
    const std::string_view text(begin, static_cast<std::size_t>(end - begin));
    std::unique_ptr<Cursor> cursor = run_one(text, values.first(given), variables);
    values = values.subspan(given);
    if (!cursor->columns()->empty()) {
      auto kept = std::make_unique<KeptCursor>(*cursor);
      if (rows == nullptr) rows = std::move(kept);
    } else if (cursor->rows_affected() >= 0) {
      affected = std::max<std::int64_t>(affected, 0) + cursor->rows_affected();
    }
  }
  if (!values.empty()) refuse("the statements were given more values than they have \"?\"");
  if (rows != nullptr) return rows;
  return std::make_unique<FinishedCursor>(affected);
}

void SqliteSession::call(std::string_view procedure, std::span<ProcedureArgument> arguments) {
  call_procedure(*this, procedure, arguments);
}

// As on a server, a transaction that has only read keeps nobody from writing, not even the
// connection on which the same thread reserves OIDs. The lock is taken by the first statement that
// writes, and before it: a writer can wait for it then, whereas the engine would refuse it to a
// transaction that has read before. Only the levels that promise that nothing read will change
// take it at once.
void SqliteSession::begin(IsolationLevelEnum level) {
  if (in_transaction()) {
    raise_provider_error(
        error_number::kProviderFailure,
        "a transaction is open already: it must be committed or rolled back first");
  }
  end_reading();
  transaction_has_ended();  // the engine may have ended the last one by itself
  if (database_.read_only()) {
    control("BEGIN");
  } else if (level == adXactRepeatableRead || level == adXactSerializable) {
    database_.begin_writing();
  } else {
    lock_to_take_ = true;
  }
}

void SqliteSession::about_to_write() {
  end_reading();
  if (!lock_to_take_) return;
  database_.begin_writing();
  lock_to_take_ = false;
}

bool SqliteSession::in_transaction() const {
  return lock_to_take_ || (!reading_ && database_.in_transaction());
}

// A transaction of the engine's that only reads: no lock keeps anybody from writing meanwhile.
bool SqliteSession::begin_reading() {
  if (reading_ || in_transaction()) return false;
  database_.keep_prepared("COMMIT");  // ending must not fail
  control("BEGIN");
  reading_ = true;
  return true;
}

void SqliteSession::end_reading() noexcept {
  if (!std::exchange(reading_, false) || !database_.in_transaction()) return;
  try {
    control("COMMIT");
  } catch (const std::exception&) {
    keeps_traces_ = true;  // the pool lets it go
  }
}

void SqliteSession::commit() {
  if (!in_transaction()) {
    raise_provider_error(error_number::kProviderFailure,
                         "The COMMIT TRANSACTION request has no corresponding BEGIN TRANSACTION.");
  }
  if (!std::exchange(lock_to_take_, false)) control("COMMIT");
  transaction_has_ended();
}

void SqliteSession::rollback() {
  if (!in_transaction()) {
    raise_provider_error(
        error_number::kProviderFailure,
        "The ROLLBACK TRANSACTION request has no corresponding BEGIN TRANSACTION.");
  }
  if (!std::exchange(lock_to_take_, false)) control("ROLLBACK");
  transaction_has_ended();
}

void SqliteSession::definitions_changed() {
  catalog_.definitions_changed();
  definitions_open_ = in_transaction();
}

void SqliteSession::transaction_has_ended() {
  if (std::exchange(definitions_open_, false)) catalog_.definitions_changed();
}

bool SqliteSession::reset() noexcept {
  try {
    end_reading();
    if (keeps_traces_) return false;
    if (in_transaction()) rollback();
    state_ = {};
    database_.watchdog().limit(kDefaultCommandTimeout);
    database_.rest();
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace pelm::ado::sqlite
