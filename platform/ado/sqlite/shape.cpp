// Splits a statement into its shape and its literals.
#include "platform/ado/sqlite/shape.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "platform/ado/sqlite/errors.h"

namespace pelm::ado::sqlite {
namespace {

constexpr std::size_t kMaxLiterals = 10000;  // SQLite refuses more than 32,766 parameters

enum class Effect { None, Bind, Keep, Pattern, EndPattern, TypeFollows, Convert, Cast };
struct Keyword {
  std::string_view name;
  Effect effect;
};
// Shorter ones first.
constexpr std::array kKeywords = {
    Keyword{"AS", Effect::TypeFollows},  Keyword{"BY", Effect::Keep},
    Keyword{"ON", Effect::Bind},         Keyword{"OR", Effect::EndPattern},
    Keyword{"AND", Effect::EndPattern},  Keyword{"SET", Effect::Bind},
    Keyword{"CAST", Effect::Cast},       Keyword{"FROM", Effect::Keep},
    Keyword{"GLOB", Effect::Pattern},    Keyword{"INTO", Effect::Keep},
    Keyword{"JOIN", Effect::Keep},       Keyword{"LIKE", Effect::Pattern},
    Keyword{"GROUP", Effect::Keep},      Keyword{"LIMIT", Effect::Keep},
    Keyword{"ORDER", Effect::Keep},      Keyword{"UNION", Effect::Keep},
    Keyword{"WHERE", Effect::Bind},      Keyword{"ESCAPE", Effect::Pattern},
    Keyword{"EXCEPT", Effect::Keep},     Keyword{"HAVING", Effect::Keep},
    Keyword{"OFFSET", Effect::Keep},     Keyword{"SELECT", Effect::Keep},
    Keyword{"VALUES", Effect::Bind},     Keyword{"COLLATE", Effect::Pattern},
    Keyword{"CONVERT", Effect::Convert}, Keyword{"INTERSECT", Effect::Keep},
    Keyword{"RETURNING", Effect::Keep},
};

char mark_of(Literal::Kind kind) {
  switch (kind) {
    case Literal::Kind::Number:
      return kBoundNumberMark;
    case Literal::Kind::Text:
      return kBoundTextMark;
    case Literal::Kind::Date:
      break;
  }
  return kBoundDateMark;
}

// The first keyword of each length and the one behind the last; the table is sorted by length.
constexpr std::size_t kLongestKeyword = 9;
constexpr std::array<std::size_t, kLongestKeyword + 2> make_starts() {
  std::array<std::size_t, kLongestKeyword + 2> starts{};
  for (std::size_t length = 0; length < starts.size(); ++length) {
    std::size_t i = 0;
    while (i < kKeywords.size() && kKeywords[i].name.size() < length) ++i;
    starts[length] = i;
  }
  return starts;
}
constexpr auto kStarts = make_starts();

Effect effect_of(std::string_view word) {
  if (word.size() > kLongestKeyword) return Effect::None;
  for (std::size_t i = kStarts[word.size()]; i < kStarts[word.size() + 1]; ++i) {
    const Keyword& k = kKeywords[i];
    if (k.name[0] == (word[0] & ~0x20) && equal_names(k.name, word)) return k.effect;
  }
  return Effect::None;
}

// Statements whose values may be parameters; all others keep their text as it is.
constexpr std::array<std::string_view, 6> kBindingStatements = {"SELECT", "INSERT",  "UPDATE",
                                                                "DELETE", "REPLACE", "WITH"};

}  // namespace

std::string Literal::content() const {
  if (!doubled) return std::string(text);
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    out.push_back(text[i]);
    if (text[i] == '\'') ++i;
  }
  return out;
}

void Shape::word(const Token& token) {
  if (statement_start_) {
    statement_start_ = false;
    never_ = never_ || std::none_of(kBindingStatements.begin(), kBindingStatements.end(),
                                    [&](std::string_view s) { return token.is_word(s); });
  }
  Frame& frame = frames_.back();
  next_call_ = Call::Other;
  switch (effect_of(token.text)) {
    case Effect::None:
      break;
    case Effect::Bind:
      frame.bind = true;
      frame.pattern = false;
      break;
    case Effect::Keep:
      frame.bind = frame.pattern = false;
      break;
    case Effect::Pattern:
      frame.pattern = true;
      break;
    case Effect::EndPattern:
      frame.pattern = false;
      break;
    case Effect::TypeFollows:
      if (frame.call == Call::Cast) frame.bind = false;
      break;
    case Effect::Convert:
      next_call_ = Call::Convert;
      break;
    case Effect::Cast:
      next_call_ = Call::Cast;
      break;
  }
}

void Shape::symbol(const Token& token) {
  Frame& frame = frames_.back();
  switch (token.text.front()) {
    case '(': {
      const bool type_first = next_call_ == Call::Convert;
      frames_.push_back({frame.bind && !type_first, frame.pattern, frame.bind, next_call_, 0});
      break;
    }
    case ')':
      if (frames_.size() > 1) frames_.pop_back();
      break;
    case ',':
      ++frame.argument;
      if (frame.call == Call::Convert)
        frame.bind = frame.outer_bind && frame.argument == 1;
      else
        frame.pattern = false;
      break;
    case ';':
      if (frames_.size() == 1) {
        frames_.back() = {};
        statement_start_ = true;
      }
      break;
    default:
      if (static_cast<unsigned char>(token.text.front()) < ' ') raise_stray_character(token.text);
      break;
  }
  next_call_ = Call::Other;
}

// Nothing when the token stays in the text.
std::optional<Literal> Shape::literal(const Token& token) const {
  const Frame& frame = frames_.back();
  if (never_ || !frame.bind || frame.pattern || literals_.size() >= kMaxLiterals) return {};
  std::string_view s = token.text;
  switch (token.kind) {
    case TokenKind::Number: {
      Literal value;
      const char* const end = s.data() + s.size();
      const auto [read, error] = std::from_chars(s.data(), end, value.number);
      if (s.size() > kLongestNumber || error != std::errc() || read != end) return {};
      value.text = s;
      return value;
    }
    case TokenKind::Text:
      s.remove_prefix(s.find('\'') + 1);
      s.remove_suffix(1);
      return Literal{Literal::Kind::Text, 0, s, s.find('\'') != std::string_view::npos};
    case TokenKind::DateEscape: {
      const std::size_t open = s.find('\'') + 1;
      return Literal{Literal::Kind::Date, 0, s.substr(open, s.find('\'', open) - open), false};
    }
    default:
      return {};
  }
}

void Shape::read(std::string_view sql) {
  known_ = seen_.find(sql);
  found_ = known_ != nullptr;
  if (found_) return;
  known_ = &unseen_;
  read_tokens(sql);
  SeenTexts::Known* const remembered = seen_.remember(sql, literals_, unseen_.shape);
  if (remembered != nullptr) known_ = remembered;
}

void Shape::read_tokens(std::string_view sql) {
  std::string& shape = unseen_.shape;
  shape.clear();
  unseen_.plan.reset();
  literals_.clear();
  frames_.assign(1, {});
  next_call_ = Call::Other;
  statement_start_ = true;
  never_ = false;

  Tokenizer tokenizer(sql);
  std::size_t copied = 0;  // what stands before it is in the text
  for (Token t = tokenizer.next(); !t.is(TokenKind::End); t = tokenizer.next()) {
    if (t.is(TokenKind::Word)) {
      word(t);
      continue;
    }
    if (t.is(TokenKind::Symbol)) {
      symbol(t);
      continue;
    }
    next_call_ = Call::Other;
    const std::optional<Literal> value = literal(t);
    if (!value) continue;
    shape.append(sql, copied, static_cast<std::size_t>(t.text.data() - sql.data()) - copied);
    shape.push_back(mark_of(value->kind));
    literals_.push_back(*value);
    copied = tokenizer.position();
  }
  shape.append(sql, copied);
}

}  // namespace pelm::ado::sqlite
