// Reading the one table of a SELECT from its text.
#include "platform/ado/table_name.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

#include "platform/ado/name_compare.h"

namespace pelm::ado {
namespace {

enum class Kind { Word, QuotedName, Literal, Mark };

struct Token {
  Kind kind;
  std::string_view text;

  bool is(std::string_view word) const noexcept {
    return kind != Kind::Literal && kind != Kind::QuotedName && same_name(text, word);
  }
  bool is_name() const noexcept { return kind == Kind::Word || kind == Kind::QuotedName; }
};

using Tokens = std::span<const Token>;

bool is_word_byte(char c) noexcept {
  const auto u = static_cast<unsigned char>(c);
  return u >= 0x80 || (u >= '0' && u <= '9') || ((u | 0x20U) >= 'a' && (u | 0x20U) <= 'z') ||
         c == '_' || c == '#' || c == '@' || c == '$';
}

/// The end of what `text[at]` opens; the closing mark stands for itself where doubled.
std::size_t end_of_enclosed(std::string_view text, std::size_t at, char closing) noexcept {
  for (std::size_t i = at + 1; i < text.size(); ++i) {
    if (text[i] != closing) continue;
    if (i + 1 < text.size() && text[i + 1] == closing) {
      ++i;
      continue;
    }
    return i + 1;
  }
  return text.size();
}

/// Past blanks and comments.
std::size_t skip_blanks(std::string_view text, std::size_t at) noexcept {
  while (at < text.size()) {
    const std::string_view rest = text.substr(at);
    if (rest.starts_with("--")) {
      at = std::min(text.find('\n', at), text.size());
    } else if (rest.starts_with("/*")) {
      const std::size_t end = text.find("*/", at + 2);
      at = end == std::string_view::npos ? text.size() : end + 2;
    } else if (static_cast<unsigned char>(text[at]) <= ' ') {
      ++at;
    } else {
      break;
    }
  }
  return at;
}

Token token_at(std::string_view text, std::size_t at) noexcept {
  const auto enclosed = [&](Kind kind, char closing) {
    return Token{kind, text.substr(at, end_of_enclosed(text, at, closing) - at)};
  };
  switch (text[at]) {
    case '\'':
      return enclosed(Kind::Literal, '\'');
    case '"':
      return enclosed(Kind::QuotedName, '"');
    case '`':
      return enclosed(Kind::QuotedName, '`');
    case '[':
      return enclosed(Kind::QuotedName, ']');
    default:
      break;
  }
  if (!is_word_byte(text[at])) return {Kind::Mark, text.substr(at, 1)};
  std::size_t end = at + 1;
  while (end < text.size() && is_word_byte(text[end])) ++end;
  const bool number = text[at] >= '0' && text[at] <= '9';
  return {number ? Kind::Literal : Kind::Word, text.substr(at, end - at)};
}

std::vector<Token> tokenize(std::string_view text) {
  std::vector<Token> tokens;
  for (std::size_t at = skip_blanks(text, 0); at < text.size();) {
    tokens.push_back(token_at(text, at));
    at = skip_blanks(text, at + tokens.back().text.size());
  }
  while (!tokens.empty() && tokens.back().is(";")) tokens.pop_back();
  return tokens;
}

/// name[.name]*, also with an empty part as in "db..table". Returns how many tokens, 0 for none.
std::size_t qualified_name(Tokens tokens) noexcept {
  if (tokens.empty() || !tokens[0].is_name()) return 0;
  std::size_t n = 1;
  while (n < tokens.size() && tokens[n].is(".")) {
    std::size_t next = n + 1;
    while (next < tokens.size() && tokens[next].is(".")) ++next;
    if (next >= tokens.size() || !tokens[next].is_name()) break;
    n = next + 1;
  }
  return n;
}

/// The text from the first token to the last, as written.
std::string_view written(Tokens tokens) noexcept {
  const char* const first = tokens.front().text.data();
  const Token& last = tokens.back();
  return {first, static_cast<std::size_t>(last.text.data() + last.text.size() - first)};
}

std::string unquoted(const Token& name) {
  if (name.kind != Kind::QuotedName || name.text.size() < 2) return std::string(name.text);
  const char closing = name.text.front() == '[' ? ']' : name.text.front();
  std::string result;
  const std::string_view inside = name.text.substr(1, name.text.size() - 2);
  for (std::size_t i = 0; i < inside.size(); ++i) {
    result += inside[i];
    if (inside[i] == closing) ++i;  // doubled
  }
  return result;
}

template <std::size_t N>
bool is_one_of(const Token& token, const std::array<std::string_view, N>& words) noexcept {
  return std::ranges::any_of(words, [&](std::string_view w) { return token.is(w); });
}

/// Where the token of that word stands outside all parentheses; `tokens.size()` when nowhere.
std::size_t find_outside(Tokens tokens, std::string_view word) noexcept {
  int depth = 0;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (tokens[i].is("(")) ++depth;
    if (tokens[i].is(")")) --depth;
    if (depth == 0 && tokens[i].is(word)) return i;
  }
  return tokens.size();
}

/// One item of the select list: remembers the name of a computed or renamed column.
void read_item(Tokens item, SelectSource& source) {
  if (item.empty()) return;
  std::size_t plain = qualified_name(item);
  if (item[0].is("*")) plain = 1;
  if (plain + 2 == item.size() && item[plain].is(".") && item[plain + 1].is("*")) plain += 2;
  if (plain == item.size()) return;
  const bool named_in_front = item.size() > 2 && item[0].is_name() && item[1].is("=");
  const Token& name = named_in_front ? item.front() : item.back();
  if (name.is_name()) source.computed.push_back(unquoted(name));
}

void read_select_list(Tokens list, SelectSource& source) {
  while (!list.empty()) {
    const std::size_t comma = find_outside(list, ",");
    read_item(list.first(comma), source);
    list = list.subspan(std::min(comma + 1, list.size()));
  }
}

/// Past ALL and TOP n [PERCENT].
Tokens past_top(Tokens list) noexcept {
  if (!list.empty() && list[0].is("all")) list = list.subspan(1);
  if (list.size() < 2 || !list[0].is("top")) return list;
  std::size_t n = 2;
  if (list[1].is("(")) n = std::min(find_outside(list.subspan(1), ")") + 2, list.size());
  if (n < list.size() && list[n].is("percent")) ++n;
  return list.subspan(n);
}

/// True when nothing after the table's name mixes its rows with others or with one another.
bool keeps_rows_apart(Tokens rest) {
  static constexpr std::array<std::string_view, 6> kMayFollow = {"where",  "order", "with",
                                                                 "option", "for",   "limit"};
  static constexpr std::array<std::string_view, 7> kMixing = {
      "group", "having", "union", "except", "intersect", "minus", "compute"};
  static constexpr std::array<std::string_view, 8> kJoining = {"join", "inner", "left",    "right",
                                                               "full", "cross", "natural", "outer"};
  if (!rest.empty() && rest[0].is("as")) rest = rest.subspan(1);
  const bool alias = !rest.empty() && rest[0].is_name() && !is_one_of(rest[0], kMayFollow) &&
                     !is_one_of(rest[0], kMixing) && !is_one_of(rest[0], kJoining);
  if (alias) rest = rest.subspan(1);
  if (!rest.empty() && !is_one_of(rest[0], kMayFollow)) return false;
  return std::ranges::none_of(
      kMixing, [&](std::string_view word) { return find_outside(rest, word) < rest.size(); });
}

}  // namespace

bool SelectSource::is_computed(std::string_view column) const noexcept {
  return std::ranges::any_of(computed,
                             [&](const std::string& name) { return same_name(name, column); });
}

SelectSource select_source(std::string_view sql) {
  const std::vector<Token> all = tokenize(sql);
  Tokens tokens = all;
  if (tokens.empty() || !tokens[0].is("select")) return {};
  if (find_outside(tokens, ";") < tokens.size()) return {};
  tokens = tokens.subspan(1);
  const std::size_t from = find_outside(tokens, "from");
  if (from >= tokens.size()) return {};
  const Tokens list = past_top(tokens.first(from));
  if (list.empty() || list[0].is("distinct")) return {};

  const Tokens after = tokens.subspan(from + 1);
  const std::size_t name = qualified_name(after);
  if (name == 0 || !keeps_rows_apart(after.subspan(name))) return {};
  SelectSource source;
  source.table = written(after.first(name));
  read_select_list(list, source);
  return source;
}

bool is_bare_name(std::string_view text) {
  const std::vector<Token> tokens = tokenize(text);
  return !tokens.empty() && qualified_name(tokens) == tokens.size();
}

}  // namespace pelm::ado
