// The translation against its literal form: every short text over small alphabets, and very many
// made-up texts. PELM_TRANSLATION_TEXTS sets how many are made up.
#include <gtest/gtest.h>

#include <bitset>
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "data/literal_translation.h"
#include "data/sql_translation.h"
#include "data/translation_forms.h"
#include "data/translation_rules.h"
#include "data/translation_texts.h"
#include "pelm/error.h"

namespace pelm::data {
namespace {

using literal::Outcome;
using literal::Translation;

Translation translated(const std::string& sql) {
  if (const auto form = endless_form(sql)) return {Outcome::NeverEnds, "", *form};
  std::string text = sql;
  try {
    EXPECT_TRUE(translate_sql(text, "Oracle"));
  } catch (const Error& error) {
    EXPECT_EQ(error.number(), error_number::kInvalidCall);
    return {Outcome::Fails, text};
  }
  return {Outcome::Ends, text};
}

Translation literally_translated(const std::string& sql) {
  Translation result = literal::translate(sql);
  if (result.outcome == Outcome::NeverEnds) result.text.clear();  // never seen by a caller
  return result;
}

::testing::AssertionResult same(const std::string& sql, const Translation& expected) {
  const Translation actual = translated(sql);
  if (actual == expected) return ::testing::AssertionSuccess();
  const auto show = [](const Translation& t) {
    return ::testing::PrintToString(static_cast<int>(t.outcome)) + " " +
           ::testing::PrintToString(t.text) + " " + std::string(t.endless_form);
  };
  return ::testing::AssertionFailure() << ::testing::PrintToString(sql) << "\n gives "
                                       << show(actual) << "\n not   " << show(expected);
}

#if defined(__OPTIMIZE__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
constexpr bool kSlowBuild = false;
#else
constexpr bool kSlowBuild = true;  // some thirty times slower
#endif

std::size_t texts_wanted() {
  if (const char* wanted = std::getenv("PELM_TRANSLATION_TEXTS")) {
    return static_cast<std::size_t>(std::strtoull(wanted, nullptr, 10));
  }
  return kSlowBuild ? 200'000 : 1'000'000;
}

constexpr std::size_t kShares = 10;  // tests that can run side by side

class MadeUpTexts : public ::testing::TestWithParam<std::size_t> {};

TEST_P(MadeUpTexts, ComeOutAsLiterally) {
  const std::size_t count = texts_wanted() / kShares;
  TranslationTexts texts(GetParam() + 1);
  std::map<Outcome, std::size_t> outcomes;
  std::size_t changed = 0;
  std::bitset<kFunctionRules.size()> ended;  // rules whose form was there in a text that ended
  for (std::size_t i = 0; i < count; ++i) {
    const std::string sql = texts.next();
    const Translation expected = literally_translated(sql);
    ASSERT_TRUE(same(sql, expected)) << "text " << i;
    ++outcomes[expected.outcome];
    if (expected.outcome != Outcome::Ends) continue;
    if (expected.text != sql) ++changed;
    ended |= forms_in(sql).functions;
  }
  std::cout << count << " texts compared: " << outcomes[Outcome::Ends] << " end (" << changed
            << " rewritten), " << outcomes[Outcome::Fails] << " fail, "
            << outcomes[Outcome::NeverEnds] << " never end\n";
  // The texts are worth comparing only while they reach every outcome.
  EXPECT_GT(changed, count / 5);
  EXPECT_GT(outcomes[Outcome::Fails], count / 20);
  EXPECT_GT(outcomes[Outcome::NeverEnds], count / 20);
  for (std::size_t i = 0; i < kFunctionRules.size(); ++i) {
    if (kFunctionRules[i].closing.size() > 1) continue;  // these never end
    EXPECT_TRUE(ended[i]) << kFunctionRules[i].opening;
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, MadeUpTexts, ::testing::Range(std::size_t{0}, kShares));

struct Alphabet {
  std::string name;
  std::vector<std::string> letters;
  std::size_t longest;  ///< In letters; one less in a slow build.
};

void PrintTo(const Alphabet& alphabet, std::ostream* out) { *out << alphabet.name; }

class ShortTexts : public ::testing::TestWithParam<Alphabet> {};

TEST_P(ShortTexts, AllComeOutAsLiterally) {
  const Alphabet& alphabet = GetParam();
  const std::size_t base = alphabet.letters.size();
  const std::size_t longest = alphabet.longest - (kSlowBuild ? 1 : 0);
  std::size_t compared = 0;
  std::size_t of_length = 1;
  for (std::size_t length = 0; length <= longest; ++length, of_length *= base) {
    for (std::size_t number = 0; number < of_length; ++number, ++compared) {
      std::string sql;
      for (std::size_t digit = 0, left = number; digit < length; ++digit, left /= base) {
        sql += alphabet.letters[left % base];
      }
      ASSERT_TRUE(same(sql, literally_translated(sql)));
    }
  }
  std::cout << compared << " texts compared\n";
}

INSTANTIATE_TEST_SUITE_P(
    Alphabets, ShortTexts,
    ::testing::Values(
        Alphabet{"RightJoins", {"=", "*", "é"}, 9}, Alphabet{"BothJoins", {"=", "*", "a"}, 9},
        Alphabet{"LeftJoinsWithAnd", {"*", "=", "And", "é"}, 7},
        Alphabet{"LeftJoinsWithOrderBy", {"*=", "*", "=", "order by", "x"}, 7},
        Alphabet{"LeftJoinsWithEverything", {"*=", "and", "Order By", "group by", "y"}, 6},
        Alphabet{"LeftJoinsSpreadOut", {"a *= b ", "and ", "order by c", "çã"}, 7},
        Alphabet{"Concatenations", {"+", "''", "' '", " ", "LTRIM('')"}, 6},
        Alphabet{"Getdate", {"getdate(", ")", "x"}, 9},
        Alphabet{"Datepart", {"DatePart(dd,", ")", ","}, 9},
        Alphabet{"Money", {"convert(MONEY,", ")", "b"}, 9},
        Alphabet{"Datetime", {"CONVERT(DATETIME,", ",103)", ",", "CONVERT(CHAR(10)", ")"}, 6},
        Alphabet{"FunctionsInFunctions",
                 {"getdate(", "CONVERT(FLOAT,", "datepart(yy,", ")", "convert(char(10)"},
                 6},
        Alphabet{"WithoutClosing", {"isnull(", "SubString(", "s", "U"}, 6},
        Alphabet{"Left", {"Left(", ",", "(", "ã"}, 7}),
    [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace pelm::data
