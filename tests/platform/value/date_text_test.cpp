// Dates as texts, beyond what the tables show.
#include "platform/value/date_text.h"

#include <gtest/gtest.h>

#include "platform/value/clock.h"

namespace pelm {
namespace {

constexpr const char* kNoDate = "no date";

std::string read(std::string_view s) {
  const auto d = read_date(s);
  if (!d) return kNoDate;
  const CivilTime t = d->civil();
  std::string out =
      std::to_string(t.year) + "-" + std::to_string(t.month) + "-" + std::to_string(t.day);
  if (t.hour == 0 && t.minute == 0 && t.second == 0) return out;
  return out + " " + std::to_string(t.hour) + ":" + std::to_string(t.minute) + ":" +
         std::to_string(t.second);
}

struct Case {
  std::string_view text;
  const char* date;
};

class ReadDate : public testing::Test {
 protected:
  static void expect(std::initializer_list<Case> cases) {
    for (const auto& [text, date] : cases) EXPECT_EQ(read(text), date) << text;
  }

  ScopedClock clock_{Date::from_civil({2008, 7, 1})};
};

TEST_F(ReadDate, NamesAreTheMonthsInFullOrTheirThreeLetters) {
  expect({{"5 jan 2008", "2008-1-5"},
          {"5 fevereiro 2008", "2008-2-5"},
          {"5 MAR 2008", "2008-3-5"},
          {"5 abril 2008", "2008-4-5"},
          {"5 mai 2008", "2008-5-5"},
          {"5 junho 2008", "2008-6-5"},
          {"5 jul 2008", "2008-7-5"},
          {"5 agosto 2008", "2008-8-5"},
          {"5 set 2008", "2008-9-5"},
          {"5 outubro 2008", "2008-10-5"},
          {"5 nov 2008", "2008-11-5"},
          {"5 Dezembro 2008", "2008-12-5"},
          {"5 janei 2008", kNoDate},
          {"5 feb 2008", kNoDate},
          {"5 august 2008", kNoDate},
          {"5 marco 2008", kNoDate},
          {"jan fev 2008", kNoDate},
          {"jan 5 fev 2008", kNoDate}});
}

TEST_F(ReadDate, ANameKeepsItsPlaceInTheOrders) {
  expect({{"5 mar 8", "2008-3-5"},
          {"mar 5 8", "2008-3-5"},
          {"8 5 mar", "2008-3-5"},
          {"2008 mar 5", "2008-3-5"},
          {"31 mar 8", "2008-3-31"},
          {"45 mar 8", "1945-3-8"},
          {"mar 2008 5", kNoDate},
          {"5 2008 mar", kNoDate},
          {"5 mar 8 9", kNoDate}});
}

TEST_F(ReadDate, ALongDateMayLinkItsPartsWithDe) {
  expect({{"5 de março de 2008", "2008-3-5"},
          {"5 DE março DE 2008 14:07", "2008-3-5 14:7:0"},
          {"5 de março", "2008-3-5"},
          {"março de 2008", "2008-3-1"},
          {"5 de março 2008", "2008-3-5"},
          {"de março de 2008", kNoDate},
          {"5 de de março", kNoDate},
          {"5 março de", kNoDate},
          {"5 demarço", kNoDate},
          {"5 de 3 de 2008", kNoDate},
          {"5 de", kNoDate},
          {"5/de março", kNoDate},
          {"segunda-feira, 5 de março de 2008", kNoDate}});
}

TEST_F(ReadDate, BlanksAroundASeparatorDoNotCount) {
  expect({{" 5/3/2008 ", "2008-3-5"},
          {"5 / 3 / 2008", "2008-3-5"},
          {"5,3,2008", "2008-3-5"},
          {"5  3\t2008", "2008-3-5"},
          {"5\xC2\xA0mar\xC2\xA0"
           "2008",
           "2008-3-5"},
          {"5/3/2008 14 : 07", "2008-3-5 14:7:0"},
          {"5mar2008", "2008-3-5"},
          {"5/3-2008", "2008-3-5"},
          {"5//3/2008", kNoDate},
          {"5/ /3/2008", kNoDate},
          {"5,,3,2008", kNoDate},
          {"/5/3/2008", kNoDate},
          {"5/3/2008/", kNoDate},
          {"5/3/2008 -", kNoDate},
          {", 5/3/2008", kNoDate}});
}

TEST_F(ReadDate, ATimeStandsBeforeAfterOrWithinTheDate) {
  expect({{"5/3/2008 14:07", "2008-3-5 14:7:0"},
          {"14:07 5/3/2008", "2008-3-5 14:7:0"},
          {"5/3/2008,14:07", "2008-3-5 14:7:0"},
          {"5 mar 14:07:09 2008", "2008-3-5 14:7:9"},
          {"1.30", "1899-12-30 1:30:0"},
          {"1.30:15", "1899-12-30 1:30:15"},
          {"1.2.2020", kNoDate},  // a time without a second 2020
          {"14:07 15:08", kNoDate},
          {"5/3/2008 14", kNoDate},
          {"12:60", kNoDate},
          {"12:30:60", kNoDate},
          {"-1:30", kNoDate},
          {"12:30 5", kNoDate},
          {"mar:2008", kNoDate},
          {"12:mar", kNoDate}});
}

TEST_F(ReadDate, HalvesOfTheDayFollowATime) {
  expect({{"12 am 5/3/2008", "2008-3-5"},
          {"12:30 AM", "1899-12-30 0:30:0"},
          {"12:30 PM", "1899-12-30 12:30:0"},
          {"1PM", "1899-12-30 13:0:0"},
          {"0:30 pm", "1899-12-30 12:30:0"},
          {"14:07 PM", "1899-12-30 14:7:0"},
          {"14:07 AM", "1899-12-30 14:7:0"},
          {"5/3/2008 2 pm", "2008-3-5 14:0:0"},
          {"2:07/PM", kNoDate},
          {"PM", kNoDate},
          {"PM 2:07", kNoDate},
          {"2:07 PM PM", kNoDate},
          {"2:07 PM AM", kNoDate},
          {"5/3/2008 mar PM", kNoDate},
          {"24 PM", kNoDate}});
}

TEST_F(ReadDate, TwoDigitYearsLieIn1930To2029) {
  expect({{"1/1/0", "2000-1-1"},
          {"1/1/29", "2029-1-1"},
          {"1/1/30", "1930-1-1"},
          {"1/1/99", "1999-1-1"},
          {"1/1/100", "100-1-1"},
          {"1/1/0008", "2008-1-1"},
          {"1/1/10000", kNoDate},
          {"1/1/99999999999999999999", kNoDate}});
}

TEST_F(ReadDate, WithoutAYearTheClocksCounts) {
  expect({{"29/2", "2008-2-29"}, {"29 fev", "2008-2-29"}, {"fev 29", "2008-2-29"}});
  const ScopedClock later(Date::from_civil({2009, 1, 1}));
  expect({{"28/2", "2009-2-28"}, {"29/2", "2029-2-1"}, {"29 fev", "2029-2-1"}});
}

TEST_F(ReadDate, RefusesEverythingElse) {
  expect({{"", kNoDate},
          {"5", kNoDate},
          {"março", kNoDate},
          {"março 12:30", kNoDate},
          {"5 12:30", kNoDate},
          {"5/3/2008 x", kNoDate},
          {"5/3/2008 \xE9", kNoDate},
          {"5_3_2008", kNoDate},
          {"5/3/2008 1:2:3 4", kNoDate},
          {"1 2 3 4", kNoDate},
          {"1 2 3 4 5 6 7 8 9 10 11 12", kNoDate},
          {"2008-03-05T14:07:09", kNoDate},
          {std::string_view("5/3/2008\0", 9), kNoDate}});
}

// Whatever the platform writes as a date it reads as the same one.
TEST(DateText, ReadsBackEveryDay) {
  for (int serial = -657434; serial <= 2958465; serial += 971) {
    for (const int second : {0, 1, 51429, 86399}) {
      const CivilTime day = Date::from_serial(serial).civil();
      const Date d = Date::from_civil(
          {day.year, day.month, day.day, second / 3600, second / 60 % 60, second % 60});
      const auto back = read_date(date_text(d));
      ASSERT_TRUE(back.has_value()) << date_text(d);
      ASSERT_EQ(*back, d) << date_text(d);
    }
  }
}

TEST(DateText, LeavesOutMidnightAndDayZero) {
  EXPECT_EQ(date_text(Date()), "00:00:00");
  EXPECT_EQ(date_text(Date::from_serial(0.25)), "06:00:00");
  EXPECT_EQ(date_text(Date::from_serial(-0.25)), "06:00:00");
  EXPECT_EQ(date_text(Date::from_serial(-1)), "29/12/1899");
  EXPECT_EQ(date_text(Date::from_serial(0.9999999)), "31/12/1899");
  EXPECT_EQ(date_text(Date::from_civil({999, 3, 5, 0, 0, 1})), "05/03/0999 00:00:01");
}

}  // namespace
}  // namespace pelm
