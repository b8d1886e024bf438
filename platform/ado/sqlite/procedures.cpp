// Stored procedures: scripts kept in the database itself.
#include "platform/ado/sqlite/procedures.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/ado/sqlite/cursor.h"
#include "platform/ado/sqlite/errors.h"
#include "platform/ado/sqlite/session.h"
#include "platform/ado/sqlite/tokenizer.h"

namespace pelm::ado::sqlite {
namespace {

[[noreturn]] void refuse(const std::string& why) {
  raise_provider_error(error_number::kErrorsInCommand, why);
}

// As the table has it: of a qualified name the last part, without its quotes.
std::string plain_name(std::string_view name) {
  const std::vector<Token> tokens = tokenize(name);
  return tokens.empty() ? std::string() : content_of(tokens.back());
}

std::shared_ptr<const Procedure> read_procedure(SqliteSession& session, const std::string& name) {
  constexpr std::string_view kQuery =
      "SELECT name, parameters, script FROM pelm_procedure WHERE name = ?";
  const std::array key = {Variant(name)};
  try {
    const auto cursor = session.run_one(kQuery, key, nullptr);
    if (cursor->next()) {
      const Variant parameters = cursor->value(1);
      return session.procedures().read(to_text(cursor->value(0)),
                                       parameters.is_null() ? std::string() : to_text(parameters),
                                       to_text(cursor->value(2)));
    }
  } catch (const Error& e) {
    if (e.number() != error_number::kNoTable) throw;
  }
  refuse("Could not find stored procedure '" + name + "'.");
}

// The procedure's transaction, or its part of the one that is open.
class Atomic {
 public:
  explicit Atomic(SqliteSession& session) : session_(session) {
    session.about_to_write();
    inside_ = session.database().in_transaction();
    if (inside_)
      session.control("SAVEPOINT pelm_procedure");
    else
      session.begin(adXactSerializable);  // what it reads to compute with must not change
  }
  Atomic(const Atomic&) = delete;
  Atomic& operator=(const Atomic&) = delete;
  ~Atomic() {
    if (done_ || !session_.database().in_transaction()) return;
    try {
      if (inside_) session_.control("ROLLBACK TO pelm_procedure");
      session_.control(inside_ ? "RELEASE pelm_procedure" : "ROLLBACK");
    } catch (const std::exception&) {
      return;  // the engine has rolled all back by itself
    }
  }
  void keep() {
    session_.control(inside_ ? "RELEASE pelm_procedure" : "COMMIT");
    done_ = true;
  }

 private:
  SqliteSession& session_;
  bool inside_ = false;
  bool done_ = false;
};

std::string_view without_at(std::string_view name) {
  return name.starts_with('@') ? name.substr(1) : name;
}

bool same_parameter(std::string_view a, std::string_view b) {
  return equal_names(without_at(a), without_at(b));
}

// What each parameter is given; parallel to the procedure's parameters, null for what is not.
std::vector<ProcedureArgument*> matched(const Procedure& procedure,
                                        std::span<ProcedureArgument> arguments) {
  std::vector<ProcedureArgument*> given;
  for (ProcedureArgument& a : arguments) {
    if (a.direction != adParamReturnValue) given.push_back(&a);
  }
  const auto& parameters = procedure.parameters;
  if (given.size() > parameters.size()) {
    refuse("Procedure or function " + procedure.name +
           " has too many arguments specified: " + std::to_string(given.size()) + " given, " +
           std::to_string(parameters.size()) + " known.");
  }
  const auto place_of = [&](const ProcedureArgument& a) {
    return std::find_if(parameters.begin(), parameters.end(), [&](const Procedure::Parameter& p) {
      return same_parameter(p.name, a.name);
    });
  };
  const auto known = static_cast<std::size_t>(
      std::count_if(given.begin(), given.end(),
                    [&](const ProcedureArgument* a) { return place_of(*a) != parameters.end(); }));
  std::vector<ProcedureArgument*> out(parameters.size(), nullptr);
  if (known == 0) {
    std::copy(given.begin(), given.end(), out.begin());
    return out;
  }
  for (ProcedureArgument* a : given) {
    const auto place = place_of(*a);
    if (place == parameters.end()) {
      refuse(a->name + " is not a parameter for procedure " + procedure.name + ".");
    }
    ProcedureArgument*& slot = out[static_cast<std::size_t>(place - parameters.begin())];
    if (slot != nullptr) {
      refuse("The parameter " + place->name + " of procedure " + procedure.name +
             " was given more than once.");
    }
    slot = a;
  }
  return out;
}

Variables inputs(const Procedure& procedure, const std::vector<ProcedureArgument*>& given) {
  Variables out;
  for (std::size_t i = 0; i < given.size(); ++i) {
    const Procedure::Parameter& p = procedure.parameters[i];
    if (given[i] == nullptr && !p.output) {
      refuse("Procedure '" + procedure.name + "' expects parameter '" + p.name +
             "', which was not supplied.");
    }
    const bool has_value = given[i] != nullptr && given[i]->direction != adParamOutput;
    out.emplace_back(p.name, has_value ? given[i]->value : Variant(Null{}));
  }
  return out;
}

// What a call gives: the values of the outputs, parallel to the parameters, and the first rows.
struct Outcome {
  std::vector<std::optional<Variant>> outputs;
  std::unique_ptr<Cursor> rows;
  std::int64_t affected = -1;
};

void take_outputs(const Procedure& procedure, const KeptCursor& rows, Outcome& outcome) {
  const Columns& columns = *rows.columns();
  for (std::size_t p = 0; p < procedure.parameters.size(); ++p) {
    if (!procedure.parameters[p].output) continue;
    for (std::size_t c = 0; c < columns.size(); ++c) {
      if (same_parameter(columns[c].name, procedure.parameters[p].name)) {
        outcome.outputs[p] = rows.value(c);
      }
    }
  }
}

Outcome run_script(SqliteSession& session, const Procedure& procedure, const Variables& variables) {
  Outcome outcome;
  outcome.outputs.resize(procedure.parameters.size());
  for (const std::string& statement : procedure.statements) {
    const auto cursor = session.run_one(statement, {}, &variables);
    if (cursor->columns()->empty()) {
      outcome.affected = std::max(outcome.affected, cursor->rows_affected());
      continue;
    }
    KeptCursor rows(*cursor);
    if (rows.next()) take_outputs(procedure, rows, outcome);
    if (outcome.rows == nullptr) {
      rows.rewind();
      outcome.rows = std::make_unique<KeptCursor>(std::move(rows));
    }
  }
  return outcome;
}

Outcome run_procedure(SqliteSession& session, std::string_view name,
                      std::span<ProcedureArgument> arguments) {
  const std::string plain = plain_name(name);
  std::optional<Atomic> atomic;
  if (session.procedures().has(plain)) atomic.emplace(session);  // spares a lock for the reading
  const std::shared_ptr<const Procedure> known = read_procedure(session, plain);
  const Procedure& procedure = *known;
  const std::vector<ProcedureArgument*> given = matched(procedure, arguments);
  const Variables variables = inputs(procedure, given);
  if (!atomic) atomic.emplace(session);
  Outcome outcome = run_script(session, procedure, variables);
  atomic->keep();
  for (std::size_t i = 0; i < given.size(); ++i) {
    if (given[i] == nullptr || given[i]->direction == adParamInput) continue;
    if (procedure.parameters[i].output)
      given[i]->value = outcome.outputs[i].value_or(Variant(Null{}));
  }
  for (ProcedureArgument& a : arguments) {
    if (a.direction == adParamReturnValue) a.value = std::int32_t{0};
  }
  return outcome;
}

// Reads the arguments of EXEC and { call }.
class CallText {
 public:
  CallText(std::string_view sql, std::span<const Variant> values)
      : tokens_(tokenize(sql)), values_(values) {
    const bool braces = take_symbol("{");
    if (peek().is(TokenKind::Value)) {
      ++at_;
      take_symbol("=");
    }
    ++at_;  // EXEC, EXECUTE or call
    name_ = read_name();
    const bool parenthesis = take_symbol("(");
    while (at_ < tokens_.size() && !peek().is_symbol(")") && !peek().is_symbol("}")) {
      read_argument();
      if (!take_symbol(",")) break;
    }
    if (parenthesis) require(take_symbol(")"));
    if (braces) require(take_symbol("}"));
    require(at_ == tokens_.size());
  }
  const std::string& name() const { return name_; }
  std::span<ProcedureArgument> arguments() { return arguments_; }

 private:
  const Token& peek() const {
    static const Token kEnd;
    return at_ < tokens_.size() ? tokens_[at_] : kEnd;
  }
  bool take_symbol(std::string_view s) {
    if (!peek().is_symbol(s)) return false;
    ++at_;
    return true;
  }
  void require(bool fits) const {
    if (fits) return;
    refuse("syntax error in the call of procedure '" + name_ + "'" +
           (at_ < tokens_.size() ? " near " + std::string(tokens_[at_].text) : std::string()));
  }
  std::string read_name() {
    require(peek().is_name());
    std::string out = content_of(tokens_[at_++]);
    while (take_symbol(".")) {
      require(peek().is_name());
      out = content_of(tokens_[at_++]);
    }
    return quoted_name(out);
  }
  void read_argument() {
    ProcedureArgument argument;
    if (peek().is(TokenKind::Variable)) {
      argument.name = tokens_[at_++].text;
      require(take_symbol("="));
    }
    argument.value = read_value();
    if (peek().is_word("OUTPUT") || peek().is_word("OUT")) ++at_;
    arguments_.push_back(std::move(argument));
  }
  Variant read_value() {
    const bool negative = take_symbol("-");
    require(at_ < tokens_.size());
    const Token token = tokens_[at_++];
    switch (token.kind) {
      case TokenKind::Number:
        return number(token.text, negative);
      case TokenKind::Text:
      case TokenKind::DateEscape:
        return content_of(token);
      case TokenKind::Value:
        require(used_ < values_.size());
        return values_[used_++];
      default:
        break;
    }
    if (token.is_word("NULL")) return Null{};
    --at_;
    require(false);
    return {};
  }
  Variant number(std::string_view s, bool negative) const {
    std::int32_t whole = 0;
    const auto [end, error] = std::from_chars(s.data(), s.data() + s.size(), whole);
    if (error == std::errc() && end == s.data() + s.size()) return negative ? -whole : whole;
    double real = 0;
    const auto [stop, failed] = std::from_chars(s.data(), s.data() + s.size(), real);
    require(failed == std::errc() && stop == s.data() + s.size());
    return negative ? -real : real;
  }

  std::vector<Token> tokens_;
  std::span<const Variant> values_;
  std::string name_;
  std::vector<ProcedureArgument> arguments_;
  std::size_t at_ = 0;
  std::size_t used_ = 0;
};

}  // namespace

void call_procedure(SqliteSession& session, std::string_view procedure,
                    std::span<ProcedureArgument> arguments) {
  run_procedure(session, procedure, arguments);
}

std::unique_ptr<Cursor> call_from_text(SqliteSession& session, std::string_view sql,
                                       std::span<const Variant> values) {
  CallText call(sql, values);
  Outcome outcome = run_procedure(session, call.name(), call.arguments());
  if (outcome.rows != nullptr) return std::move(outcome.rows);
  return std::make_unique<FinishedCursor>(outcome.affected);
}

}  // namespace pelm::ado::sqlite
