// What a column takes, as what, and what it refuses.
#include "platform/ado/field_conversion.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "pelm/error.h"

namespace pelm::ado {
namespace {

using ::testing::HasSubstr;

Date day(int year, int month, int d, int hour = 0) {
  return Date::from_civil({year, month, d, hour, 0, 0});
}

Column column(DataTypeEnum type, std::int32_t size = 0) {
  return {.name = "NOME", .type = type, .size = size};
}

struct Taken {
  DataTypeEnum type;
  Variant given;
  Variant held;
};

class ColumnTakes : public ::testing::TestWithParam<Taken> {};

TEST_P(ColumnTakes, ValuesOfOtherTypes) {
  EXPECT_EQ(converted_for(column(GetParam().type, 40), GetParam().given), GetParam().held);
}

const std::int16_t k7 = 7;

INSTANTIATE_TEST_SUITE_P(
    Values, ColumnTakes,
    ::testing::Values(
        Taken{adInteger, 7, 7}, Taken{adInteger, k7, 7}, Taken{adInteger, 7.5, 8},
        Taken{adInteger, 6.5, 6}, Taken{adInteger, "1.234,5", 1234}, Taken{adInteger, true, -1},
        Taken{adInteger, Variant(), 0}, Taken{adInteger, Null{}, Null{}}, Taken{adSmallInt, 7, k7},
        Taken{adSmallInt, "7", k7}, Taken{adBigInt, 7, 7},
        Taken{adBigInt, 3000000000.0, 3000000000.0}, Taken{adBigInt, 7.0, 7},
        Taken{adBigInt, "3000000000", 3000000000.0}, Taken{adDouble, 7, 7.0},
        Taken{adDouble, "0,5", 0.5}, Taken{adDouble, Null{}, Null{}}, Taken{adBoolean, 2, true},
        Taken{adBoolean, "False", false}, Taken{adBoolean, 0, false},
        Taken{adDate, "5/3/2008", day(2008, 3, 5)}, Taken{adDate, 39512, day(2008, 3, 5)},
        Taken{adDate, day(2008, 3, 5, 14), day(2008, 3, 5, 14)}, Taken{adDate, Null{}, Null{}},
        Taken{adVarChar, "", ""}, Taken{adVarChar, "São", "São"}, Taken{adVarChar, 0.5, "0,5"},
        Taken{adVarChar, true, "True"}, Taken{adVarChar, day(2008, 3, 5), "05/03/2008"},
        Taken{adVarChar, Variant(), ""}, Taken{adLongVarWChar, 7, "7"}, Taken{adVariant, "x", "x"},
        Taken{adVariant, 0.5, 0.5}, Taken{adVariant, Variant(), Null{}}));

struct Unfit {
  DataTypeEnum type;
  Variant given;
  std::int32_t number;
};

class ColumnRefuses : public ::testing::TestWithParam<Unfit> {};

TEST_P(ColumnRefuses, NamingItself) {
  try {
    converted_for(column(GetParam().type, 3), GetParam().given);
    FAIL() << "taken";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), GetParam().number);
    EXPECT_EQ(e.source(), "ADODB.Field");
    EXPECT_THAT(e.description(), HasSubstr("NOME"));
  }
}

constexpr auto kCant = error_number::kCantConvertValue;
constexpr auto kTooLarge = error_number::kDataOverflow;

INSTANTIATE_TEST_SUITE_P(
    Values, ColumnRefuses,
    ::testing::Values(Unfit{adInteger, "abc", kCant}, Unfit{adInteger, "", kCant},
                      Unfit{adInteger, 3e9, kTooLarge}, Unfit{adSmallInt, 32768, kTooLarge},
                      Unfit{adSmallInt, "40000", kTooLarge}, Unfit{adBigInt, 1e19, kTooLarge},
                      Unfit{adBigInt, 9223372036854775808.0, kTooLarge},
                      Unfit{adDouble, "1,2,3", kCant}, Unfit{adDouble, "", kCant},
                      Unfit{adBoolean, "talvez", kCant}, Unfit{adDate, "30/2/2008/1", kCant},
                      Unfit{adDate, "", kCant}, Unfit{adDate, 1e9, kTooLarge},
                      Unfit{adVarChar, "abcd", kTooLarge}, Unfit{adVarChar, "ação!", kTooLarge},
                      Unfit{adInteger, Variant(Variant::Elements{1, 2}), kCant},
                      Unfit{adVarChar, Variant(ObjectRef()), kCant}));

TEST(FieldConversion, CountsCharactersNotBytes) {
  EXPECT_EQ(converted_for(column(adVarChar, 3), "ção"), Variant("ção"));
  EXPECT_EQ(converted_for(column(adVarWChar, 1), "€"), Variant("€"));
}

TEST(FieldConversion, WithoutASizeTakesAnyText) {
  const std::string text(100000, 'x');
  EXPECT_EQ(converted_for(column(adLongVarChar), text), Variant(text));
}

TEST(FieldConversion, LeavesNullInARequiredColumnToTheEngine) {
  Column required = column(adInteger);
  required.nullable = false;
  EXPECT_TRUE(converted_for(required, Null{}).is_null());
}

TEST(FieldConversion, SaysHowLongATextWasAndMayBe) {
  try {
    converted_for(column(adVarChar, 3), "ações");
    FAIL() << "taken";
  } catch (const Error& e) {
    EXPECT_THAT(e.description(), HasSubstr("(campo NOME: 5 caracteres, cabem 3)"));
  }
}

}  // namespace
}  // namespace pelm::ado
