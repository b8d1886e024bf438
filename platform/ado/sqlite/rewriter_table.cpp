// Rewriting: CREATE TABLE.
#include <algorithm>
#include <array>

#include "platform/ado/sqlite/collation.h"
#include "platform/ado/sqlite/rewriter.h"

namespace pelm::ado::sqlite {
namespace {

using Definition = std::vector<Token>;

constexpr std::array<std::string_view, 9> kTextTypes = {
    "CHAR", "VARCHAR", "NCHAR", "NVARCHAR", "TEXT", "NTEXT", "SYSNAME", "CLOB", "CHARACTER"};
constexpr std::array<std::string_view, 5> kTableConstraints = {"PRIMARY", "UNIQUE", "FOREIGN",
                                                               "CHECK", "CONSTRAINT"};
// How an index is stored is the engine's business.
constexpr std::array<std::string_view, 2> kStorage = {"CLUSTERED", "NONCLUSTERED"};

template <std::size_t N>
bool is_one_of(const Token& t, const std::array<std::string_view, N>& words) {
  return std::any_of(words.begin(), words.end(), [&](std::string_view w) { return t.is_word(w); });
}

bool is_constraint(const Definition& d) {
  return !d.empty() && is_one_of(d.front(), kTableConstraints);
}

Definition::const_iterator find_word(const Definition& d, std::string_view word) {
  return std::find_if(d.begin(), d.end(), [&](const Token& t) { return t.is_word(word); });
}

// Behind the ")" that closes the "(" at `i`; `i` itself where there is none.
std::size_t behind_parentheses(const Definition& d, std::size_t i) {
  if (i >= d.size() || !d[i].is_symbol("(")) return i;
  int depth = 0;
  do {
    if (d[i].is_symbol("(")) ++depth;
    if (d[i].is_symbol(")")) --depth;
    ++i;
  } while (depth > 0 && i < d.size());
  return i;
}

void put_token(std::string& out, const Token& t) {
  const bool name = t.is(TokenKind::Quoted) || (t.is(TokenKind::Word) && t.text.starts_with("#"));
  put(out,
      name                    ? quoted_name(content_of(t))
      : t.is(TokenKind::Text) ? quoted_text(content_of(t))
                              : std::string(t.text),
      t.space_before);
}

// What follows a column's type.
std::string column_constraints(const Definition& d, std::size_t from, bool identity) {
  std::string out;
  for (std::size_t i = from; i < d.size(); ++i) {
    const Token& t = d[i];
    if (is_one_of(t, kStorage)) continue;
    if (t.is_word("COLLATE") && i + 1 < d.size()) {
      // The engine's own case-blind collation knows no accented letters.
      const std::string name = content_of(d[++i]);
      put(out, "COLLATE", true);
      put(out, equal_names(name, "NOCASE") ? kCollation : name, true);
      continue;
    }
    if (t.is_word("DEFAULT") && i + 1 < d.size() && d[i + 1].is_word("GETDATE")) {
      put(out, "DEFAULT (getdate())", true);  // the engine wants calls between parentheses
      i = behind_parentheses(d, i + 2) - 1;
      continue;
    }
    if (identity && t.is_word("IDENTITY")) {
      i = behind_parentheses(d, i + 1) - 1;
      continue;
    }
    if (identity && (t.is_word("PRIMARY") || t.is_word("KEY"))) continue;  // said with the type
    put_token(out, t);
  }
  return out;
}

std::string column_text(const Definition& d) {
  std::string out;
  put_token(out, d.front());
  const bool identity = find_word(d, "IDENTITY") != d.end();
  const std::size_t behind_type = behind_parentheses(d, std::min<std::size_t>(2, d.size()));
  if (identity) {
    out += " INTEGER PRIMARY KEY AUTOINCREMENT";
  } else {
    for (std::size_t i = 1; i < behind_type; ++i) put_token(out, d[i]);
    const bool text = d.size() > 1 && is_one_of(d[1], kTextTypes);
    if (text && find_word(d, "COLLATE") == d.end()) out += std::string(" COLLATE ") + kCollation;
  }
  put(out, column_constraints(d, behind_type, identity), true);
  return out;
}

// A PRIMARY KEY written apart, of the column that the engine numbers and already has as its key.
bool repeats_identity(const Definition& d, const std::string& identity) {
  if (identity.empty() || !is_constraint(d) || find_word(d, "PRIMARY") == d.end()) return false;
  const auto open =
      std::find_if(d.begin(), d.end(), [](const Token& t) { return t.is_symbol("("); });
  return d.end() - open > 2 && equal_names(content_of(*(open + 1)), identity);
}

}  // namespace

// The definitions between the parentheses of CREATE TABLE.
std::vector<Rewriter::Definition> Rewriter::definitions() {
  std::vector<Definition> out(1);
  int depth = 1;
  while (!at_end()) {
    const Token t = take();
    if (t.is_symbol("(")) ++depth;
    if (t.is_symbol(")") && --depth == 0) return out;
    if (depth == 1 && t.is_symbol(","))
      out.emplace_back();
    else
      out.back().push_back(t);
  }
  refuse("syntax error: \")\" expected at the end of the table's definition");
}

// Texts compare as on the server, IDENTITY becomes the engine's own numbering.
std::string Rewriter::create_table(bool temporary) {
  std::string condition;
  if (peek().is_word("IF")) {
    while (!at_end() && !peek().is_word("EXISTS")) put(condition, take().text, true);
    put(condition, take().text, true);
  }
  temporary = temporary || content_of(peek()).starts_with("#");
  out_.leaves_traces = temporary;
  std::string out = temporary ? "CREATE TEMP TABLE" : "CREATE TABLE";
  put(out, condition, true);
  put(out, name(), true);
  if (!take_symbol("(")) {
    put(out, rest(), true);
    return out;
  }
  const std::vector<Definition> all = definitions();
  std::string identity;
  for (const Definition& d : all) {
    if (!is_constraint(d) && find_word(d, "IDENTITY") != d.end()) identity = content_of(d.front());
  }
  std::string list;
  for (const Definition& d : all) {
    if (d.empty() || repeats_identity(d, identity)) continue;
    if (!list.empty()) list += ", ";
    list += is_constraint(d) ? column_constraints(d, 0, false) : column_text(d);
  }
  out += " (" + list + ")";
  put(out, verbatim(), true);
  return out;
}

}  // namespace pelm::ado::sqlite
