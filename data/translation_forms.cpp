// Finding the forms that are rewritten for Oracle.
#include "data/translation_forms.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "data/eight_bytes.h"
#include "data/word_search.h"

namespace pelm::data {
namespace {

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

constexpr auto kFourthBefore = candidates_by_letter(-4);
constexpr auto kBefore = candidates_by_letter(-1);
constexpr auto kAfter = candidates_by_letter(1);

void note_parenthesis(std::string_view text, std::size_t at, Forms& forms) noexcept {
  if (at < 4) return;
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  Candidates candidates = kBefore[byte(at - 1)];
  if (candidates == 0) return;  // as for nearly every "("
  candidates &= kFourthBefore[byte(at - 4)];
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
    const std::string_view form = kConcatenations[i].find;
    if (form[1] == next && text.substr(at).starts_with(form)) forms.concatenations.set(i);
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

// Bytes that are tested at once, in one of the processor's vectors.
constexpr std::size_t kLanes = 16;
using Lanes [[gnu::vector_size(kLanes)]] = unsigned char;
using Eights [[gnu::vector_size(kLanes)]] = EightBytes;  // the same, to be read out

constexpr std::size_t kRounds = 4;
constexpr std::size_t kBlock = kLanes * kRounds;

// For each lane a byte, in it a bit for each round, the last in the lowest.
using Marks = std::array<EightBytes, kLanes / sizeof(EightBytes)>;

template <class Test>
Marks marks_in_block(const char* block, Test test) noexcept {
  Lanes lanes{};
  for (std::size_t begin = 0; begin < kBlock; begin += kLanes) {
    Lanes bytes;
    std::memcpy(&bytes, block + begin, sizeof bytes);
    lanes += lanes - test(bytes);  // -1 where it holds
  }
  const auto eights = reinterpret_cast<Eights>(lanes);
  return {first_lowest(eights[0]), first_lowest(eights[1])};
}

// The marks and ")" are neighbours: one test finds them all, and finds nothing in most blocks.
constexpr auto kNearMark = [](Lanes bytes) { return (bytes & 0xFC) == '('; };
constexpr auto kMark = [](Lanes bytes) { return kNearMark(bytes) & ~(bytes == ')'); };

void note_marks(std::string_view text, std::size_t at, const Marks& marks, Forms& forms) noexcept {
  for (std::size_t i = 0; i < marks.size(); ++i) {
    for (EightBytes left = marks[i]; left != 0; left &= left - 1) {
      const auto bit = static_cast<std::size_t>(std::countr_zero(left));
      const std::size_t lane = i * sizeof left + bit / 8;
      note_mark(text, at + (kRounds - 1 - bit % 8) * kLanes + lane, forms);
    }
  }
}

}  // namespace

Forms forms_in(std::string_view text) noexcept {
  if (text.size() < kBlock) {
    std::array<char, kBlock> block{};
    text.copy(block.data(), block.size());
    return forms_in({block.data(), block.size()});  // no form has a zero byte
  }
  Forms forms;
  for (std::size_t at = 0; at < text.size(); at += kBlock) {
    const std::size_t begin = std::min(at, text.size() - kBlock);  // the last two may overlap
    const char* const block = text.data() + begin;
    const Marks near = marks_in_block(block, kNearMark);
    if ((near[0] | near[1]) == 0) continue;
    note_marks(text, begin, marks_in_block(block, kMark), forms);
  }
  return forms;
}

}  // namespace pelm::data
