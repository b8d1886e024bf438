// Finding the forms that are rewritten for Oracle.
#include "data/translation_forms.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace pelm::data {
namespace {

// Each form holds one of "(" ")" "*" "+", and these four are neighbours: one test finds them all.
constexpr bool is_mark(char c) noexcept { return (static_cast<unsigned char>(c) & 0xFCU) == 0x28U; }

constexpr std::size_t kWord = sizeof(std::uint64_t);
constexpr std::size_t kBlock = 8 * kWord;

bool block_has_mark(const char* block) noexcept {
  unsigned char found = 0;
  for (std::size_t i = 0; i < kBlock; ++i) {  // no early way out, so that it runs on vectors
    found = static_cast<unsigned char>(found | static_cast<unsigned char>(is_mark(block[i])));
  }
  return found != 0;
}

constexpr std::uint64_t kOnes = 0x0101010101010101U;

// The high bit of each byte that is zero.
constexpr std::uint64_t zero_bytes(std::uint64_t bytes) noexcept {
  const std::uint64_t low_bits_set = (bytes & (0x7FU * kOnes)) + 0x7FU * kOnes;
  return ~(low_bits_set | bytes) & (0x80U * kOnes);
}

// The high bit of each byte that is a mark, but for ")", which closes forms and opens none.
std::uint64_t marks_in_word(const char* word) noexcept {
  std::uint64_t bytes = 0;
  std::memcpy(&bytes, word, sizeof bytes);
  const std::uint64_t marks = zero_bytes((bytes & (0xFCU * kOnes)) ^ (0x28U * kOnes));
  return marks & ~zero_bytes(bytes ^ (0x29U * kOnes));
}

std::size_t first_byte_of(std::uint64_t marks) noexcept {
  const int bit = std::endian::native == std::endian::little ? std::countr_zero(marks)
                                                             : std::countl_zero(marks);
  return static_cast<std::size_t>(bit) / 8;
}

std::uint64_t without_byte(std::uint64_t marks, std::size_t byte) noexcept {
  const std::size_t place = std::endian::native == std::endian::little ? byte : 7 - byte;
  return marks & ~std::rotl(std::uint64_t{0x80}, static_cast<int>(place * 8));
}

// Forms that hold a "(", known by the letters around the first one.
constexpr std::size_t kLeftForm = kFunctionRules.size();
constexpr std::size_t kSpaceForm = kLeftForm + 1;
constexpr std::string_view kSpace = kConcatenations.back().find;

constexpr auto kForms = [] {
  std::array<std::string_view, kSpaceForm + 1> forms{};
  for (std::size_t i = 0; i < kLeftForm; ++i) forms[i] = kFunctionRules[i].opening;
  forms[kLeftForm] = kLeft;
  forms[kSpaceForm] = kSpace;
  return forms;
}();

constexpr auto kNameLengths = [] {
  std::array<std::size_t, kForms.size()> lengths{};
  for (std::size_t i = 0; i < lengths.size(); ++i) lengths[i] = kForms[i].find('(');
  return lengths;
}();

using Candidates = std::uint32_t;  // a bit for each of kForms

// Which forms may have the letter, in either case, at `distance` places from their first "(".
constexpr std::array<Candidates, 256> candidates_by_letter(std::ptrdiff_t distance) {
  std::array<Candidates, 256> table{};
  for (std::size_t i = 0; i < kForms.size(); ++i) {
    const std::size_t place = kNameLengths[i] + static_cast<std::size_t>(distance);
    for (std::size_t c = 0; c < table.size(); ++c) {
      if (place >= kForms[i].size() || capital(static_cast<char>(c)) == capital(kForms[i][place])) {
        table[c] |= Candidates{1} << i;
      }
    }
  }
  return table;
}

constexpr auto kSecondBefore = candidates_by_letter(-2);
constexpr auto kBefore = candidates_by_letter(-1);
constexpr auto kAfter = candidates_by_letter(1);

void note_parenthesis(std::string_view text, std::size_t at, Forms& forms) noexcept {
  if (at < 2) return;
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  Candidates candidates = kBefore[byte(at - 1)] & kSecondBefore[byte(at - 2)];
  if (at + 1 < text.size()) candidates &= kAfter[byte(at + 1)];
  for (; candidates != 0; candidates &= candidates - 1) {
    const auto i = static_cast<std::size_t>(std::countr_zero(candidates));
    if (kNameLengths[i] > at) continue;
    const std::size_t begin = at - kNameLengths[i];
    if (i < kLeftForm) {
      if (!forms.functions[i]) forms.functions[i] = stands_at(text, begin, kForms[i]);
    } else if (i == kLeftForm) {
      forms.left = forms.left || stands_at(text, begin, kLeft);
    } else if (text.substr(begin, kSpace.size()) == kSpace) {
      forms.concatenations.set(kConcatenations.size() - 1);
    }
  }
}

void note_plus(std::string_view text, std::size_t at, Forms& forms) noexcept {
  if (at + 1 == text.size()) return;
  const char next = text[at + 1];
  if (next != '\'' && next != ' ' && capital(next) != 'L') return;
  for (std::size_t i = 0; i + 1 < kConcatenations.size(); ++i) {
    if (text.substr(at).starts_with(kConcatenations[i].find)) forms.concatenations.set(i);
  }
}

void note_mark(std::string_view text, std::size_t at, Forms& forms) noexcept {
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
    default:
      break;
  }
}

// From `begin` to `end`, a whole number of words.
void note_words(std::string_view text, std::size_t begin, std::size_t end, Forms& forms) noexcept {
  for (; begin < end; begin += kWord) {
    std::uint64_t marks = marks_in_word(text.data() + begin);
    while (marks != 0) {
      const std::size_t byte = first_byte_of(marks);
      note_mark(text, begin + byte, forms);
      marks = without_byte(marks, byte);
    }
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
  std::size_t at = 0;
  for (; text.size() - at >= kBlock; at += kBlock) {
    if (!block_has_mark(text.data() + at)) continue;
    note_words(text, at, at + kBlock, forms);
  }
  const std::size_t words_end = text.size() - text.size() % kWord;
  note_words(text, at, words_end, forms);
  for (at = words_end; at < text.size(); ++at) {
    if (is_mark(text[at])) note_mark(text, at, forms);
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
