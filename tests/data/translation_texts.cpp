// Texts for the translation.
#include "data/translation_texts.h"

#include <array>
#include <string_view>

namespace pelm::data {
namespace {

using Pieces = std::string_view;

constexpr std::array<Pieces, 18> kOpenings = {"datepart(hh,",
                                              "datepart(dd,",
                                              "datepart(mm,",
                                              "datepart(yy,",
                                              "substring(",
                                              "getdate(",
                                              "convert(integer,",
                                              "convert(datetime,convert(char(10),",
                                              "convert(datetime,convert(char(30),",
                                              "convert(datetime,",
                                              "convert(datetime(10),",
                                              "convert(money,",
                                              "convert(float,",
                                              "convert(char(10),",
                                              "isnull(",
                                              "left(",
                                              "space(",
                                              "datepart(hh"};

constexpr std::array<Pieces, 12> kClosings = {
    ")", "))", ")))", "", "),103)", ",103)", ",,103)", ")),103)", "),113)", ")),113)", ", ", "),"};

constexpr std::array<Pieces, 22> kNames = {
    "a",  "B",    "x.y",      "nome", "ação",     "é",           "Ÿ",   "ÿ",
    "ß",  "ı",    "ſ",        "€",    "😀",        "'it''s'",     "103", " ",
    "hh", "char", "\xE2\x82", "\xC3", "PART(HH,", "'dd/mm/yyyy'"};

constexpr std::array<Pieces, 24> kJoins = {
    "*=",       "=*",         " *= ",     " =* ",     "**=",        "***=",  "=**", "=***",
    "*=*",      "=*=",        "*=and",    "and*=",    "and",        " and ", "AND", "andand",
    "order by", " order by ", "ORDER BY", "group by", " Group By ", "*",     "=",   "é"};

constexpr std::array<Pieces, 16> kConcatenationPieces = {
    "+' '+",  "+''+", "+ ' ' +", "+ '' +", "+LTRIM('')+", "+ltrim('')+", "+Ltrim('')+", "space(",
    "Space(", "+",    "''",      "' '",    " ",           "LTRIM('')",   "'",           "a"};

template <std::size_t N>
Pieces pick(const std::array<Pieces, N>& pieces, std::size_t i) {
  return pieces[i % N];
}

}  // namespace

std::string TranslationTexts::any_case(std::string s) {
  const std::size_t how = below(3);  // small, capital, mixed
  for (char& c : s) {
    if (c < 'a' || c > 'z') continue;
    if (how == 1 || (how == 2 && one_in(2))) c = static_cast<char>(c - 'a' + 'A');
  }
  return s;
}

std::string TranslationTexts::argument(int depth) {
  if (depth < 3 && one_in(4)) return call(depth + 1);
  if (one_in(5)) return "";
  return std::string(pick(kNames, below(kNames.size())));
}

std::string TranslationTexts::closing() {
  // A second ")" is what lets most rules end; it gets more than its share.
  return one_in(2) ? "))" : std::string(pick(kClosings, below(kClosings.size())));
}

std::string TranslationTexts::call(int depth) {
  return any_case(std::string(pick(kOpenings, below(kOpenings.size())))) + argument(depth) +
         (one_in(3) ? "," : "") + closing();
}

std::string TranslationTexts::join_piece() {
  return one_in(4) ? std::string(pick(kNames, below(kNames.size())))
                   : std::string(pick(kJoins, below(kJoins.size())));
}

std::string TranslationTexts::concatenation_piece() {
  return std::string(pick(kConcatenationPieces, below(kConcatenationPieces.size())));
}

std::string TranslationTexts::function_piece(int depth) {
  switch (below(6)) {
    case 0:
      return argument(depth);
    case 1:
      return std::string(pick(kClosings, below(kClosings.size())));
    case 2: {  // the forms that rewrite without conditions
      constexpr std::array<Pieces, 4> kPlain = {"isnull(a,", "substring(b,", "left(c,", "isnull("};
      return any_case(std::string(pick(kPlain, below(kPlain.size()))));
    }
    default:
      return call(depth);
  }
}

std::string TranslationTexts::piece(std::size_t theme) {
  switch (theme) {
    case 0:
      return join_piece();
    case 1:
      return concatenation_piece();
    case 2:
      return function_piece(0);
    default: {
      const std::size_t other = below(3);
      return other == 0 ? join_piece() : other == 1 ? concatenation_piece() : function_piece(0);
    }
  }
}

std::string TranslationTexts::next() {
  std::string out;
  const std::size_t theme = below(4);
  const std::size_t pieces = theme == 2 ? below(5) : below(12);
  for (std::size_t i = 0; i <= pieces; ++i) {
    out += piece(theme);
    if (one_in(6)) out += ' ';
  }
  return out;
}

}  // namespace pelm::data
