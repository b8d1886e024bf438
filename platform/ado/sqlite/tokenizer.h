/// Cuts SQL text into the tokens of the dialect that pages write.
///
/// Not a parser: it knows texts, names, numbers, comments and escapes, and no grammar.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pelm::ado::sqlite {

enum class TokenKind {
  End,
  Word,          ///< item, WHERE, #temp
  Quoted,        ///< "name" or [name]
  Text,          ///< 'text' or N'text'
  Number,        ///< 12, 1.5, .5e3, 0x1F
  Value,         ///< ?
  Variable,      ///< @name
  System,        ///< @@identity
  DateEscape,    ///< { ts '…' }, { d '…' }, { t '…' }
  BoundNumber,   ///< a literal that became a parameter, see shape.h
  BoundText,     ///< the same
  BoundDate,     ///< the same
  Symbol,        ///< operators and punctuation, one or two characters
  Unterminated,  ///< a text, name, comment or escape that never ends
};

struct Token {
  TokenKind kind = TokenKind::End;
  std::string_view text;      ///< as written, quotes included
  bool space_before = false;  ///< blanks or comments stand before it

  bool is(TokenKind k) const { return kind == k; }
  bool is_symbol(std::string_view s) const { return kind == TokenKind::Symbol && text == s; }
  /// An unquoted word, compared without case; `capitals` is in capital letters.
  bool is_word(std::string_view capitals) const;
  bool is_name() const { return kind == TokenKind::Word || kind == TokenKind::Quoted; }
};

/// What stands in a shape for a literal that became a parameter.
inline constexpr char kBoundNumberMark = '\x01';
inline constexpr char kBoundTextMark = '\x02';
inline constexpr char kBoundDateMark = '\x03';

class Tokenizer {
 public:
  /// `marks`: whether the marks above are parameters; in a page's text they are mere characters.
  explicit Tokenizer(std::string_view sql, bool marks = false) : sql_(sql), marks_(marks) {}
  Token next();
  /// Where the next token is looked for.
  std::size_t position() const { return at_; }

 private:
  bool skip_blanks();
  Token take(TokenKind kind, std::size_t end);
  Token quoted(char closing, std::size_t open, TokenKind kind);
  Token number();
  Token escape();
  Token symbol();

  std::string_view sql_;
  std::size_t at_ = 0;
  bool marks_;
  bool space_before_ = false;
};

/// All tokens but the end.
std::vector<Token> tokenize(std::string_view sql, bool marks = false);

/// The content of a Text, Quoted or DateEscape token, doubled quotes made one; of a Word itself.
std::string content_of(const Token& token);

/// ASCII letters made capital; what names and keywords are compared by.
std::string capitals(std::string_view s);
bool equal_names(std::string_view a, std::string_view b) noexcept;

/// `name` between double quotes.
std::string quoted_name(std::string_view name);
/// `s` between single quotes.
std::string quoted_text(std::string_view s);

}  // namespace pelm::ado::sqlite
