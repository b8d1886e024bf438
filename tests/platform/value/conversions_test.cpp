// Conversions beyond what the tables show: types, bounds, errors.
#include "pelm/conversions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "platform/value/clock.h"
#include "platform/value/expect_error.h"

namespace pelm {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

Variant array() { return Variant::Elements{1.0}; }
Variant object() { return std::make_shared<Object>(); }

void expect_every_conversion_raises(std::int32_t number, const Variant& v) {
  EXPECT_ERROR(number, to_integer(v));
  EXPECT_ERROR(number, to_long(v));
  EXPECT_ERROR(number, to_double(v));
  EXPECT_ERROR(number, to_boolean(v));
  EXPECT_ERROR(number, to_date(v));
  EXPECT_ERROR(number, to_text(v));
  EXPECT_FALSE(is_date(v));
  EXPECT_FALSE(is_numeric(v));
}

TEST(Conversions, NullIsInvalidEverywhere) { expect_every_conversion_raises(94, Null{}); }

TEST(Conversions, ArraysAndObjectsMismatchEverywhere) {
  expect_every_conversion_raises(13, array());
  expect_every_conversion_raises(13, object());
  expect_every_conversion_raises(13, ObjectRef());
}

TEST(Conversions, EmptyIsZeroOfEachType) {
  const Variant empty;
  EXPECT_EQ(to_integer(empty), 0);
  EXPECT_EQ(to_long(empty), 0);
  EXPECT_EQ(to_double(empty), 0.0);
  EXPECT_FALSE(to_boolean(empty));
  EXPECT_EQ(to_date(empty), Date());
  EXPECT_EQ(to_text(empty), "");
}

TEST(Conversions, TrueIsMinusOne) {
  EXPECT_EQ(to_integer(true), -1);
  EXPECT_EQ(to_long(true), -1);
  EXPECT_EQ(to_double(true), -1.0);
  EXPECT_EQ(to_date(true), Date::from_civil({1899, 12, 29}));
  EXPECT_EQ(to_text(true), "True");
  EXPECT_EQ(to_text(false), "False");
  EXPECT_EQ(to_integer(false), 0);
}

TEST(Conversions, DatesAreTheirSerials) {
  const Date d = Date::from_civil({2008, 3, 5, 12, 0, 0});
  EXPECT_EQ(to_double(d), 39512.5);
  EXPECT_EQ(to_long(d), 39512);  // half to even
  EXPECT_ERROR(6, to_integer(d));
  EXPECT_TRUE(to_boolean(d));
  EXPECT_FALSE(to_boolean(Date()));
  EXPECT_EQ(to_date(d), d);
}

TEST(ToInteger, RoundsHalvesToEvenThenChecksTheRange) {
  EXPECT_EQ(to_integer(32767.4), 32767);
  EXPECT_ERROR(6, to_integer(32767.5));
  EXPECT_EQ(to_integer(-32768.5), -32768);
  EXPECT_ERROR(6, to_integer(-32768.6));
  EXPECT_EQ(to_integer("32767,4"), 32767);
  EXPECT_ERROR(6, to_integer("32767,5"));
  EXPECT_EQ(to_integer(std::int32_t{32767}), 32767);
  EXPECT_ERROR(6, to_integer(std::int32_t{32768}));
  EXPECT_ERROR(6, to_integer("1e400"));
  EXPECT_EQ(to_integer("1e-400"), 0);
}

TEST(ToLong, RoundsHalvesToEvenThenChecksTheRange) {
  EXPECT_EQ(to_long(2147483647.4), 2147483647);
  EXPECT_ERROR(6, to_long(2147483647.5));
  EXPECT_EQ(to_long(-2147483648.5), std::numeric_limits<std::int32_t>::min());
  EXPECT_ERROR(6, to_long(-2147483649.0));
  EXPECT_EQ(to_long(std::int16_t{-5}), -5);
  EXPECT_ERROR(6, to_long(kInfinity));
  EXPECT_ERROR(6, to_long(std::nan("")));
}

TEST(Conversions, HexAndOctalFillTheBitsOfTheType) {
  EXPECT_EQ(to_integer("&H7FFF"), 32767);
  EXPECT_EQ(to_integer("&H8000"), -32768);
  EXPECT_EQ(to_integer("&HFFFF"), -1);
  EXPECT_EQ(to_integer("&O177777"), -1);
  EXPECT_EQ(to_integer("&H0000FFFF"), -1);
  EXPECT_ERROR(6, to_integer("&H10000"));
  EXPECT_EQ(to_long("&HFFFF"), 65535);
  EXPECT_EQ(to_long("&H80000000"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(to_long("&HFFFFFFFF"), -1);
  EXPECT_ERROR(6, to_long("&H100000000"));
  EXPECT_EQ(to_double("&HFFFFFFFF"), 4294967295.0);  // a double has no such bits: the plain number
  EXPECT_EQ(to_double("&H1FFFFFFFF"), 8589934591.0);
  EXPECT_ERROR(6, to_double("&H10000000000000000"));
}

TEST(ToBoolean, ReadsItsTwoWordsAndNumbers) {
  EXPECT_TRUE(to_boolean("tRuE"));
  EXPECT_FALSE(to_boolean("FALSE"));
  EXPECT_TRUE(to_boolean("0,1"));
  EXPECT_FALSE(to_boolean("0"));
  EXPECT_FALSE(to_boolean("-0,0"));
  EXPECT_TRUE(to_boolean("&H1"));
  EXPECT_TRUE(to_boolean(-0.5));
  EXPECT_TRUE(to_boolean(std::int16_t{2}));
  EXPECT_FALSE(to_boolean(std::int32_t{0}));
  for (const char* text : {"", " True", "Verdadeiro", "yes", "12:30"}) {
    EXPECT_ERROR(13, to_boolean(text)) << text;
  }
  EXPECT_ERROR(6, to_boolean("1e400"));
}

TEST(ToDate, NumbersAreSerials) {
  EXPECT_EQ(to_date(39512.5), Date::from_civil({2008, 3, 5, 12, 0, 0}));
  EXPECT_EQ(to_date(std::int16_t{1}), Date::from_civil({1899, 12, 31}));
  EXPECT_EQ(to_date(std::int32_t{2958465}), Date::from_civil({9999, 12, 31}));
  EXPECT_ERROR(6, to_date(std::int32_t{2958466}));
  EXPECT_ERROR(6, to_date(-657435.0));
}

TEST(ToDate, ATextThatIsNoDateButANumberIsASerial) {
  EXPECT_EQ(to_date("39512,5"), Date::from_civil({2008, 3, 5, 12, 0, 0}));
  EXPECT_EQ(to_date("-1"), Date::from_civil({1899, 12, 29}));
  EXPECT_EQ(to_date("(1)"), Date::from_civil({1899, 12, 29}));
  EXPECT_EQ(to_date("&H10"), Date::from_serial(16));
  EXPECT_EQ(to_date("1.2.2020"), Date::from_serial(122020));  // kept: group marks, not a date
  EXPECT_FALSE(is_date("1.2.2020"));
}

TEST(ToDate, ATextNeverOverflows) {
  EXPECT_ERROR(13, to_date("2958466"));
  EXPECT_ERROR(13, to_date("-657435"));
  EXPECT_ERROR(13, to_date("1e400"));
  EXPECT_ERROR(13, to_date("2008.03.05"));
  EXPECT_EQ(to_date("2958465"), Date::from_civil({9999, 12, 31}));
}

TEST(ToText, WritesEachType) {
  EXPECT_EQ(to_text(std::int16_t{-32768}), "-32768");
  EXPECT_EQ(to_text(std::int32_t{-2147483647 - 1}), "-2147483648");
  EXPECT_EQ(to_text(1234.5), "1234,5");
  EXPECT_EQ(to_text("João"), "João");
  EXPECT_EQ(to_text(Date::from_civil({2008, 3, 5, 14, 7, 9})), "05/03/2008 14:07:09");
  EXPECT_EQ(to_text(std::string("\xE9\0x", 3)), std::string("\xE9\0x", 3));
}

TEST(IsDate, IsTrueForDatesAndTheirTexts) {
  EXPECT_TRUE(is_date(Date()));
  EXPECT_TRUE(is_date("5/3/2008"));
  EXPECT_FALSE(is_date("39512"));
  EXPECT_FALSE(is_date(39512.0));
  EXPECT_FALSE(is_date(true));
  EXPECT_FALSE(is_date({}));
}

TEST(IsNumeric, IsTrueForNumbersAndTheirTexts) {
  EXPECT_TRUE(is_numeric({}));
  EXPECT_TRUE(is_numeric(true));
  EXPECT_TRUE(is_numeric(std::int16_t{1}));
  EXPECT_TRUE(is_numeric(1.0));
  EXPECT_TRUE(is_numeric("R$ 1.234,56"));
  EXPECT_TRUE(is_numeric("&HFF"));
  EXPECT_FALSE(is_numeric("1e400"));  // to_double would overflow
  EXPECT_FALSE(is_numeric(""));
  EXPECT_FALSE(is_numeric("5/3/2008"));
  EXPECT_FALSE(is_numeric(Date()));
}

TEST(Conversions, NumbersOf16And32BitsRoundTripThroughText) {
  for (int v = -32768; v <= 32767; ++v) {
    const auto n = static_cast<std::int16_t>(v);
    ASSERT_EQ(to_integer(to_text(n)), n);
    ASSERT_EQ(to_long(to_text(std::int32_t{v} * 65535)), v * 65535);
  }
}

// Texts put together at random from what dates and numbers are made of.
TEST(Conversions, AnyTextIsAnsweredAndTheAnswersAgree) {
  constexpr std::string_view kPieces[] = {"0",    "1",        "12",
                                          "31",   "2008",     "99999999999",
                                          "/",    "-",        ",",
                                          ".",    ":",        " ",
                                          "\t",   "\xC2\xA0", "R$",
                                          "(",    ")",        "+",
                                          "e",    "d",        "&H",
                                          "&O",   "FF",       "am",
                                          "PM",   "mar",      "março",
                                          "de",   "True",     "x",
                                          "\xE9", "é",        std::string_view("\0", 1)};
  std::mt19937 random(2008);  // the same texts every run
  int dates = 0;
  int numbers = 0;
  for (int i = 0; i < 40000; ++i) {
    std::string text;
    for (auto n = random() % 8; n > 0; --n) text += kPieces[random() % std::size(kPieces)];

    ASSERT_EQ(is_numeric(text), !error_of([&] { static_cast<void>(to_double(text)); })) << text;
    const auto date_error = error_of([&] { static_cast<void>(to_date(text)); });
    ASSERT_TRUE(!date_error || *date_error == 13) << text;
    if (is_date(text)) {
      ASSERT_FALSE(date_error) << text;
      ASSERT_EQ(to_date(to_text(to_date(text))), to_date(text)) << text;
    }
    dates += is_date(text) ? 1 : 0;
    numbers += is_numeric(text) ? 1 : 0;
  }
  EXPECT_GT(dates, 100);  // else the texts above show nothing
  EXPECT_GT(numbers, 500);
}

}  // namespace
}  // namespace pelm
