// Serial numbers, calendar days and moments.
#include "pelm/date.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "pelm/error.h"
#include "platform/value/expect_error.h"

namespace pelm {

void PrintTo(const CivilTime& t, std::ostream* out) {
  *out << t.year << '-' << t.month << '-' << t.day << ' ' << t.hour << ':' << t.minute << ':'
       << t.second;
}

namespace {

constexpr double kFirstDay = -657434;
constexpr double kLastDay = 2958465;

CivilTime civil(double serial) { return Date::from_serial(serial).civil(); }

TEST(Date, BeginsOnThe30thOfDecember1899) {
  EXPECT_EQ(Date().serial(), 0.0);
  EXPECT_EQ(Date().civil(), CivilTime({1899, 12, 30, 0, 0, 0}));
  EXPECT_EQ(civil(1), CivilTime({1899, 12, 31}));
  EXPECT_EQ(civil(kFirstDay), CivilTime({100, 1, 1}));
  EXPECT_EQ(civil(kLastDay), CivilTime({9999, 12, 31}));
}

// The calendar counted by hand, one day after the other, against the library's.
TEST(Date, EveryDayOf100To9999HasItsSerialAndBack) {
  constexpr int kLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  double serial = kFirstDay;
  int weekday = 6;  // 1 January 100 was a Friday
  int wrong = 0;
  for (CivilTime t{100, 1, 1}; t.year <= 9999; ++t.year) {
    const bool leap = (t.year % 4 == 0 && t.year % 100 != 0) || t.year % 400 == 0;
    for (t.month = 1; t.month <= 12; ++t.month) {
      const int length = kLengths[t.month - 1] + (t.month == 2 && leap ? 1 : 0);
      for (t.day = 1; t.day <= length; ++t.day, ++serial, weekday = weekday % 7 + 1) {
        const Date d = Date::from_civil(t);
        wrong += d.serial() != serial || d.civil() != t || d.weekday() != weekday ? 1 : 0;
      }
    }
  }
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(serial, kLastDay + 1);
}

TEST(Date, EverySecondOfADaySurvivesFarFromDayZero) {
  for (const CivilTime day :
       {CivilTime{100, 1, 1}, CivilTime{1899, 12, 29}, CivilTime{1899, 12, 30},
        CivilTime{2008, 3, 5}, CivilTime{9999, 12, 31}}) {
    int wrong = 0;
    for (int second = 0; second < 86400; ++second) {
      CivilTime t = day;
      t.hour = second / 3600;
      t.minute = second / 60 % 60;
      t.second = second % 60;
      wrong += Date::from_civil(t).civil() != t ? 1 : 0;
    }
    EXPECT_EQ(wrong, 0) << day.year;
  }
}

TEST(Date, FractionsCountForwardBeforeDayZeroToo) {
  EXPECT_EQ(civil(-1.25), CivilTime({1899, 12, 29, 6, 0, 0}));
  EXPECT_EQ(civil(-0.25), CivilTime({1899, 12, 30, 6, 0, 0}));
  EXPECT_EQ(civil(0.25), CivilTime({1899, 12, 30, 6, 0, 0}));
  EXPECT_EQ(Date::from_civil({1899, 12, 29, 6, 0, 0}).serial(), -1.25);
  EXPECT_EQ(Date::from_civil({1899, 12, 30, 6, 0, 0}).serial(), 0.25);
}

TEST(Date, RoundsToTheNearestSecond) {
  constexpr double kSecond = 1.0 / 86400;
  EXPECT_EQ(civil(39512 + 52200 * kSecond - 1e-9), CivilTime({2008, 3, 5, 14, 30, 0}));
  EXPECT_EQ(civil(39512 + 52200.4 * kSecond), CivilTime({2008, 3, 5, 14, 30, 0}));
  EXPECT_EQ(civil(39512 + 52200.6 * kSecond), CivilTime({2008, 3, 5, 14, 30, 1}));
  EXPECT_EQ(civil(39512.9999999), CivilTime({2008, 3, 6, 0, 0, 0}));
  EXPECT_EQ(civil(-1.9999999), CivilTime({1899, 12, 30, 0, 0, 0}));
}

TEST(Date, RoundingNeverLeavesTheYear9999) {
  EXPECT_EQ(civil(kLastDay + 0.9999999), CivilTime({9999, 12, 31, 23, 59, 59}));
}

TEST(Date, WeekdayIsOfTheDayThatCivilShows) {
  EXPECT_EQ(Date::from_civil({2008, 3, 5}).weekday(), 4);
  EXPECT_EQ(Date::from_serial(39512.9999999).weekday(), 5);
  EXPECT_EQ(Date().weekday(), 7);
  EXPECT_EQ(Date::from_serial(-1).weekday(), 6);
}

TEST(Date, SerialsOutsideTheCalendarOverflow) {
  EXPECT_EQ(Date::from_serial(kFirstDay - 0.5).serial(), kFirstDay - 0.5);  // noon of the first day
  EXPECT_EQ(Date::from_serial(kLastDay + 0.5).serial(), kLastDay + 0.5);
  EXPECT_ERROR(6, Date::from_serial(kFirstDay - 1));
  EXPECT_ERROR(6, Date::from_serial(kLastDay + 1));
  EXPECT_ERROR(6, Date::from_serial(1e300));
  EXPECT_ERROR(6, Date::from_serial(std::numeric_limits<double>::infinity()));
  EXPECT_ERROR(6, Date::from_serial(std::nan("")));
}

TEST(Date, InvalidDaysAndTimesAreInvalidCalls) {
  const CivilTime good{2008, 2, 29, 23, 59, 59};
  EXPECT_TRUE(is_valid(good));
  const auto changed = [&](int CivilTime::*part, int value) {
    CivilTime t = good;
    t.*part = value;
    return t;
  };
  for (const CivilTime& t :
       {changed(&CivilTime::year, 99), changed(&CivilTime::year, 10000),
        changed(&CivilTime::year, 2007), changed(&CivilTime::year, 2100),
        changed(&CivilTime::month, 0), changed(&CivilTime::month, 13), changed(&CivilTime::day, 0),
        changed(&CivilTime::day, 30), changed(&CivilTime::day, 32), changed(&CivilTime::day, -1),
        changed(&CivilTime::day, 256 + 29), changed(&CivilTime::hour, -1),
        changed(&CivilTime::hour, 24), changed(&CivilTime::minute, -1),
        changed(&CivilTime::minute, 60), changed(&CivilTime::second, -1),
        changed(&CivilTime::second, 60)}) {
    EXPECT_FALSE(is_valid(t)) << testing::PrintToString(t);
    EXPECT_ERROR(5, Date::from_civil(t)) << testing::PrintToString(t);
  }
}

TEST(Date, ComparesByMoment) {
  const auto at = [](double serial) { return Date::from_serial(serial); };
  EXPECT_EQ(at(-0.25), at(0.25));
  EXPECT_EQ(at(-0.0), at(0.0));
  EXPECT_LT(at(-1.25), at(-1.5));  // 06:00 before 12:00 of the same day
  EXPECT_LT(at(-1.99), at(0));
  EXPECT_LT(at(-2), at(-1.75));
  EXPECT_GT(at(1.5), at(1.25));
  EXPECT_NE(at(1.5), at(1.25));
  EXPECT_NE(at(39512.5), at(39512.50000001));  // the same second is not the same moment
}

}  // namespace
}  // namespace pelm
