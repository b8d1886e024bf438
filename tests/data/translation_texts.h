/// Makes up texts for the translation: its forms in every order, nesting and letter case, among
/// names, accents, characters of two to four bytes and bytes that are no characters.
#pragma once

#include <cstdint>
#include <random>
#include <string>

namespace pelm::data {

/// The same seed gives the same texts, on every machine.
class TranslationTexts {
 public:
  explicit TranslationTexts(std::uint64_t seed) : random_(seed) {}
  std::string next();

 private:
  std::size_t below(std::size_t limit) { return static_cast<std::size_t>(random_() % limit); }
  bool one_in(std::size_t n) { return below(n) == 0; }
  std::string any_case(std::string s);
  std::string argument(int depth);
  std::string closing();
  std::string call(int depth);
  std::string join_piece();
  std::string concatenation_piece();
  std::string function_piece(int depth);
  std::string piece(std::size_t theme);

  std::mt19937_64 random_;
};

}  // namespace pelm::data
