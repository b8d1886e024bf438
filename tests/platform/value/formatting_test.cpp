// Format, FormatNumber, names and months beyond what the tables show.
#include "platform/value/formatting.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/value/expect_error.h"

namespace pelm {
namespace {

const Date kAfternoon = Date::from_civil({2008, 3, 5, 14, 7, 9});  // a Wednesday
const Date kMorning = Date::from_civil({1999, 11, 20, 0, 30, 0});  // a Saturday

struct PatternCase {
  const char* pattern;
  const char* afternoon;
  const char* morning;
};

class FormatDate : public testing::TestWithParam<PatternCase> {};

TEST_P(FormatDate, PrintsThePattern) {
  EXPECT_EQ(format_date(kAfternoon, GetParam().pattern), GetParam().afternoon);
  EXPECT_EQ(format_date(kMorning, GetParam().pattern), GetParam().morning);
}

INSTANTIATE_TEST_SUITE_P(
    Patterns, FormatDate,
    testing::Values(
        PatternCase{"d|dd|ddd|dddd", "5|05|qua|quarta-feira", "20|20|sáb|sábado"},
        PatternCase{"m|mm|mmm|mmmm", "3|03|mar|março", "11|11|nov|novembro"},
        PatternCase{"yy|yyyy", "08|2008", "99|1999"},
        PatternCase{"h|hh|n|nn|s|ss", "14|14|7|07|9|09", "0|00|30|30|0|00"},
        PatternCase{"DD/MM/YYYY HH:MM:SS", "05/03/2008 14:07:09", "20/11/1999 00:30:00"},
        PatternCase{"dd-mm-yyyy", "05-03-2008", "20-11-1999"},
        // m means minutes right after hours and right before seconds.
        PatternCase{"h:m d/m", "14:7 5/3", "0:30 20/11"}, PatternCase{"hhmm", "1407", "0030"},
        PatternCase{"mm:ss", "07:09", "30:00"}, PatternCase{"mm dd hh", "03 05 14", "11 20 00"},
        PatternCase{"hh mm mm", "14 07 03", "00 30 11"}, PatternCase{"h mmm", "14 mar", "0 nov"},
        // Twelve hours.
        PatternCase{"hh:mm AM/PM", "02:07 PM", "12:30 AM"},
        PatternCase{"h:mm am/pm", "2:07 pm", "12:30 am"}, PatternCase{"hA/P", "2P", "12A"},
        // Literals.
        PatternCase{"d \"de\" mmmm \"de\" yyyy", "5 de março de 2008", "20 de novembro de 1999"},
        PatternCase{"\\d\\m d", "dm 5", "dm 20"}, PatternCase{"\"dia", "dia", "dia"},
        PatternCase{"d\\", "5\\", "20\\"}, PatternCase{"[ç€]", "[ç€]", "[ç€]"},
        // Position in the year and the week.
        PatternCase{"y w ww q", "65 4 10 1", "324 7 47 4"},
        // Whole dates and times.
        PatternCase{"c", "05/03/2008 14:07:09", "20/11/1999 00:30:00"},
        PatternCase{"", "05/03/2008 14:07:09", "20/11/1999 00:30:00"},
        PatternCase{"ddddd ttttt", "05/03/2008 14:07:09", "20/11/1999 00:30:00"},
        PatternCase{"dddddd", "quarta-feira, 5 de março de 2008", "sábado, 20 de novembro de 1999"},
        PatternCase{"General Date", "05/03/2008 14:07:09", "20/11/1999 00:30:00"},
        PatternCase{"long date", "quarta-feira, 5 de março de 2008",
                    "sábado, 20 de novembro de 1999"},
        PatternCase{"Medium Date", "05-mar-08", "20-nov-99"},
        PatternCase{"Short Date", "05/03/2008", "20/11/1999"},
        PatternCase{"Long Time", "14:07:09", "00:30:00"},
        PatternCase{"Medium Time", "02:07 PM", "12:30 AM"},
        PatternCase{"Short Time", "14:07", "00:30"}));

TEST(FormatDate, RoundsToTheSecondBeforeItPrints) {
  EXPECT_EQ(format_date(Date::from_serial(39512.9999999), "dd/mm/yyyy hh:mm:ss"),
            "06/03/2008 00:00:00");
  EXPECT_EQ(format_date(Date::from_civil({999, 1, 2}), "yyyy yy"), "0999 99");
}

TEST(FormatDate, WeeksBeginOnSundayAndTheFirstHoldsTheFirstOfJanuary) {
  const auto week = [](int year, int month, int day) {
    return format_date(Date::from_civil({year, month, day}), "ww");
  };
  EXPECT_EQ(week(2008, 1, 1), "1");
  EXPECT_EQ(week(2008, 1, 5), "1");  // Saturday
  EXPECT_EQ(week(2008, 1, 6), "2");
  EXPECT_EQ(week(2000, 12, 31), "54");  // a leap year that began on a Saturday
}

TEST(Format, ReadsATextFirst) {
  EXPECT_EQ(format("2008-3-5", "dd/mm/yyyy"), "05/03/2008");
  EXPECT_EQ(format("39512,5", "dd/mm/yyyy hh:mm"), "05/03/2008 12:00");
  EXPECT_EQ(format("abc", "dd/mm/yyyy"), "abc");
  EXPECT_EQ(format("9999999", "dd/mm/yyyy"), "9999999");  // a number that is no day
  EXPECT_EQ(format("2008-3-5", ""), "2008-3-5");
}

TEST(Format, TakesNumbersAsSerials) {
  EXPECT_EQ(format(39512.5, "dd/mm/yyyy hh:mm"), "05/03/2008 12:00");
  EXPECT_EQ(format(std::int32_t{1}, "dd/mm/yyyy"), "31/12/1899");
  EXPECT_EQ(format(true, "dd/mm/yyyy"), "29/12/1899");
  EXPECT_EQ(format(1.5, ""), "1,5");
  EXPECT_ERROR(6, format(3e6, "dd/mm/yyyy"));
}

TEST(Format, NullAndEmptyGiveNothing) {
  EXPECT_EQ(format(Null{}, "dd/mm/yyyy"), "");
  EXPECT_EQ(format({}, "dd/mm/yyyy"), "");
  EXPECT_EQ(format(Null{}, ""), "");
}

TEST(Format, RefusesArraysAndObjects) {
  for (const char* pattern : {"dd/mm/yyyy", ""}) {
    EXPECT_ERROR(13, format(Variant::Elements{}, pattern));
    EXPECT_ERROR(13, format(std::make_shared<Object>(), pattern));
  }
}

TEST(FormatNumber, RoundsHalvesAwayFromZeroOnTheDecimalText) {
  EXPECT_EQ(format_number(2.5, 0), "3");
  EXPECT_EQ(format_number(-2.5, 0), "-3");
  EXPECT_EQ(format_number(0.5, 0), "1");
  EXPECT_EQ(format_number(0.49, 0), "0");
  EXPECT_EQ(format_number(9.5, 0), "10");
  EXPECT_EQ(format_number(999.995), "1.000,00");
  EXPECT_EQ(format_number(0.995), "1,00");
  EXPECT_EQ(format_number(0.05, 1), "0,1");
  EXPECT_EQ(format_number(0.04, 1), "0,0");
  EXPECT_EQ(format_number(0.0005, 3), "0,001");
  EXPECT_EQ(format_number(0.00005, 3), "0,000");
  EXPECT_EQ(format_number(0.09, 1), "0,1");
  EXPECT_EQ(format_number(1.0 / 3, 15), "0,333333333333333");
  EXPECT_EQ(format_number(1e-15, 15), "0,000000000000001");
  EXPECT_EQ(format_number(5e-16, 15), "0,000000000000001");
  EXPECT_EQ(format_number(4e-16, 15), "0,000000000000000");
  EXPECT_EQ(format_number(1e-300), "0,00");
}

TEST(FormatNumber, ZeroHasNoSign) {
  EXPECT_EQ(format_number(0), "0,00");
  EXPECT_EQ(format_number(-0.0), "0,00");
  EXPECT_EQ(format_number(-0.004), "0,00");
  EXPECT_EQ(format_number(-0.4, 0), "0");
  EXPECT_EQ(format_number(-0.005), "-0,01");
}

TEST(FormatNumber, PrintsEveryIntegerDigit) {
  EXPECT_EQ(format_number(123456789012345678.0), "123.456.789.012.346.000,00");
  EXPECT_EQ(format_number(1e21, 0), "1.000.000.000.000.000.000.000");
  EXPECT_EQ(format_number(std::numeric_limits<double>::max(), 0).size(), 309U + 102U);
  EXPECT_EQ(format_number(100, 0), "100");
  EXPECT_EQ(format_number(-1000, 0), "-1.000");
}

TEST(FormatNumber, AcceptsUpToFifteenPlaces) {
  EXPECT_EQ(format_number(1.5, 15), "1,500000000000000");
  EXPECT_ERROR(5, format_number(1, -1));
  EXPECT_ERROR(5, format_number(1, 16));
}

TEST(FormatNumber, WritesWhatIsNotFiniteAsTheOldPlatformDid) {
  EXPECT_EQ(format_number(std::numeric_limits<double>::infinity()), "1,#INF");
  EXPECT_EQ(format_number(std::nan("")), "-1,#IND");
}

TEST(Names, ArePortugueseAndCounted) {
  EXPECT_EQ(month_name(3), "março");
  EXPECT_EQ(weekday_name(1), "domingo");
  EXPECT_EQ(weekday_name(7), "sábado");
  for (const int outside : {0, 13, -1}) EXPECT_ERROR(5, month_name(outside));
  for (const int outside : {0, 8, -1}) EXPECT_ERROR(5, weekday_name(outside));
}

TEST(AddMonths, ClipsTheDayAndKeepsTheTime) {
  const Date end_of_january = Date::from_civil({2008, 1, 31, 14, 7, 9});
  EXPECT_EQ(add_months(end_of_january, 1), Date::from_civil({2008, 2, 29, 14, 7, 9}));
  EXPECT_EQ(add_months(end_of_january, 13), Date::from_civil({2009, 2, 28, 14, 7, 9}));
  EXPECT_EQ(add_months(end_of_january, -2), Date::from_civil({2007, 11, 30, 14, 7, 9}));
  EXPECT_EQ(add_months(Date(), -1), Date::from_civil({1899, 11, 30}));
}

TEST(AddMonths, TruncatesTheNumber) {
  const Date d = Date::from_civil({2008, 6, 15});
  EXPECT_EQ(add_months(d, 1.9), Date::from_civil({2008, 7, 15}));
  EXPECT_EQ(add_months(d, -1.9), Date::from_civil({2008, 5, 15}));
  EXPECT_EQ(add_months(d, 0.9), d);
}

TEST(AddMonths, StaysInTheCalendar) {
  const Date first = Date::from_civil({100, 1, 31});
  const Date last = Date::from_civil({9999, 12, 1});
  EXPECT_EQ(add_months(first, 9900 * 12 - 1), Date::from_civil({9999, 12, 31}));
  EXPECT_ERROR(5, add_months(first, -1));
  EXPECT_ERROR(5, add_months(last, 1));
  EXPECT_ERROR(5, add_months(last, 1e300));
  EXPECT_ERROR(5, add_months(last, -1e300));
  EXPECT_ERROR(5, add_months(last, -119999));
  EXPECT_ERROR(5, add_months(last, std::nan("")));
}

}  // namespace
}  // namespace pelm
