// Finding the forms that are rewritten for Oracle.
#include "data/translation_forms.h"

namespace pelm::data {
namespace {

// Each form holds one of "(" ")" "*" "+", and these four are neighbours: one test finds them all.
constexpr bool is_mark(char c) noexcept { return (static_cast<unsigned char>(c) & 0xFCU) == 0x28U; }

constexpr std::size_t kBlock = 64;

bool block_has_mark(const char* block) noexcept {
  unsigned char found = 0;
  for (std::size_t i = 0; i < kBlock; ++i) {  // no early way out, so that it runs on vectors
    found = static_cast<unsigned char>(found | static_cast<unsigned char>(is_mark(block[i])));
  }
  return found != 0;
}

std::size_t next_mark(std::string_view text, std::size_t from) noexcept {
  // Marks are often close together: a few bytes are looked at before the blocks.
  for (std::size_t near = 0; near < kBlock && from < text.size(); ++near, ++from) {
    if (is_mark(text[from])) return from;
  }
  while (text.size() - from >= kBlock && !block_has_mark(text.data() + from)) from += kBlock;
  while (from < text.size() && !is_mark(text[from])) ++from;
  return from;
}

// A form up to its first "(": how long its name is and how the name ends.
struct Name {
  std::size_t length;
  char last;
};

constexpr Name name_of(std::string_view form) noexcept {
  const std::size_t length = form.find('(');
  return {length, form[length - 1]};
}

constexpr auto kFunctionNames = [] {
  std::array<Name, kFunctionRules.size()> names{};
  for (std::size_t i = 0; i < names.size(); ++i) names[i] = name_of(kFunctionRules[i].opening);
  return names;
}();

constexpr bool holds_plus_first(const Replacement& row) noexcept { return row.find[0] == '+'; }

void note_parenthesis(std::string_view text, std::size_t at, Forms& forms) noexcept {
  if (at == 0) return;
  const char before = capital(text[at - 1]);
  for (std::size_t i = 0; i < kFunctionRules.size(); ++i) {
    const Name name = kFunctionNames[i];
    if (before == name.last && at >= name.length &&
        stands_at(text, at - name.length, kFunctionRules[i].opening)) {
      forms.functions.set(i);
    }
  }
  constexpr Name left = name_of(kLeft);
  if (before == left.last && at >= left.length && stands_at(text, at - left.length, kLeft)) {
    forms.left = true;
  }
  for (std::size_t i = 0; i < kConcatenations.size(); ++i) {
    const std::string_view find = kConcatenations[i].find;
    if (holds_plus_first(kConcatenations[i]) || at + 1 < find.size()) continue;
    if (text.substr(at + 1 - find.size(), find.size()) == find) forms.concatenations.set(i);
  }
}

void note_plus(std::string_view text, std::size_t at, Forms& forms) noexcept {
  for (std::size_t i = 0; i < kConcatenations.size(); ++i) {
    if (text.substr(at).starts_with(kConcatenations[i].find)) forms.concatenations.set(i);
  }
}

}  // namespace

bool stands_at(std::string_view text, std::size_t at, std::string_view form) noexcept {
  if (text.size() - at < form.size()) return false;
  for (std::size_t i = 0; i < form.size(); ++i) {
    if (capital(text[at + i]) != form[i]) return false;
  }
  return true;
}

Forms forms_in(std::string_view text) noexcept {
  Forms forms;
  for (std::size_t at = next_mark(text, 0); at < text.size(); at = next_mark(text, at + 1)) {
    switch (text[at]) {
      case '*':
        if (at > 0 && text[at - 1] == '=') forms.right_join = true;
        if (at + 1 < text.size() && text[at + 1] == '=') forms.left_join = true;
        break;
      case '+':
        note_plus(text, at, forms);
        break;
      case '(':
        note_parenthesis(text, at, forms);
        break;
      default:  // ")" closes forms, it opens none
        break;
    }
  }
  return forms;
}

std::size_t WordSearch::find(std::string_view text, std::size_t from) const noexcept {
  while (from <= text.size() && text.size() - from >= word_.size()) {
    if (stands_at(text, from, word_)) return from;
    from += skip_[static_cast<unsigned char>(text[from + word_.size() - 1])];
  }
  return std::string_view::npos;
}

}  // namespace pelm::data
