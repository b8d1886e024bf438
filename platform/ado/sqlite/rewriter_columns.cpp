// Rewriting: names, and what is known of the columns behind them.
#include <algorithm>

#include "platform/ado/sqlite/collation.h"
#include "platform/ado/sqlite/rewriter.h"

namespace pelm::ado::sqlite {

// A column, a table or a function, with what qualifies it.
Operand Rewriter::path() {
  if (assigning_) set_target_aside();
  std::string sql, last;
  bool star = false;
  for (;;) {
    const Token token = take();
    last = content_of(token);
    const bool owner = equal_names(last, "dbo") && peek().is_symbol(".");
    if (!owner) {
      const bool plain =
          token.is(TokenKind::Word) && last.find_first_of("#$@") == std::string::npos;
      sql += plain && !equal_names(last, "left") && !equal_names(last, "right") ? last
                                                                                : quoted_name(last);
    }
    if (!peek().is_symbol(".")) break;
    take();
    if (!owner) sql += '.';
    if (take_symbol("*")) {
      sql += '*';
      star = true;
      break;
    }
    if (!peek().is_name()) break;
  }
  if (star) return {sql};
  if (peek().is_symbol("(") && !skip_table_hint()) {
    const bool qualified = sql.find('.') != std::string::npos;
    if (qualified) refuse("the function " + sql + " is not known to the embedded database");
    return call(last);
  }
  Operand operand;
  operand.sql = std::move(sql);
  operand.column = true;
  if (const NamedColumn* const known = known_column(last)) {
    if (known->type == ValueType::Date) operand.kind = Kind::Date;
    operand.numeric = known->type == ValueType::Numeric;
    operand.integer = known->type == ValueType::Integer;
    operand.case_blind = known->case_blind;
  } else {
    refuse_row_number(last);
  }
  return operand;
}

// SET table.column = …: the engine wants the column alone.
void Rewriter::set_target_aside() {
  const Token& before = tokens_[at_ - 1];
  if (depth_ > 0 || !(before.is_word("SET") || before.is_symbol(","))) return;
  std::size_t ahead = 0;
  while (peek(ahead).is_name() && peek(ahead + 1).is_symbol(".")) ahead += 2;
  if (peek(ahead).is_name() && peek(ahead + 1).is_symbol("=")) at_ += ahead;
}

const NamedColumn* Rewriter::known_column(const std::string& name) const {
  const auto found = columns_.find(capitals(name));
  return found == columns_.end() ? nullptr : &found->second;
}

// To the engine OID is a row's place in a table that has no column of that name: a mistake would
// give numbers that mean nothing.
void Rewriter::refuse_row_number(const std::string& name) const {
  if (columns_.empty() || !equal_names(name, "OID")) return;
  const bool given = std::any_of(aliases_.begin(), aliases_.end(),
                                 [](const std::string& a) { return equal_names(a, "OID"); });
  if (given) return;
  const auto selects = std::count_if(tokens_.begin(), tokens_.end(),
                                     [](const Token& t) { return t.is_word("SELECT"); });
  if (selects < 2) refuse("no such column: " + name);
}

// The columns of the tables that the statement names. A name that is of one type in one of them
// and of another in another is taken for neither.
void Rewriter::learn_columns() {
  for (const Token& t : tokens_) {
    if (!t.is_name()) continue;
    const std::vector<NamedColumn>* columns = schema_.find(content_of(t));
    if (columns == nullptr) continue;
    for (const NamedColumn& c : *columns) {
      const auto [known, added] = columns_.emplace(capitals(c.name), c);
      if (added) continue;
      if (known->second.type != c.type) known->second.type = ValueType::Other;
      known->second.case_blind = known->second.case_blind && c.case_blind;
    }
  }
}

}  // namespace pelm::ado::sqlite
