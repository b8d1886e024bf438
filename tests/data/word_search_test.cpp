// Finding a word in any letter case.
#include "data/word_search.h"

#include <gtest/gtest.h>

#include <string>

namespace pelm::data {
namespace {

TEST(WordSearch, FindsTheFirstInAnyLetterCase) {
  constexpr WordSearch kAnd("AND");
  EXPECT_EQ(kAnd.find("and"), 0U);
  EXPECT_EQ(kAnd.find("anand"), 2U);
  EXPECT_EQ(kAnd.find("a aNd and"), 2U);
  EXPECT_EQ(kAnd.find("a aNd and", 3), 6U);
  EXPECT_EQ(kAnd.find("ban"), std::string::npos);
  EXPECT_EQ(kAnd.find("and", 1), std::string::npos);
  EXPECT_EQ(kAnd.find("and", 9), std::string::npos);
  EXPECT_EQ(kAnd.find(""), std::string::npos);
}

TEST(WordSearch, FindsAtEveryPlace) {
  constexpr WordSearch kOrderBy("ORDER BY");
  for (std::size_t before = 0; before < 20; ++before) {
    const std::string text = std::string(before, 'r') + "ORder by" + std::string(9, 'y');
    EXPECT_EQ(kOrderBy.find(text), before);
    EXPECT_EQ(kOrderBy.find(text, before), before);
    EXPECT_EQ(kOrderBy.find(text, before + 1), std::string::npos);
    EXPECT_EQ(kOrderBy.find(text.substr(0, before + 8)), before);
    EXPECT_EQ(kOrderBy.find(text.substr(0, before + 7)), std::string::npos);
  }
}

TEST(WordSearch, GoesOnBehindWhatBeginsAlike) {
  constexpr WordSearch kGroupBy("GROUP BY");
  EXPECT_EQ(kGroupBy.find("grogroup group-by GROUP by"), 18U);
  EXPECT_EQ(kGroupBy.find("grogrogrogrogrogrogrogroup"), std::string::npos);
}

TEST(WordSearch, FindsNoByteThatOnlyLooksLikeALetterInAnotherCase) {
  // Each differs from a byte of the word in the bit that tells small letters from capitals.
  constexpr WordSearch kOrderBy("ORDER BY");
  const std::string zero("order\0by and more of it", 23);
  EXPECT_EQ(kOrderBy.find(zero), std::string::npos);
  constexpr WordSearch kLeft("LEFT(");
  EXPECT_EQ(kLeft.find("left\x08nome, left(nome, 1)"), 11U);
  EXPECT_EQ(kLeft.find("\xCC\xC5\xC6\xD4(nome, 1) of a table"), std::string::npos);
}

}  // namespace
}  // namespace pelm::data
