/// Finds an ASCII word in a text in any letter case.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "data/eight_bytes.h"

namespace pelm::data {

/// The capital of an ASCII letter; any other byte as it is.
constexpr char capital(char c) noexcept {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// Whether `form`, ASCII without small letters, stands at byte `at` in any letter case.
bool stands_at(std::string_view text, std::size_t at, std::string_view form) noexcept;

class WordSearch {
 public:
  /// `word` begins with three letters, has no small ones, and outlives the search.
  explicit constexpr WordSearch(std::string_view word) noexcept : word_(word) {
    for (std::size_t i = 0; i < kLetters; ++i) {
      letters_[i] = eight_times(static_cast<unsigned char>(word[i]));
    }
  }

  /// The byte of the first occurrence at or after `from`; npos when there is none.
  std::size_t find(std::string_view text, std::size_t from = 0) const noexcept;

 private:
  static constexpr std::size_t kLetters = 3;

  std::string_view word_;
  std::array<EightBytes, kLetters> letters_{};  ///< Its first ones, each for eight places.
};

}  // namespace pelm::data
