// Cuts SQL text into tokens.
#include "platform/ado/sqlite/tokenizer.h"

#include <algorithm>
#include <array>

namespace pelm::ado::sqlite {
namespace {

enum CharacterClass : unsigned char {
  kBlank = 1,
  kDigit = 2,
  kLetter = 4,
  kWordStart = 8,
  kWordPart = 16,
};

// Statements of pages are read character by character each time they run.
constexpr std::array<unsigned char, 256> make_classes() {
  std::array<unsigned char, 256> classes{};
  for (unsigned c = 0; c < classes.size(); ++c) {
    const bool digit = c >= '0' && c <= '9';
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c >= 0x80;
    const bool start = letter || c == '_' || c == '#';
    unsigned is = 0;
    if (c == ' ' || (c >= '\t' && c <= '\r')) is |= kBlank;
    if (digit) is |= kDigit;
    if (letter) is |= kLetter;
    if (start) is |= kWordStart;
    if (start || digit || c == '$' || c == '@') is |= kWordPart;
    classes[c] = static_cast<unsigned char>(is);
  }
  return classes;
}
constexpr std::array<unsigned char, 256> kClasses = make_classes();

bool is(char c, CharacterClass of) { return (kClasses[static_cast<unsigned char>(c)] & of) != 0; }
bool is_digit(char c) { return is(c, kDigit); }
bool is_letter(char c) { return is(c, kLetter); }
bool starts_word(char c) { return is(c, kWordStart); }
bool continues_word(char c) { return is(c, kWordPart); }
bool is_blank(char c) { return is(c, kBlank); }
char capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// Behind the comment that begins at `at`; `at` itself when it never ends.
std::size_t behind_comment(std::string_view sql, std::size_t at) {
  std::size_t depth = 1;
  for (std::size_t i = at + 2; i < sql.size(); ++i) {
    const std::string_view two = sql.substr(i, 2);
    if (two == "/*") {
      ++depth;
      ++i;
    } else if (two == "*/") {
      ++i;
      if (--depth == 0) return i + 1;
    }
  }
  return at;
}

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

constexpr std::string_view kPairStarts = "<>!|*=";
constexpr std::array<std::string_view, 11> kPairs = {"<>", "!=", "<=", ">=", "!<", "!>",
                                                     "||", "*=", "=*", "<<", ">>"};

}  // namespace

bool Token::is_word(std::string_view upper) const {
  return kind == TokenKind::Word && equal_names(text, upper);
}

bool Tokenizer::skip_blanks() {
  const std::size_t from = at_;
  while (at_ < sql_.size()) {
    const char c = sql_[at_];
    if (is_blank(c)) {
      ++at_;
      continue;
    }
    if (c == '-' && sql_.substr(at_, 2) == "--") {
      at_ = std::min(sql_.find('\n', at_), sql_.size());
      continue;
    }
    if (c != '/' || sql_.substr(at_, 2) != "/*") break;
    const std::size_t behind = behind_comment(sql_, at_);
    if (behind == at_) break;
    at_ = behind;
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
    const auto is_hexadecimal = [](char c) {
      return is_digit(c) || (capital(c) >= 'A' && capital(c) <= 'F');
    };
    while (i < sql_.size() && is_hexadecimal(sql_[i])) ++i;
    return take(TokenKind::Number, i);
  }
  digits();
  if (i < sql_.size() && sql_[i] == '.') {
    ++i;
    digits();
  }
  if (i < sql_.size() && capital(sql_[i]) == 'E') {
    std::size_t exponent = i + 1;
    if (exponent < sql_.size() && (sql_[exponent] == '+' || sql_[exponent] == '-')) ++exponent;
    if (exponent < sql_.size() && is_digit(sql_[exponent])) {
      i = exponent;
      digits();
    }
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
  if (kPairStarts.find(sql_[at_]) == std::string_view::npos)
    return take(TokenKind::Symbol, at_ + 1);
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
