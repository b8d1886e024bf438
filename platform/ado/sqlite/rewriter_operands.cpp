// Rewriting: operands, and sums and products of them.
#include <algorithm>
#include <array>

#include "pelm/error.h"
#include "platform/ado/sqlite/collation.h"
#include "platform/ado/sqlite/date_text.h"
#include "platform/ado/sqlite/errors.h"
#include "platform/ado/sqlite/rewriter.h"

namespace pelm::ado::sqlite {

Operand Rewriter::additive() {
  Operand a = multiplicative();
  while (peek().is_symbol("+") || peek().is_symbol("-")) {
    const char sign = take().text.front();
    if (!starts_operand()) refuse(std::string("syntax error: nothing follows \"") + sign + "\"");
    a = joined(a, sign, multiplicative());
  }
  return a;
}

// "+" joins texts, counts days on from a date, and adds; which of them is known only when the
// statement runs, unless both sides tell.
Operand Rewriter::joined(const Operand& a, char sign, const Operand& b) {
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

}  // namespace pelm::ado::sqlite
