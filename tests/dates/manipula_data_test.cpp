// Date texts, SQL literals, first and last days, hours and minutes.
#include "pelm/manipula_data.h"

#include <gtest/gtest.h>

#include <chrono>
#include <initializer_list>
#include <limits>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "pelm/conversions.h"
#include "platform/value/case_table.h"
#include "platform/value/clock.h"
#include "platform/value/expect_error.h"

namespace pelm {
namespace {

const ManipulaData data;

Date date(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  return Date::from_civil({year, month, day, hour, minute, second});
}

std::string iso(Date d) {
  const CivilTime t = d.civil();
  const auto padded = [](int n, std::size_t width) {
    std::string digits = std::to_string(n);
    return std::string(width - digits.size(), '0') + digits;
  };
  return padded(t.year, 4) + "-" + padded(t.month, 2) + "-" + padded(t.day, 2);
}

TEST(DataAgora, IsTodayAsDayMonthYear) {
  const ScopedClock fixed(date(2008, 3, 5, 14, 7, 9));
  EXPECT_EQ(data.DataAgora(false), "05/03/2008");
}

TEST(DataAgora, HasTheTimeUnlessToldOtherwise) {
  const ScopedClock fixed(date(2008, 3, 5, 14, 7, 9));
  EXPECT_EQ(data.DataAgora(), "05/03/2008 14:07:09");
  EXPECT_EQ(data.DataAgora(true), "05/03/2008 14:07:09");
}

TEST(DataAgora, ShowsMidnightAsATime) {
  const ScopedClock fixed(date(2008, 12, 31));
  EXPECT_EQ(data.DataAgora(), "31/12/2008 00:00:00");
}

TEST(DataAgora, ReadsTheClockForTheDayAndAgainForTheTime) {
  int readings = 0;
  const ScopedClock midnight(
      [&readings] { return ++readings == 1 ? date(2007, 12, 31, 23, 59, 59) : date(2008, 1, 1); });
  EXPECT_EQ(data.DataAgora(), "31/12/2007 00:00:00");
  EXPECT_EQ(readings, 2);
  readings = 0;
  EXPECT_EQ(data.DataAgora(false), "31/12/2007");
  EXPECT_EQ(readings, 1);
}

TEST(DataAgora, DoesNotPadTheYear) {
  const ScopedClock fixed(date(999, 11, 2));
  EXPECT_EQ(data.DataAgora(false), "02/11/999");
}

struct Minutes {
  std::int32_t minutes;
  std::string text;
  std::int32_t left;
};

void PrintTo(const Minutes& tested, std::ostream* out) { *out << tested.minutes; }

class MinutoHora : public ::testing::TestWithParam<Minutes> {};

TEST_P(MinutoHora, GivesHoursAndLeavesTheMinutes) {
  std::int32_t minutes = GetParam().minutes;
  EXPECT_EQ(data.Minuto_hora(minutes), GetParam().text);
  EXPECT_EQ(minutes, GetParam().left);
}

INSTANTIATE_TEST_SUITE_P(
    Counts, MinutoHora,
    ::testing::Values(Minutes{0, "0:00", 0}, Minutes{9, "0:09", 9}, Minutes{10, "0:10", 10},
                      Minutes{59, "0:59", 59}, Minutes{60, "1:00", 0}, Minutes{125, "2:05", 5},
                      Minutes{600, "10:00", 0}, Minutes{-5, "0:0-5", -5},
                      Minutes{-60, "0:0-60", -60}, Minutes{-61, "0:0-61", -61},
                      Minutes{std::numeric_limits<std::int32_t>::max(), "35791394:07", 7},
                      Minutes{std::numeric_limits<std::int32_t>::min(), "0:0-2147483648",
                              std::numeric_limits<std::int32_t>::min()}));

TEST(PrepData, ShowsDateAndTime) {
  EXPECT_EQ(data.PrepData(date(2008, 3, 5, 14, 7, 9)), "05/03/2008 14:07:09");
  EXPECT_EQ(data.PrepData(date(2008, 3, 5)), "05/03/2008 00:00:00");
  EXPECT_EQ(data.PrepData(date(2008, 3, 5, 14, 7, 9), false), "05/03/2008");
  EXPECT_EQ(data.PrepData(Date()), "30/12/1899 00:00:00");
}

TEST(PrepData, IsTheSameWhenTakenToPieces) {
  for (const int year :
       {100, 101, 131, 999, 1582, 1899, 1900, 1930, 1999, 2000, 2008, 2029, 9999}) {
    for (const auto& [month, day] :
         {std::pair{1, 1}, {2, 28}, {3, 5}, {5, 3}, {12, 11}, {12, 31}}) {
      for (const Date d : {date(year, month, day), date(year, month, day, 0, 0, 1),
                           date(year, month, day, 14, 7, 9), date(year, month, day, 23, 59, 59)}) {
        EXPECT_EQ(data.PrepData(d, true, true), data.PrepData(d)) << iso(d);
        EXPECT_EQ(data.PrepData(d, false, true), data.PrepData(d, false)) << iso(d);
      }
    }
  }
}

TEST(PrepData, RoundsToTheSecondEitherWay) {
  const Date almost = Date::from_serial(date(2008, 3, 5, 14, 30).serial() - 1e-8);
  EXPECT_EQ(data.PrepData(almost), "05/03/2008 14:30:00");
  EXPECT_EQ(data.PrepData(almost, true, true), "05/03/2008 14:30:00");
}

TEST(PrepDataSemDia, GivesTheLastDay) {
  EXPECT_EQ(iso(data.PrepDataSemDia(2, 2008, true)), "2008-02-29");
  EXPECT_EQ(iso(data.PrepDataSemDia(2, 2007, true)), "2007-02-28");
  EXPECT_EQ(iso(data.PrepDataSemDia(2, 1900, true)), "1900-02-28");
  EXPECT_EQ(iso(data.PrepDataSemDia(4, 2008, true)), "2008-04-30");
  EXPECT_EQ(iso(data.PrepDataSemDia(12, 9999, true)), "9999-12-31");
}

TEST(PrepDataSemDia, GivesTheFirstDay) {
  EXPECT_EQ(data.PrepDataSemDia(4, 2008, false), date(2008, 4, 1));
  EXPECT_EQ(data.PrepDataSemDia(1, 100, false), date(100, 1, 1));
}

// Every month of years that a text shows in three digits or more: those of a working life, and a
// prime step through the rest, so that every kind of leap year is met.
TEST(PrepDataSemDia, FollowsTheCalendar) {
  for (int year = 100; year <= 9999; year += year >= 1890 && year < 2110 ? 1 : 13) {
    for (int month = 1; month <= 12; ++month) {
      const std::chrono::year_month_day_last end{
          std::chrono::year{year},
          std::chrono::month_day_last{std::chrono::month{static_cast<unsigned>(month)}}};
      const Date found = data.PrepDataSemDia(static_cast<std::int16_t>(month),
                                             static_cast<std::int16_t>(year), true);
      ASSERT_EQ(found, date(year, month, static_cast<int>(static_cast<unsigned>(end.day()))));
    }
  }
}

TEST(PrepDataSemDia, TakesAYearUpTo31ForTheDay) {
  EXPECT_EQ(iso(data.PrepDataSemDia(7, 1, true)), "1931-07-01") << "read as 1-7-31";
  EXPECT_EQ(iso(data.PrepDataSemDia(7, 1, false)), "2001-07-01") << "read as 1-7-1";
  EXPECT_EQ(iso(data.PrepDataSemDia(6, 31, true)), "1931-06-30") << "31 June is no day";
}

TEST(PrepDataSemDia, ReadsTwoDigitYearsInTheirWindow) {
  EXPECT_EQ(iso(data.PrepDataSemDia(3, 0, false)), "2000-03-01");
  EXPECT_EQ(iso(data.PrepDataSemDia(2, 32, true)), "1932-02-29");
  EXPECT_EQ(iso(data.PrepDataSemDia(2, 99, true)), "1999-02-28");
}

TEST(PrepDataSemDia, RaisesTypeMismatchForAMonthOutsideTheYear) {
  for (const std::int16_t month : std::initializer_list<std::int16_t>{0, 13, -1, 32767, -32768}) {
    EXPECT_ERROR(error_number::kTypeMismatch, data.PrepDataSemDia(month, 2008, true)) << month;
    EXPECT_ERROR(error_number::kTypeMismatch, data.PrepDataSemDia(month, 2008, false)) << month;
  }
}

TEST(PrepDataSemDia, RaisesTypeMismatchForAFirstDayThatIsNoDate) {
  EXPECT_ERROR(error_number::kTypeMismatch, data.PrepDataSemDia(1, -1, false));
  EXPECT_ERROR(error_number::kTypeMismatch, data.PrepDataSemDia(1, 10000, false));
}

TEST(PrepDataSemDia, RaisesOverflowWhereTheDayRunsOutOf16Bits) {
  EXPECT_ERROR(error_number::kOverflow, data.PrepDataSemDia(1, -1, true));
  EXPECT_ERROR(error_number::kOverflow, data.PrepDataSemDia(12, 10000, true));
  EXPECT_ERROR(error_number::kOverflow, data.PrepDataSemDia(2, 32767, true));
}

TEST(PrepDataSemDia, HoldsForEveryRowOfTheTable) {
  const cases::Table table = cases::read_table(PELM_TESTS_DIR "/dates/cases/last_first_day.tsv");
  ASSERT_GT(table.rows.size(), 250U);
  for (const cases::Row& row : table.rows) {
    const std::vector<std::string> arguments = cases::split(row.fields[1], ";");
    ASSERT_EQ(arguments.size(), 3U) << row.line;
    std::string result;
    try {
      result = iso(data.PrepDataSemDia(to_integer(arguments[0]), to_integer(arguments[1]),
                                       to_boolean(arguments[2])));
    } catch (const Error& e) {
      result = "#" + std::to_string(e.number());
    }
    EXPECT_EQ(result, row.fields[2]) << row.fields[1];
  }
}

TEST(PrepDataSql, GivesTheLiteralOfAMoment) {
  EXPECT_EQ(data.PrepData_SQL(date(2008, 3, 5, 14, 7, 9)), "{ ts '2008-03-05 14:07:09' }");
  EXPECT_EQ(data.PrepData_SQL(date(2008, 3, 5)), "{ ts '2008-03-05 00:00:00' }");
  EXPECT_EQ(data.PrepData_SQL(date(999, 12, 31, 23, 59, 59)), "{ ts '0999-12-31 23:59:59' }");
  // Before day zero the fraction still counts forward from midnight.
  EXPECT_EQ(data.PrepData_SQL(Date::from_serial(-1.25)), "{ ts '1899-12-29 06:00:00' }");
  EXPECT_EQ(data.PrepData_SQL(Date()), "{ ts '1899-12-30 00:00:00' }");
}

TEST(PrepDataSql, GivesTheLiteralOfADay) {
  EXPECT_EQ(data.PrepData_SQL(date(2008, 3, 5, 14, 7, 9), false), "{ d '2008-03-05' }");
}

TEST(DataUniversal, TurnsADisplayedDateAround) {
  EXPECT_EQ(data.DataUniversal("05/03/2008"), "2008-03-05");
}

TEST(DataUniversal, CutsEveryOtherTextInTheSamePlaces) {
  EXPECT_EQ(data.DataUniversal("1/2/2008"), "08-/2-1/");
  EXPECT_EQ(data.DataUniversal(""), "--");
  EXPECT_EQ(data.DataUniversal("05"), "--05");
  EXPECT_EQ(data.DataUniversal("05/03/2008 14:07:09"), "2008-03-05");
  EXPECT_EQ(data.DataUniversal("abcdefghij"), "ghij-de-ab");
}

TEST(DataUniversal, CountsCharacters) { EXPECT_EQ(data.DataUniversal("éç/ãõ/ñüÿß"), "ñüÿß-ãõ-éç"); }

}  // namespace
}  // namespace pelm
