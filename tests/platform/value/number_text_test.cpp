// Numbers as texts: what reads, what does not, and that writing and reading agree.
#include "platform/value/number_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

namespace pelm {
namespace {

using Kind = NumberReading::Kind;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

double value_of(std::string_view s) {
  const NumberReading reading = read_number(s);
  EXPECT_EQ(reading.kind, Kind::Decimal) << s;
  return reading.value;
}

TEST(ReadNumber, TakesSignsCurrencyAndParentheses) {
  struct Case {
    const char* text;
    double value;
  };
  for (const auto& [text, value] : std::initializer_list<Case>{{"-7", -7},
                                                               {"- 7", -7},
                                                               {"7 -", -7},
                                                               {"7--", -7},
                                                               {"7+", 7},
                                                               {"(7)", -7},
                                                               {"( 7 )", -7},
                                                               {"R$7", 7},
                                                               {"7R$", 7},
                                                               {"7 R$", 7},
                                                               {"-R$ 7", -7},
                                                               {"R$ -7", -7},
                                                               {"R$ 7-", -7},
                                                               {"(R$ 7)", -7},
                                                               {"R$ (7)", -7},
                                                               {"\t\r\n\xC2\xA0 7\xC2\xA0", 7}}) {
    EXPECT_EQ(value_of(text), value) << text;
  }
}

TEST(ReadNumber, GroupMarksStandAnywhereAfterTheFirstDigit) {
  EXPECT_EQ(value_of("1.2"), 12);
  EXPECT_EQ(value_of("1..2"), 12);
  EXPECT_EQ(value_of("12.34,5"), 1234.5);
  EXPECT_EQ(value_of("1.,2"), 1.2);
  EXPECT_EQ(value_of("1,234.5"), 1.2345);
  EXPECT_EQ(value_of("5."), 5);
  EXPECT_EQ(value_of("1.e3"), 1000);
}

TEST(ReadNumber, ReadsExponentsOfEitherLetter) {
  EXPECT_EQ(value_of("1e3"), 1000);
  EXPECT_EQ(value_of("1,5D+2"), 150);
  EXPECT_EQ(value_of("5,e-1"), 0.5);
  EXPECT_EQ(value_of("1e-400"), 0);
  EXPECT_EQ(value_of("0e999999999999999999999999"), 0);
  EXPECT_EQ(value_of("1e-999999999999999999999999"), 0);
  EXPECT_EQ(value_of("4,9406564584124654e-324"), std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(value_of("1,7976931348623157e308"), std::numeric_limits<double>::max());
  EXPECT_TRUE(std::signbit(value_of("-0")));
}

TEST(ReadNumber, RefusesWhatIsNoNumber) {
  for (const char* text :
       {"",    " ",   "-",     "+",     "R$",       "(",        ")",     "()",
        "(7",  "7)",  "((7))", "(-7)",  "-(7)",     "(7)-",     "-7-",   "+7-",
        "7+-", "--7", "R$7R$", "R$R$7", "r$7",      "$7",       "US$7",  ".",
        ",",   ".5",  "-.5",   ",.5",   "1,2,3",    "1 2",      "1. 2",  "1 ,5",
        "1e",  "1e+", "e3",    "1e 3",  "1 e3",     "1e3e3",    "1e3,5", "1f",
        "50%", "5&",  "1'000", "0x10",  "NaN",      "Infinity", "1#INF", "1,#INF",
        "٣",   "５",  "²",     "½",     "\xA0\x37", "7\xA0",    "1/2",   "12:30"}) {
    EXPECT_EQ(read_number(text).kind, Kind::NotANumber) << text;
  }
  EXPECT_EQ(read_number(std::string_view("7\0", 2)).kind, Kind::NotANumber);
}

TEST(ReadNumber, KnowsTooLargeANumber) {
  EXPECT_EQ(read_number("1,8e308").kind, Kind::TooLarge);
  EXPECT_EQ(read_number("-1e309").kind, Kind::TooLarge);
  EXPECT_EQ(read_number("1e999999999999999999999999").kind, Kind::TooLarge);
  EXPECT_EQ(read_number(std::string(400, '9')).kind, Kind::TooLarge);
  EXPECT_EQ(read_number("&HFFFFFFFFFFFFFFFFF").kind, Kind::TooLarge);
}

TEST(ReadNumber, HexAndOctalAreBitPatterns) {
  const auto bits_of = [](std::string_view s) {
    const NumberReading reading = read_number(s);
    EXPECT_EQ(reading.kind, Kind::BitPattern) << s;
    return reading.bits;
  };
  EXPECT_EQ(bits_of("&HFF"), 0xFFU);
  EXPECT_EQ(bits_of(" &hfFfF "), 0xFFFFU);
  EXPECT_EQ(bits_of("&O17"), 15U);
  EXPECT_EQ(bits_of("&o17"), 15U);
  EXPECT_EQ(bits_of("&H00000000000000000000FF"), 0xFFU);
  for (const char* text : {"&", "&H", "&O", "&17", "&B1", "&HG", "&H1G", "&O8", "& H1", "&H 1",
                           "&H-1", "-&H1", "&HFF&", "&H1,5", "R$&H1", "(&H1)", "&H1-"}) {
    EXPECT_EQ(read_number(text).kind, Kind::NotANumber) << text;
  }
}

// The text lies between two neighbouring doubles: its far digits decide.
TEST(ReadNumber, EveryDigitCountsHoweverManyThereAre) {
  const std::string half_way =  // exactly half way between 1 and the next double
      "1,00000000000000011102230246251565404236316680908203125";
  const double next = std::nextafter(1.0, 2.0);
  EXPECT_EQ(value_of(half_way), 1.0);
  EXPECT_EQ(value_of(half_way + "1"), next);
  EXPECT_EQ(value_of(half_way + std::string(100000, '0')), 1.0);
  EXPECT_EQ(value_of(half_way + std::string(100000, '0') + "1"), next);
  EXPECT_EQ(value_of(std::string(100000, '0') + half_way), 1.0);
  EXPECT_EQ(value_of("1" + std::string(100000, '0') + "e-100000"), 1.0);
  EXPECT_EQ(value_of("0," + std::string(100000, '0') + "1e100001"), 1.0);
}

TEST(NumberText, TurnsToAnExponentPastFifteenPlaces) {
  EXPECT_EQ(number_text(1e14), "100000000000000");
  EXPECT_EQ(number_text(1e15), "1E+15");
  EXPECT_EQ(number_text(1234567890123456.0), "1,23456789012346E+15");
  EXPECT_EQ(number_text(999999999999999.9), "1E+15");
  EXPECT_EQ(number_text(1e-15), "0,000000000000001");
  EXPECT_EQ(number_text(1e-16), "1E-16");
  EXPECT_EQ(number_text(1.5e-10), "0,00000000015");
  EXPECT_EQ(number_text(1.0 / 3), "0,333333333333333");
  EXPECT_EQ(number_text(1.0 / 30), "3,33333333333333E-02");
  EXPECT_EQ(number_text(-1e100), "-1E+100");
  EXPECT_EQ(number_text(5e-324), "4,94065645841247E-324");
}

TEST(NumberText, WritesPlainNumbers) {
  EXPECT_EQ(number_text(0.5), "0,5");
  EXPECT_EQ(number_text(-0.5), "-0,5");
  EXPECT_EQ(number_text(-0.0), "-0");
  EXPECT_EQ(number_text(1234.5), "1234,5");
  EXPECT_EQ(number_text(0.1 + 0.2), "0,3");
  EXPECT_EQ(number_text(120), "120");
}

TEST(NumberText, WritesWhatIsNotFiniteAsTheOldPlatformDid) {
  EXPECT_EQ(number_text(kInfinity), "1,#INF");
  EXPECT_EQ(number_text(-kInfinity), "-1,#INF");
  EXPECT_EQ(number_text(std::nan("")), "-1,#IND");
}

// A number of at most 15 digits comes back exactly from its text.
TEST(NumberText, FifteenDigitsRoundTrip) {
  std::mt19937_64 random(2008);  // the same numbers every run
  std::uniform_int_distribution<std::int64_t> digits(-999'999'999'999'999, 999'999'999'999'999);
  std::uniform_int_distribution<int> exponents(-300, 290);
  for (int i = 0; i < 50000; ++i) {
    const bool plain = i % 2 == 0;
    const std::string scientific =
        std::to_string(digits(random)) + "e" +
        std::to_string(plain ? exponents(random) % 16 : exponents(random));
    const double v = std::strtod(scientific.c_str(), nullptr);
    ASSERT_EQ(value_of(number_text(v)), v) << scientific;
  }
}

// Any double's text, read and written again, is the same text.
TEST(NumberText, EveryTextIsStable) {
  std::mt19937_64 random(1899);  // the same numbers every run
  for (int i = 0; i < 50000; ++i) {
    const double v = std::bit_cast<double>(random());
    if (!std::isfinite(v) || std::fabs(v) > 1.79769313486231e308) continue;
    const std::string text = number_text(v);
    ASSERT_EQ(number_text(value_of(text)), text);
    ASSERT_NEAR(value_of(text) / v, 1, std::isnormal(v) ? 1e-14 : 1) << text;
  }
}

// kept: fifteen digits may round past the largest double, and such a text overflows when read.
TEST(NumberText, TheLargestDoubleDoesNotReadBack) {
  EXPECT_EQ(number_text(std::numeric_limits<double>::max()), "1,79769313486232E+308");
  EXPECT_EQ(read_number("1,79769313486232E+308").kind, Kind::TooLarge);
}

}  // namespace
}  // namespace pelm
