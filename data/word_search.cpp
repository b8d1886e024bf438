// Finding a word: its first letters are tested at eight places at once, the rest where they stand.
#include "data/word_search.h"

#include <bit>

namespace pelm::data {

bool stands_at(std::string_view text, std::size_t at, std::string_view form) noexcept {
  if (text.size() - at < form.size()) return false;
  for (std::size_t i = 0; i < form.size(); ++i) {
    if (capital(text[at + i]) != form[i]) return false;
  }
  return true;
}

std::size_t WordSearch::find(std::string_view text, std::size_t from) const noexcept {
  constexpr EightBytes kLetterCase = eight_times(0x20);
  constexpr std::size_t kPlaces = sizeof(EightBytes);
  const std::string_view rest_of_word = word_.substr(kLetters);
  std::size_t at = from;
  for (; at + kPlaces + kLetters - 1 <= text.size(); at += kPlaces) {
    EightBytes differences = 0;
    for (std::size_t i = 0; i < kLetters; ++i) {
      differences |= eight_bytes_at(text.data() + at + i) ^ letters_[i];
    }
    EightBytes alike = zero_bytes(differences & ~kLetterCase);
    for (; alike != 0; alike &= alike - 1) {
      const std::size_t place = at + static_cast<std::size_t>(std::countr_zero(alike)) / 8;
      if (stands_at(text, place + kLetters, rest_of_word)) return place;
    }
  }
  for (; at + word_.size() <= text.size(); ++at) {
    if (stands_at(text, at, word_)) return at;
  }
  return std::string_view::npos;
}

}  // namespace pelm::data
