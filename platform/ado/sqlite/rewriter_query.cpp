// Rewriting: SELECT with its TOP, its list and what it is united with.
#include "platform/ado/sqlite/rewriter.h"

namespace pelm::ado::sqlite {

std::string Rewriter::query() {
  const bool top_level = depth_ == 0;
  std::vector<Core> cores;
  std::vector<std::string> operators;
  for (;;) {
    cores.push_back(core(top_level && cores.empty()));
    const Token& t = peek();
    if (!t.is_word("UNION") && !t.is_word("EXCEPT") && !t.is_word("INTERSECT")) break;
    std::string word(take().text);
    if (peek().is_word("ALL")) put(word, take().text, true);
    operators.push_back(std::move(word));
    if (!peek().is_word("SELECT")) break;  // the engine says what is wrong
  }
  std::string out;
  if (top_level && !into_.empty()) out = "CREATE " + into_ + " AS ";
  for (std::size_t i = 0; i < cores.size(); ++i) {
    const bool alone = cores.size() == 1;
    const Core& c = cores[i];
    // TOP belongs to its own SELECT, the engine's LIMIT to the whole union.
    put(out,
        c.limit.empty() || alone ? c.sql : "SELECT * FROM (" + c.sql + " LIMIT " + c.limit + ")",
        i > 0);
    if (i < operators.size()) put(out, operators[i], true);
  }
  put(out, sequence({}), true);
  if (cores.size() == 1 && !cores.front().limit.empty()) out += " LIMIT " + cores.front().limit;
  return out;
}

// One SELECT up to what unites it with the next or orders them all.
Rewriter::Core Rewriter::core(bool top_level) {
  Core out;
  put(out.sql, take().text, false);
  if (peek().is_word("DISTINCT") || peek().is_word("ALL")) put(out.sql, take().text, true);
  if (take_word("TOP")) out.limit = limit();
  put(out.sql, select_list(top_level), true);
  if (peek().is_word("INTO")) select_into();
  while (!at_end()) {
    const Token& t = peek();
    if (t.is_word("UNION") || t.is_word("EXCEPT") || t.is_word("INTERSECT") || t.is_word("ORDER") ||
        t.is_word("LIMIT") || (t.is_symbol(")") && depth_ > 0)) {
      break;
    }
    // FROM, WHERE, GROUP and HAVING: the word itself, then what belongs to it.
    if (at_clause_end()) {
      const Token word = take();
      put(out.sql, word.text, word.space_before);
    }
    const std::string more = sequence({.comma = false, .clause = true, .argument = false});
    put(out.sql, more, true);
    if (more.empty() && !at_clause_end() && !at_end() && !peek().is_symbol(")")) {
      const Token stray = take();
      put(out.sql, stray.text, stray.space_before);
    }
  }
  return out;
}

// TOP 5, TOP (5), TOP ?, TOP @n.
std::string Rewriter::limit() {
  std::string out;
  if (peek().is_symbol("(")) {
    out = parenthesis().sql;
  } else if (peek().is(TokenKind::Number) || peek().is(TokenKind::Value) ||
             peek().is(TokenKind::Variable) || peek().is(TokenKind::BoundNumber)) {
    out = primary().sql;
  } else {
    refuse("syntax error: a number expected after TOP");
  }
  if (peek().is_word("PERCENT")) {
    refuse("TOP … PERCENT is not known to the embedded database; give a number of rows");
  }
  if (peek().is_word("WITH") && peek(1).is_word("TIES")) {
    refuse("TOP … WITH TIES is not known to the embedded database");
  }
  return out;
}

std::string Rewriter::select_list(bool top_level) {
  std::string out;
  star_seen_ = false;
  do {
    if (!out.empty()) out += ", ";
    out += select_item(top_level);
  } while (take_symbol(","));
  return out;
}

// An expression without a name has an empty one, as on the server: otherwise the engine would
// show pages the text of the rewritten expression.
std::string Rewriter::select_item(bool top_level) {
  std::string alias, sql;
  bool named = false, is_star = false;
  Operand only;
  std::size_t pieces = 0;
  const auto name_it = [&] {
    alias = content_of(take());
    aliases_.push_back(alias);
    named = true;
  };
  if ((peek().is_name() || peek().is(TokenKind::Text)) && peek(1).is_symbol("=")) {
    name_it();  // alias = expression
    take();
  }
  bool after_operand = false;
  while (!at_end() && !at_clause_end()) {
    const Token& t = peek();
    if (t.is_symbol(",") || (t.is_symbol(")") && depth_ > 0)) break;
    const bool space = t.space_before;
    const bool names = t.is_name() && starts_operand() && !peek(1).is_symbol("(");
    if (take_word("AS")) {
      if (peek().is_name() || peek().is(TokenKind::Text)) name_it();
      break;
    }
    if (after_operand && (names || t.is(TokenKind::Text))) {
      name_it();
      break;
    }
    ++pieces;
    after_operand = starts_operand();
    if (after_operand) {
      const bool star_before = star_seen_;
      only = condition(false);
      is_star = pieces == 1 && only.sql.ends_with(".*");
      star_seen_ = star_before || is_star;
      put(sql, collated(only), space);
    } else if (t.is_word("SELECT")) {
      put(sql, query(), space);
    } else {
      const Token token = take();
      is_star = pieces == 1 && token.is_symbol("*");
      star_seen_ = star_seen_ || is_star;
      put(sql, token.text, space);
    }
  }
  if (pieces != 1) only = {};
  if (top_level && is_star) out_.types_after_star.clear();  // they count from the last "*"
  if (top_level && !is_star) {
    auto& types = star_seen_ ? out_.types_after_star : out_.types_before_star;
    types.push_back(only.column               ? ValueType::Other
                    : only.kind == Kind::Date ? ValueType::Date
                    : only.numeric            ? ValueType::Numeric
                                              : ValueType::Other);
  }
  if (named) return sql + " AS " + quoted_name(alias);
  if (top_level && pieces > 0 && !is_star && !(pieces == 1 && only.column)) return sql + " AS \"\"";
  return sql;
}

// SELECT … INTO t FROM …
void Rewriter::select_into() {
  take();
  const bool temporary = peek().text.starts_with("#") || peek().text.starts_with("[#");
  into_ = (temporary ? "TEMP TABLE " : "TABLE ") + name();
  out_.leaves_traces = out_.leaves_traces || temporary;
}

}  // namespace pelm::ado::sqlite
