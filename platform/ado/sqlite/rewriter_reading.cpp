// Rewriting: looking at the tokens and taking them, and joining what comes out.
#include <algorithm>
#include <array>

#include "pelm/error.h"
#include "platform/ado/sqlite/collation.h"
#include "platform/ado/sqlite/errors.h"
#include "platform/ado/sqlite/rewriter.h"

namespace pelm::ado::sqlite {
namespace {

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

}  // namespace

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

}  // namespace pelm::ado::sqlite
