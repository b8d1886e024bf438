// Cuts SQL text into tokens.
#include "platform/ado/sqlite/tokenizer.h"

#include <algorithm>
#include <array>

namespace pelm::ado::sqlite {
namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_letter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80;
}
bool starts_word(char c) { return is_letter(c) || c == '_' || c == '#'; }
bool continues_word(char c) { return starts_word(c) || is_digit(c) || c == '$' || c == '@'; }
bool is_blank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
char capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

std::string undoubled(std::string_view s, char quote) {
  std::string out;
  out.reserve(s.size());
  for (std::size_t i = 0; i < s.size(); ++i) {
    out.push_back(s[i]);
    if (s[i] == quote) ++i;
  }
  return out;
}

std::string doubled(std::string_view s, char quote) {
  std::string out(1, quote);
  for (const char c : s) {
    out.push_back(c);
    if (c == quote) out.push_back(c);
  }
  out.push_back(quote);
  return out;
}

constexpr std::array<std::string_view, 11> kPairs = {"<>", "!=", "<=", ">=", "!<", "!>",
                                                     "||", "*=", "=*", "<<", ">>"};

}  // namespace

bool Token::is_word(std::string_view upper) const {
  return kind == TokenKind::Word && equal_names(text, upper);
}

bool Tokenizer::skip_blanks() {
  const std::size_t from = at_;
  while (at_ < sql_.size()) {
    if (is_blank(sql_[at_])) {
      ++at_;
    } else if (sql_.substr(at_, 2) == "--") {
      at_ = std::min(sql_.find('\n', at_), sql_.size());
    } else if (sql_.substr(at_, 2) == "/*") {
      std::size_t depth = 1, i = at_ + 2;
      for (; i < sql_.size() && depth > 0; ++i) {
        const std::string_view two = sql_.substr(i, 2);
        if (two == "/*")
          ++depth, ++i;
        else if (two == "*/")
          --depth, ++i;
      }
      if (depth > 0) break;
      at_ = i;
    } else {
      break;
    }
  }
  return at_ > from;
}

Token Tokenizer::take(TokenKind kind, std::size_t end) {
  const Token token{kind, sql_.substr(at_, end - at_), space_before_};
  at_ = end;
  return token;
}

// `open` is where the opening quote stands.
Token Tokenizer::quoted(char closing, std::size_t open, TokenKind kind) {
  for (std::size_t i = open + 1; i < sql_.size(); ++i) {
    if (sql_[i] != closing) continue;
    if (i + 1 == sql_.size() || sql_[i + 1] != closing) return take(kind, i + 1);
    ++i;
  }
  return take(TokenKind::Unterminated, sql_.size());
}

Token Tokenizer::number() {
  std::size_t i = at_;
  const auto digits = [&] {
    while (i < sql_.size() && is_digit(sql_[i])) ++i;
  };
  if (sql_[i] == '0' && i + 1 < sql_.size() && capital(sql_[i + 1]) == 'X') {
    i += 2;
    while (i < sql_.size() &&
           (is_digit(sql_[i]) || (capital(sql_[i]) >= 'A' && capital(sql_[i]) <= 'F')))
      ++i;
    return take(TokenKind::Number, i);
  }
  digits();
  if (i < sql_.size() && sql_[i] == '.') ++i, digits();
  if (i < sql_.size() && capital(sql_[i]) == 'E') {
    std::size_t exponent = i + 1;
    if (exponent < sql_.size() && (sql_[exponent] == '+' || sql_[exponent] == '-')) ++exponent;
    if (exponent < sql_.size() && is_digit(sql_[exponent])) i = exponent, digits();
  }
  return take(TokenKind::Number, i);
}

// A date escape is one token; any other brace is a symbol.
Token Tokenizer::escape() {
  std::size_t i = at_ + 1;
  const auto blanks = [&] {
    while (i < sql_.size() && is_blank(sql_[i])) ++i;
  };
  blanks();
  const std::size_t word = i;
  while (i < sql_.size() && is_letter(sql_[i])) ++i;
  const std::string kind = capitals(sql_.substr(word, i - word));
  if (kind != "TS" && kind != "D" && kind != "T") return take(TokenKind::Symbol, at_ + 1);
  blanks();
  if (i >= sql_.size() || sql_[i] != '\'') return take(TokenKind::Symbol, at_ + 1);
  i = sql_.find('\'', i + 1);
  if (i == std::string_view::npos) return take(TokenKind::Unterminated, sql_.size());
  ++i;
  blanks();
  if (i >= sql_.size() || sql_[i] != '}') return take(TokenKind::Symbol, at_ + 1);
  return take(TokenKind::DateEscape, i + 1);
}

Token Tokenizer::symbol() {
  const std::string_view two = sql_.substr(at_, 2);
  const bool pair = std::find(kPairs.begin(), kPairs.end(), two) != kPairs.end();
  return take(TokenKind::Symbol, at_ + (pair ? 2 : 1));
}

Token Tokenizer::next() {
  space_before_ = skip_blanks();
  if (at_ >= sql_.size()) return {TokenKind::End, {}, space_before_};
  const char c = sql_[at_];
  const char after = at_ + 1 < sql_.size() ? sql_[at_ + 1] : '\0';

  if ((c == 'N' || c == 'n') && after == '\'') return quoted('\'', at_ + 1, TokenKind::Text);
  if (starts_word(c) || c == '@') {
    std::size_t i = at_ + 1;
    const bool system = c == '@' && after == '@';
    if (system) ++i;
    while (i < sql_.size() && continues_word(sql_[i])) ++i;
    if (c != '@') return take(TokenKind::Word, i);
    return take(system ? TokenKind::System : TokenKind::Variable, i);
  }
  if (is_digit(c) || (c == '.' && is_digit(after))) return number();
  if (c == '/' && after == '*') return take(TokenKind::Unterminated, sql_.size());
  if (marks_) {
    if (c == kBoundNumberMark) return take(TokenKind::BoundNumber, at_ + 1);
    if (c == kBoundTextMark) return take(TokenKind::BoundText, at_ + 1);
    if (c == kBoundDateMark) return take(TokenKind::BoundDate, at_ + 1);
  }
  switch (c) {
    case '\'':
      return quoted('\'', at_, TokenKind::Text);
    case '"':
      return quoted('"', at_, TokenKind::Quoted);
    case '[':
      return quoted(']', at_, TokenKind::Quoted);
    case '?':
      return take(TokenKind::Value, at_ + 1);
    case '{':
      return escape();
    default:
      return symbol();
  }
}

std::vector<Token> tokenize(std::string_view sql, bool marks) {
  std::vector<Token> tokens;
  Tokenizer tokenizer(sql, marks);
  for (Token t = tokenizer.next(); !t.is(TokenKind::End); t = tokenizer.next()) {
    tokens.push_back(t);
  }
  return tokens;
}

std::string content_of(const Token& token) {
  std::string_view s = token.text;
  switch (token.kind) {
    case TokenKind::Text:
      s.remove_prefix(s.find('\'') + 1);
      s.remove_suffix(1);
      return undoubled(s, '\'');
    case TokenKind::Quoted: {
      const char closing = s.back();
      s.remove_prefix(1);
      s.remove_suffix(1);
      return undoubled(s, closing);
    }
    case TokenKind::DateEscape: {
      const std::size_t open = s.find('\'') + 1;
      return std::string(s.substr(open, s.find('\'', open) - open));
    }
    default:
      return std::string(s);
  }
}

std::string capitals(std::string_view s) {
  std::string out(s);
  std::transform(out.begin(), out.end(), out.begin(), capital);
  return out;
}

bool equal_names(std::string_view a, std::string_view b) noexcept {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return capital(x) == capital(y);
         });
}

std::string quoted_name(std::string_view name) { return doubled(name, '"'); }
std::string quoted_text(std::string_view s) { return doubled(s, '\''); }

}  // namespace pelm::ado::sqlite
