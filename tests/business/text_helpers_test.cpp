// Fixed-width fields and numbers in display form.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>

#include "pelm/base.h"
#include "platform/value/case_table.h"
#include "platform/value/expect_error.h"

namespace pelm {
namespace {

struct Completed {
  std::string_view data;
  std::int16_t size;
  std::int16_t side;
  std::string_view fill;
  std::string_view result;
};

TEST(CompleteWith, PadsOrCutsToTheWidth) {
  constexpr Completed kCases[] = {
      {"42", 5, 1, " ", "   42"},
      {"42", 5, 1, "0", "00042"},
      {"42", 5, 2, "0", "42000"},
      {"42", 5, 0, "0", "42000"},  // any side but 1 is behind
      {"42", 5, -1, "0", "42000"},
      {"123456", 4, 1, " ", "1234"},  // the right-hand part goes, whatever the side
      {"123456", 4, 2, " ", "1234"},
      {"1234", 4, 2, "0", "1234"},
      {"7", 3, 1, "ab", "abab7"},  // the fill goes in whole
      {"7", 3, 2, "ab", "7abab"},
      {"7", 3, 1, "", "7"},
      {"", 3, 1, "0", "000"},
      {"", 0, 1, "0", ""},
      {"7", 0, 1, "0", ""},
  };
  const Base base;
  for (const Completed& c : kCases) {
    EXPECT_EQ(base.CompleteWith(c.data, c.size, c.side, c.fill), c.result)
        << c.data << "|" << c.size << "|" << c.side << "|" << c.fill;
  }
}

TEST(CompleteWith, PutsBlanksInFrontWhenNothingElseIsSaid) {
  EXPECT_EQ(Base().CompleteWith("42", 5), "   42");
  EXPECT_EQ(Base().CompleteWith("42", 5, 2), "42   ");
}

TEST(CompleteWith, CountsCharacters) {
  EXPECT_EQ(Base().CompleteWith("João", 4), "João");
  EXPECT_EQ(Base().CompleteWith("João", 5), " João");
  EXPECT_EQ(Base().CompleteWith("João", 3), "Joã");
  EXPECT_EQ(Base().CompleteWith("x", 3, 1, "é"), "ééx");
}

TEST(CompleteWith, ANegativeWidthRaises5) {
  EXPECT_ERROR(error_number::kInvalidCall, Base().CompleteWith("42", -1));
  EXPECT_ERROR(error_number::kInvalidCall, Base().CompleteWith("", -1));
  EXPECT_ERROR(error_number::kInvalidCall,
               Base().CompleteWith("42", std::numeric_limits<std::int16_t>::min()));
}

TEST(CompleteWith, FillsTheLargestWidth) {
  constexpr std::int16_t kLargest = std::numeric_limits<std::int16_t>::max();
  EXPECT_EQ(Base().CompleteWith("7", kLargest, 1, "0"), std::string(kLargest - 1, '0') + "7");
}

class FormatNumber : public testing::TestWithParam<std::string_view> {};

TEST_P(FormatNumber, EveryRowHolds) {
  const std::string path =
      std::string(PELM_TESTS_DIR) + "/business/cases/" + std::string(GetParam()) + ".tsv";
  const cases::Table table = cases::read_table(path);
  ASSERT_FALSE(table.rows.empty());
  constexpr std::string_view kFunction = "Format_Number ";
  for (const cases::Row& row : table.rows) {
    ASSERT_TRUE(row.fields[0].starts_with(kFunction)) << row.line;
    const std::string type = row.fields[0].substr(kFunction.size());
    EXPECT_EQ(Base().Format_Number(row.fields[1], type), row.fields[2])
        << GetParam() << ".tsv:" << row.line;
  }
}

INSTANTIATE_TEST_SUITE_P(Table, FormatNumber,
                         testing::Values("format_number", "format_number_more"),
                         [](const auto& named) { return std::string(named.param); });

TEST(FormatNumber, NeverRaises) {
  // Every text of up to three of these characters, in both types.
  constexpr std::string_view kCharacters = "07.,-+()eE&Hx R$%/:\t";
  const Base base;
  const auto formats = [&](const std::string& text) {
    for (const std::string_view type : {"int", "dbl"}) {
      EXPECT_NO_THROW(EXPECT_FALSE(base.Format_Number(text, type).empty())) << text;
    }
  };
  for (const char a : kCharacters) {
    formats({a});
    for (const char b : kCharacters) {
      formats({a, b});
      for (const char c : kCharacters) formats({a, b, c});
    }
  }
}

TEST(FormatNumber, ATextThatIsNotUtf8ComesBack) {
  const std::string bytes = "\xff\xfe\x80";
  EXPECT_EQ(Base().Format_Number(bytes, "int"), bytes);
  EXPECT_EQ(Base().Format_Number(bytes, "dbl"), bytes);
  EXPECT_EQ(Base().Format_Number(std::string("7\0", 2), "dbl"), std::string("7\0", 2));
}

}  // namespace
}  // namespace pelm
