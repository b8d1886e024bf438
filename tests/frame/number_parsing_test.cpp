// Numbers written with a point.
#include "frame/number_parsing.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "pelm/conversions.h"
#include "platform/value/case_table.h"
#include "platform/value/expect_error.h"

namespace pelm {
namespace {

struct Parsed {
  std::string text;
  double value;
};

void PrintTo(const Parsed& tested, std::ostream* out) { *out << '"' << tested.text << '"'; }

class ParsePointNumber : public ::testing::TestWithParam<Parsed> {};

TEST_P(ParsePointNumber, Gives) {
  EXPECT_DOUBLE_EQ(parse_point_number(GetParam().text), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(WithoutAPoint, ParsePointNumber,
                         ::testing::Values(Parsed{"7", 7}, Parsed{"-7", -7}, Parsed{" 12 ", 12},
                                           Parsed{"2147483647", 2147483647.0},
                                           Parsed{"-2147483648", -2147483648.0}, Parsed{"1,5", 2},
                                           Parsed{"2,5", 2}, Parsed{"&HFF", 255}));

INSTANTIATE_TEST_SUITE_P(HundredIsTheBase, ParsePointNumber,
                         ::testing::Values(Parsed{"1.5", 1.05}, Parsed{"12.34", 12.0034},
                                           Parsed{"3.05", 3.0005}, Parsed{"0.25", 0.0025},
                                           Parsed{"1.50", 1.005}, Parsed{"1.500", 1.0005},
                                           Parsed{"0.0", 0}, Parsed{"10.99", 10.0099}));

INSTANTIATE_TEST_SUITE_P(TheSignIsTheIntegersAlone, ParsePointNumber,
                         ::testing::Values(Parsed{"-1.5", -0.95}, Parsed{"-2.5", -1.95},
                                           Parsed{"-0.5", 0.05}, Parsed{"1.-5", 0.9995},
                                           Parsed{"-1.-5", -1.0005}));

INSTANTIATE_TEST_SUITE_P(
    TheFirstPointDivides, ParsePointNumber,
    ::testing::Values(Parsed{"1.2.3", 1 + 23 / 1e6},     // a point after a digit groups
                      Parsed{"1.2.", 1 + 2 / 1e4},       // and counts as a character
                      Parsed{"1.5,5", 1 + 6 / 1e6},      // 5,5 is rounded to the even 6
                      Parsed{"1,5.5", 2 + 5 / 1e2},      // 1,5 to the even 2
                      Parsed{"1. 5", 1 + 5 / 1e4},       // blanks count
                      Parsed{"1.5\u00A0", 1 + 5 / 1e4},  // as one character each
                      Parsed{"7.2147483647", 7 + 2147483647 / 1e20}));

TEST(ParsePointNumberFailing, RaisesTypeMismatchForAPartThatIsNoNumber) {
  for (const char* text : {"", " ", "1.", ".5", ".", "a", "1.a", "a.1", "1..5", "1.5%", "True"}) {
    EXPECT_ERROR(error_number::kTypeMismatch, parse_point_number(text)) << text;
  }
}

TEST(ParsePointNumberFailing, RaisesOverflowForAPartBeyond32Bits) {
  for (const char* text : {"2147483648", "-2147483649", "2147483648.1", "1.2147483648", "1e10"}) {
    EXPECT_ERROR(error_number::kOverflow, parse_point_number(text)) << text;
  }
}

TEST(ParsePointNumberFailing, LooksAtTheIntegerFirst) {
  EXPECT_ERROR(error_number::kOverflow, parse_point_number("2147483648.a"));
  EXPECT_ERROR(error_number::kTypeMismatch, parse_point_number("a.2147483648"));
}

TEST(ParsePointNumberFailing, RaisesOverflowForMoreThan154CharactersAfterThePoint) {
  EXPECT_EQ(parse_point_number("1." + std::string(154, '0')), 1.0);
  EXPECT_ERROR(error_number::kOverflow, parse_point_number("1." + std::string(155, '0')));
}

TEST(ParsePointNumberTable, HoldsInEveryRow) {
  const cases::Table table = cases::read_table(PELM_TESTS_DIR "/frame/cases/mycdbl.tsv");
  ASSERT_FALSE(table.rows.empty());
  for (const cases::Row& row : table.rows) {
    EXPECT_EQ(parse_point_number(row.fields[1]), to_double(row.fields[2])) << row.fields[1];
  }
}

}  // namespace
}  // namespace pelm
