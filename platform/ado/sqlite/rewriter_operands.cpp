// Rewriting: operands, sums and conditions.
#include <algorithm>
#include <array>

#include "pelm/error.h"
#include "platform/ado/sqlite/collation.h"
#include "platform/ado/sqlite/date_text.h"
#include "platform/ado/sqlite/errors.h"
#include "platform/ado/sqlite/rewriter.h"

namespace pelm::ado::sqlite {
namespace {

constexpr int kDeepestNesting = 200;  // the engine itself stops at 1000, on a larger stack frame

// Words that never name a column or a function here.
constexpr std::array<std::string_view, 46> kReserved = {
    "ALL",    "AND",    "AS",       "ASC",    "BETWEEN", "BY",     "CROSS",  "DEFAULT",
    "DELETE", "DESC",   "DISTINCT", "ELSE",   "END",     "ESCAPE", "EXCEPT", "EXISTS",
    "FROM",   "FULL",   "GROUP",    "HAVING", "IN",      "INNER",  "INSERT", "INTERSECT",
    "INTO",   "IS",     "JOIN",     "LEFT",   "LIKE",    "LIMIT",  "NOT",    "ON",
    "OR",     "ORDER",  "OUTER",    "RIGHT",  "SELECT",  "SET",    "THEN",   "TOP",
    "UNION",  "UPDATE", "VALUES",   "WHEN",   "WHERE",   "WITH"};
constexpr std::array<std::string_view, 10> kClauseEnds = {
    "FROM", "INTO", "WHERE", "GROUP", "ORDER", "HAVING", "UNION", "EXCEPT", "INTERSECT", "LIMIT"};
constexpr std::array<std::string_view, 9> kComparisons = {"=",  "<>", "!=", "<", ">",
                                                          "<=", ">=", "!<", "!>"};

template <std::size_t N>
bool is_one_of(const Token& token, const std::array<std::string_view, N>& words) {
  return token.is(TokenKind::Word) &&
         std::any_of(words.begin(), words.end(),
                     [&](std::string_view w) { return equal_names(token.text, w); });
}

bool runs_on(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         c == '$' || c == '?' || static_cast<unsigned char>(c) >= 0x80;
}

char small(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// What every text that fits a pattern begins with, up to its last plain character: behind that one
// the order of the collation has an end that is easily named.
std::string fixed_beginning(const std::string& pattern) {
  std::string out = pattern.substr(0, pattern.find_first_of("%_["));
  while (!out.empty() && (out.back() < ' ' || out.back() > '~')) out.pop_back();
  return out;
}

// True or false, from a condition that is whole.
Operand condition_of(std::string sql) {
  Operand out;
  out.sql = std::move(sql);
  out.kind = Kind::Number;
  out.computed = true;
  return out;
}

}  // namespace

// Guards the stack: no statement of a person nests so deep.
struct Rewriter::Deeper {
  explicit Deeper(Rewriter& rewriter) : owner(rewriter) {
    if (++owner.nesting_ > kDeepestNesting) owner.refuse("the statement is nested too deeply");
  }
  Deeper(const Deeper&) = delete;
  Deeper& operator=(const Deeper&) = delete;
  ~Deeper() { --owner.nesting_; }
  Rewriter& owner;
};

void put(std::string& out, std::string_view piece, bool space) {
  if (piece.empty()) return;
  if (!out.empty() && out.back() != ' ' &&
      (space || (runs_on(out.back()) && runs_on(piece.front())))) {
    out.push_back(' ');
  }
  out += piece;
}

std::string collated(const Operand& operand) {
  return operand.collates ? operand.sql + " COLLATE " + kCollation : operand.sql;
}

const Token& Rewriter::peek(std::size_t ahead) const {
  static const Token kEnd;
  return at_ + ahead < tokens_.size() ? tokens_[at_ + ahead] : kEnd;
}

Token Rewriter::take() { return at_end() ? Token{} : tokens_[at_++]; }

bool Rewriter::take_word(std::string_view upper) {
  if (!peek().is_word(upper)) return false;
  ++at_;
  return true;
}

bool Rewriter::take_symbol(std::string_view s) {
  if (!peek().is_symbol(s)) return false;
  ++at_;
  return true;
}

void Rewriter::expect(std::string_view symbol) {
  if (take_symbol(symbol)) return;
  const std::string found = at_end() ? "the end of the statement" : std::string(peek().text);
  refuse("syntax error: \"" + std::string(symbol) + "\" expected before " + found);
}

void Rewriter::refuse(const std::string& why) const {
  raise_provider_error(error_number::kErrorsInCommand, why);
}

bool Rewriter::starts_operand(std::size_t ahead) const {
  const Token& t = peek(ahead);
  switch (t.kind) {
    case TokenKind::End:
    case TokenKind::Unterminated:
      return false;
    case TokenKind::Word:
      if (t.is_word("LEFT") || t.is_word("RIGHT")) return peek(ahead + 1).is_symbol("(");
      return !is_one_of(t, kReserved);
    case TokenKind::Symbol:
      return t.text == "(" || t.text == "-" || t.text == "+" || t.text == "~" || t.text == "{";
    default:
      return true;
  }
}

bool Rewriter::at_clause_end() const { return is_one_of(peek(), kClauseEnds); }

std::string Rewriter::sequence(Stops stops, Operand* only) {
  const Deeper guard(*this);
  std::string out;
  std::size_t pieces = 0;
  while (!at_end()) {
    const Token& t = peek();
    if (t.is_symbol(")") && depth_ > 0) break;
    if (stops.comma && t.is_symbol(",")) break;
    if (stops.clause && at_clause_end()) break;
    ++pieces;
    if (t.is_word("SELECT")) {
      const bool space = t.space_before;
      put(out, query(), space);
    } else if (t.is_word("WITH") && peek(1).is_symbol("(")) {
      take();
      if (!skip_table_hint()) put(out, "WITH", true);
    } else if (starts_operand()) {
      const bool space = t.space_before;
      Operand operand = condition(stops.argument);
      put(out, stops.argument ? operand.sql : collated(operand), space);
      if (only != nullptr) *only = std::move(operand);
    } else {
      const Token token = take();
      if (token.is_word("WHERE") || token.is_word("FROM")) assigning_ = false;
      put(out, token.text, token.space_before);
    }
  }
  if (only != nullptr && pieces != 1) *only = {};
  return out;
}

// An operand, or what a comparison makes of two.
Operand Rewriter::condition(bool argument) {
  Operand a = additive();
  for (;;) {
    const Token& t = peek();
    if (t.is(TokenKind::Symbol) &&
        std::find(kComparisons.begin(), kComparisons.end(), t.text) != kComparisons.end()) {
      const Token op = take();
      if (!starts_operand()) {
        a.sql = collated(a);
        put(a.sql, op.text, op.space_before);
        a = {std::move(a.sql)};
        return a;
      }
      const bool space = peek().space_before;
      Operand b = additive();
      relate(a, b);
      std::string sql = collated(a);
      put(sql, op.text == "!<" ? ">=" : op.text == "!>" ? "<=" : op.text, op.space_before);
      put(sql, collated(b), space);
      a = condition_of(std::move(sql));
    } else if (t.is_symbol("*=") || t.is_symbol("=*")) {
      refuse("the outer join operator " + std::string(t.text) +
             " is not known to the embedded database; write LEFT JOIN or RIGHT JOIN");
    } else if (t.is_word("BETWEEN") || t.is_word("IN") || t.is_word("LIKE") ||
               (t.is_word("NOT") &&
                (peek(1).is_word("BETWEEN") || peek(1).is_word("IN") || peek(1).is_word("LIKE")))) {
      a = negation_or_range(std::move(a));
    } else {
      return argument ? a : std::move(a);
    }
  }
}

// [NOT] BETWEEN … AND …, [NOT] IN (…), [NOT] LIKE … [ESCAPE …]
Operand Rewriter::negation_or_range(Operand a) {
  const std::string negation = take_word("NOT") ? " NOT" : "";
  const Token word = take();
  if (word.is_word("IN")) return member_of(std::move(a), negation);
  if (word.is_word("LIKE")) return like(std::move(a), negation);
  Operand b = additive();
  Operand c;
  if (take_word("AND")) c = additive();
  relate(a, b);
  relate(a, c);
  return condition_of(collated(a) + negation + " BETWEEN " + collated(b) + " AND " + collated(c));
}

Operand Rewriter::like(Operand a, const std::string& negation) {
  const Token pattern = peek();
  const Operand b = additive();
  std::string sql = a.sql + negation + " LIKE " + b.sql;
  if (take_word("ESCAPE")) {
    sql += " ESCAPE " + additive().sql;
  } else if (negation.empty() && a.case_blind && b.literal && pattern.is(TokenKind::Text)) {
    // An index in the order of the column finds what begins as the pattern does.
    const std::string begin = fixed_beginning(content_of(pattern));
    if (!begin.empty()) {
      std::string behind = begin;
      behind.back() = static_cast<char>(small(behind.back()) + 1);
      sql = "(" + sql + " AND " + a.sql + " >= " + quoted_text(begin) + " AND " + a.sql + " < " +
            quoted_text(behind) + ")";
    }
  }
  return condition_of(std::move(sql));
}

Operand Rewriter::member_of(Operand a, const std::string& negation) {
  std::string list;
  if (peek().is_symbol("(") && !peek(1).is_word("SELECT") && !peek(1).is_word("WITH")) {
    take();
    ++depth_;
    while (starts_operand()) {
      Operand b = condition(true);
      relate(a, b);
      list += (list.empty() ? "" : ", ") + b.sql;
      if (!take_symbol(",")) break;
    }
    --depth_;
    expect(")");
    list = "(" + list + ")";
  } else {
    list = primary().sql;
  }
  return condition_of(collated(a) + negation + " IN " + list);
}

// What the server's conversions between the two sides of a comparison ask for.
void Rewriter::relate(Operand& a, Operand& b) {
  const auto one_way = [&](Operand& x, Operand& y) {
    if (x.kind == Kind::Date && y.literal && y.kind == Kind::Text) {
      read_as(y, Slot::Reading::Date);
    } else if (x.kind == Kind::Number && x.computed && y.literal && y.kind == Kind::Text) {
      read_as(y, Slot::Reading::Number);
    } else if (x.kind == Kind::Text && x.literal && y.kind == Kind::Text && y.literal) {
      x.collates = true;
    } else if (x.kind == Kind::Text && x.computed && y.kind == Kind::Number) {
      x.sql = "pelm_number(" + x.sql + ")";
      x.kind = Kind::Number;
      x.collates = false;
    }
  };
  one_way(a, b);
  one_way(b, a);
}

void Rewriter::read_as(Operand& operand, Slot::Reading reading) {
  if (operand.slot >= 0) {
    out_.slots[static_cast<std::size_t>(operand.slot)].reading = reading;
  } else {
    operand.sql = reading == Slot::Reading::Date ? "pelm_to_datetime(" + operand.sql + ", NULL)"
                                                 : "pelm_number(" + operand.sql + ")";
  }
  operand.kind = reading == Slot::Reading::Date ? Kind::Date : Kind::Number;
}

Operand Rewriter::additive() {
  Operand a = multiplicative();
  while (peek().is_symbol("+") || peek().is_symbol("-")) {
    const char sign = take().text.front();
    if (!starts_operand()) refuse(std::string("syntax error: nothing follows \"") + sign + "\"");
    a = joined(std::move(a), sign, multiplicative());
  }
  return a;
}

// "+" joins texts, counts days on from a date, and adds; which of them is known only when the
// statement runs, unless both sides tell.
Operand Rewriter::joined(Operand a, char sign, Operand b) const {
  const bool date = a.kind == Kind::Date || b.kind == Kind::Date;
  Operand out;
  out.computed = true;
  out.numeric = a.numeric || b.numeric;
  if (a.kind == Kind::Number && b.kind == Kind::Number) {
    out.sql = a.sql + ' ' + sign + ' ' + b.sql;
    out.kind = Kind::Number;
    return out;
  }
  if (sign == '-') {
    out.sql = "pelm_subtract(" + a.sql + ", " + b.sql + ")";
    if (date) out.kind = a.kind == b.kind ? Kind::Number : Kind::Date;
    return out;
  }
  const bool text = a.kind == Kind::Text || b.kind == Kind::Text;
  out.kind = date ? Kind::Date : text ? Kind::Text : Kind::Unknown;
  out.collates = !date && a.kind != Kind::Number && b.kind != Kind::Number;
  out.sql = a.kind == Kind::Text && b.kind == Kind::Text ? "(" + a.sql + " || " + b.sql + ")"
                                                         : "pelm_add(" + a.sql + ", " + b.sql + ")";
  return out;
}

Operand Rewriter::multiplicative() {
  Operand a = unary();
  for (;;) {
    const Token& t = peek();
    const bool concatenates = t.is_symbol("||");
    if (!concatenates && !t.is_symbol("*") && !t.is_symbol("/") && !t.is_symbol("%")) return a;
    if (!starts_operand(1)) return a;
    const Token op = take();
    const bool space = peek().space_before;
    const Operand b = unary();
    const bool numeric = a.numeric || b.numeric;
    if (op.text == "/" && numeric) a.sql = "CAST(" + a.sql + " AS REAL)";
    put(a.sql, op.text, op.space_before);
    put(a.sql, b.sql, space);
    a = {std::move(a.sql), concatenates ? Kind::Text : Kind::Number, false, false, true,
         concatenates};
    a.numeric = numeric;
  }
}

Operand Rewriter::unary() {
  const Deeper guard(*this);
  const Token& t = peek();
  if (t.is_symbol("+")) {
    take();
    return unary();
  }
  if (!t.is_symbol("-") && !t.is_symbol("~")) return primary();
  const Token sign = take();
  Operand operand = unary();
  // Two signs side by side would begin a comment.
  const bool apart = !operand.sql.empty() && operand.sql.front() == '-';
  operand.sql = std::string(sign.text) + (apart ? " " : "") + operand.sql;
  operand.slot = -1;
  operand.column = false;
  operand.computed = true;
  operand.kind = Kind::Number;
  operand.collates = false;
  return operand;
}

int Rewriter::new_slot(Slot slot) {
  out_.slots.push_back(std::move(slot));
  return static_cast<int>(out_.slots.size()) - 1;
}

Operand Rewriter::bound_literal(const Token& token) {
  Operand operand;
  operand.literal = true;
  operand.slot = new_slot({Slot::Source::Literal, literals_++, {}, Slot::Reading::AsItIs});
  operand.sql = "?" + std::to_string(operand.slot + 1);
  operand.kind = token.is(TokenKind::BoundNumber) ? Kind::Number
                 : token.is(TokenKind::BoundText) ? Kind::Text
                                                  : Kind::Date;
  if (operand.kind == Kind::Date) {
    out_.slots.back().reading = Slot::Reading::Date;
  }
  return operand;
}

Operand Rewriter::system_variable(const Token& token) {
  struct Known {
    std::string_view name;
    std::string_view sql;
  };
  constexpr std::array kKnown = {Known{"@@IDENTITY", "pelm_identity()"},
                                 Known{"@@ROWCOUNT", "pelm_rowcount()"}, Known{"@@ERROR", "0"},
                                 Known{"@@SERVERNAME", "'(local)'"}};
  const auto found = std::find_if(kKnown.begin(), kKnown.end(),
                                  [&](const Known& k) { return equal_names(k.name, token.text); });
  if (found == kKnown.end()) {
    refuse("Must declare the variable '" + std::string(token.text) +
           "'. The embedded database knows @@identity, @@rowcount, @@error and @@servername.");
  }
  Operand operand;
  operand.sql = found->sql;
  operand.computed = true;
  operand.kind = equal_names(found->name, "@@SERVERNAME") ? Kind::Text : Kind::Number;
  return operand;
}

// { fn … } and { oj … }: the braces go.
Operand Rewriter::escape() {
  if (!peek(1).is_word("FN") && !peek(1).is_word("OJ")) {
    Operand brace;
    brace.sql = take().text;
    return brace;
  }
  take();
  take();
  Operand only;
  std::string sql;
  while (!at_end() && !peek().is_symbol("}")) {
    const bool space = peek().space_before;
    if (starts_operand()) {
      only = condition(true);
      put(sql, only.sql, space);
    } else {
      only = {};
      put(sql, take().text, space);
    }
  }
  expect("}");
  only.sql = std::move(sql);
  return only;
}

Operand Rewriter::parenthesis() {
  const Deeper guard(*this);
  take();
  ++depth_;
  Operand inner;
  std::string sql = sequence({}, &inner);
  --depth_;
  expect(")");
  inner.sql = "(" + std::move(sql) + ")";
  inner.literal = inner.column = false;
  inner.collates = false;  // said inside
  inner.slot = -1;
  inner.computed = true;
  return inner;
}

Operand Rewriter::case_expression() {
  const Deeper guard(*this);
  Operand out;
  out.sql = take().text;
  out.computed = out.collates = true;
  bool branch = false;  // behind THEN or ELSE: what follows is a value of the expression
  while (!at_end() && !peek().is_word("END")) {
    const Token& t = peek();
    const bool space = t.space_before;
    if (t.is_symbol(")") || t.is_symbol(",")) break;
    if (starts_operand()) {
      const Operand operand = condition(true);
      if (branch && operand.sql != "NULL") {
        if (operand.kind != Kind::Unknown) out.kind = operand.kind;
      }
      put(out.sql, operand.sql, space);
    } else {
      branch = t.is_word("THEN") || t.is_word("ELSE");
      put(out.sql, take().text, space);
    }
  }
  if (take_word("END")) out.sql += " END";
  if (out.kind == Kind::Number || out.kind == Kind::Date) out.collates = false;
  return out;
}

Operand Rewriter::primary() {
  const Token& t = peek();
  Operand operand;
  switch (t.kind) {
    case TokenKind::BoundNumber:
    case TokenKind::BoundText:
    case TokenKind::BoundDate:
      operand = bound_literal(take());
      break;
    case TokenKind::Value:
      take();
      operand.slot = new_slot({Slot::Source::Value, values_++, {}, Slot::Reading::AsItIs});
      operand.sql = "?" + std::to_string(operand.slot + 1);
      operand.slot = -1;
      break;
    case TokenKind::Variable: {
      const int slot = new_slot({Slot::Source::Variable, 0, std::string(take().text), {}});
      operand.sql = "?" + std::to_string(slot + 1);
      break;
    }
    case TokenKind::System:
      operand = system_variable(take());
      break;
    case TokenKind::Number:
      operand = {std::string(take().text), Kind::Number, true};
      break;
    case TokenKind::Text:
      operand = {quoted_text(content_of(take())), Kind::Text, true};
      break;
    case TokenKind::DateEscape: {
      const std::string content = content_of(take());
      const auto date = read_date(content, DateOrder::YearMonthDay);
      if (!date) refuse("{ '" + content + "' } is not a date");
      operand = {quoted_text(stored_date(*date)), Kind::Date, true};
      break;
    }
    case TokenKind::Word:
    case TokenKind::Quoted:
      if (t.is_word("CASE")) {
        operand = case_expression();
      } else if (t.is_word("NULL")) {
        operand.sql = take().text;
        operand.literal = true;
      } else if (t.is_word("CURRENT_TIMESTAMP")) {
        take();
        operand = {"getdate()", Kind::Date};
        operand.computed = true;
      } else {
        operand = path();
      }
      break;
    case TokenKind::Symbol:
      if (t.text == "(")
        operand = parenthesis();
      else if (t.text == "{")
        operand = escape();
      else
        operand.sql = take().text;
      break;
    case TokenKind::Unterminated:
    case TokenKind::End:
      break;
  }
  if (peek().is_word("COLLATE")) {
    operand.sql = operand.sql + " COLLATE " + collation();
    operand.collates = false;
  }
  return operand;
}

// The server's collation names say what they ignore: …_CI_AS, …_CI_AI, …_CS_AS, …_BIN.
std::string Rewriter::collation() {
  take();
  const Token token = take();
  const std::string upper = capitals(content_of(token));
  if (upper.find("_CI_AI") != std::string::npos) return kAccentBlindCollation;
  if (upper.find("_CI_") != std::string::npos) return kCollation;
  if (upper.find("_CS_") != std::string::npos || upper.find("_BIN") != std::string::npos) {
    return "BINARY";
  }
  return quoted_name(content_of(token));
}

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
