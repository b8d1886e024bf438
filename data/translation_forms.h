/// Finds the forms of translation_rules.h in a text: all of them in one pass, or one by one.
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <string_view>

#include "data/translation_rules.h"

namespace pelm::data {

/// Which forms occur in a text, wherever they stand.
struct Forms {
  bool right_join = false;
  bool left_join = false;
  bool left = false;
  std::bitset<kConcatenations.size()> concatenations;
  std::bitset<kFunctionRules.size()> functions;

  bool any() const noexcept {
    return right_join || left_join || left || concatenations.any() || functions.any();
  }
};

Forms forms_in(std::string_view text) noexcept;

/// The capital of an ASCII letter; any other byte as it is.
constexpr char capital(char c) noexcept {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// Whether `form`, ASCII without small letters, stands at byte `at` in any letter case.
bool stands_at(std::string_view text, std::size_t at, std::string_view form) noexcept;

/// Searches for an ASCII word in any letter case.
class WordSearch {
 public:
  /// `word` has no small letters and outlives the search.
  explicit constexpr WordSearch(std::string_view word) noexcept : word_(word) {
    skip_.fill(static_cast<unsigned char>(word.size()));
    for (std::size_t c = 0; c < skip_.size(); ++c) {
      for (std::size_t i = 0; i + 1 < word.size(); ++i) {
        if (capital(static_cast<char>(c)) != word[i]) continue;
        skip_[c] = static_cast<unsigned char>(word.size() - 1 - i);
      }
    }
  }
  /// The byte of the first occurrence at or after `from`; npos when there is none.
  std::size_t find(std::string_view text, std::size_t from = 0) const noexcept;

 private:
  std::string_view word_;
  std::array<unsigned char, 256> skip_{};  ///< By the last byte of the window looked at.
};

}  // namespace pelm::data
