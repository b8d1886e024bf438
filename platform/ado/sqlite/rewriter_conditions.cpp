// Rewriting: comparisons, ranges, patterns and lists, and what their two sides ask of each other.
#include <algorithm>
#include <array>

#include "platform/ado/sqlite/rewriter.h"

namespace pelm::ado::sqlite {
namespace {

constexpr std::array<std::string_view, 9> kComparisons = {"=",  "<>", "!=", "<", ">",
                                                          "<=", ">=", "!<", "!>"};

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
  if (word.is_word("LIKE")) return like(a, negation);
  Operand b = additive();
  Operand c;
  if (take_word("AND")) c = additive();
  relate(a, b);
  relate(a, c);
  return condition_of(collated(a) + negation + " BETWEEN " + collated(b) + " AND " + collated(c));
}

Operand Rewriter::like(const Operand& a, const std::string& negation) {
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

}  // namespace pelm::ado::sqlite
