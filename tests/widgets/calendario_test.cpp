// The month calendar: every shape of month, what a query string shows, where the links lead.
#include "pelm/calendario.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "pelm/cmain.h"
#include "pelm/error.h"
#include "platform/value/case_table.h"
#include "platform/value/clock.h"
#include "platform/value/expect_error.h"
#include "support/approved.h"
#include "support/page_in_memory.h"

namespace pelm {
namespace {

constexpr std::string_view kBody =
    "<body style=\"font-size: 1pt;\" topmargin=2 bottommargin=2 rightmargin=2 leftmargin=2>";

std::string calendar_of(std::string_view query_string) {
  const auto page = test::page_asked_for(query_string);
  Calendario calendar;
  calendar.OnStartPage(page);
  calendar.ScriptName("calendario.page");
  calendar.ShowCalendar();
  return page->Response->body();
}

std::string between(std::string_view html, std::string_view before, std::string_view after,
                    std::size_t from = 0) {
  const std::size_t start = html.find(before, from);
  if (start == std::string_view::npos) return "(none)";
  const std::size_t begin = start + before.size();
  return std::string(html.substr(begin, html.find(after, begin) - begin));
}

std::string marked_day(std::string_view html) {
  return between(html, "<TD class=Today><a class=Today href=javascript:Choose('", "');>");
}

std::string previous_link(std::string_view html) {
  return between(html, "ALIGN=right><A class=nav HREF=", ">&lt;&lt;</A>");
}

std::string next_link(std::string_view html) {
  return between(html, "ALIGN=left ><A class=nav HREF=", ">&gt;&gt;</A>");
}

std::string heading(std::string_view html) { return between(html, "ALIGN=center>", "</TD>"); }

std::size_t count(std::string_view text, std::string_view piece) {
  std::size_t found = 0;
  for (auto at = text.find(piece); at != text.npos; at = text.find(piece, at + 1)) ++found;
  return found;
}

class ShowCalendarTest : public testing::Test {
 protected:
  const ScopedClock now_{Date::from_civil({2008, 7, 15, 14, 7, 9})};
};

struct Shape {
  std::string_view name;  ///< of the approved file
  std::string_view date;
};

class ShapeOfMonth : public testing::TestWithParam<Shape> {};

TEST_P(ShapeOfMonth, IsWrittenAsApproved) {
  const std::string html = calendar_of("campo=dtinicio&date=" + std::string(GetParam().date));
  EXPECT_TRUE(test::matches_approved(
      html, "widgets/approved/calendario/" + std::string(GetParam().name) + ".html"));
}

constexpr Shape kShapes[] = {
    {"28_days_from_sunday", "01/02/2009"},    {"28_days_from_monday", "28/02/2010"},
    {"28_days_from_tuesday", "14/02/2011"},   {"28_days_from_wednesday", "01/02/2017"},
    {"28_days_from_thursday", "28/02/2018"},  {"28_days_from_friday", "14/02/2013"},
    {"28_days_from_saturday", "01/02/2014"},  {"29_days_from_sunday", "29/02/2032"},
    {"29_days_from_monday", "14/02/2016"},    {"29_days_from_tuesday", "01/02/2028"},
    {"29_days_from_wednesday", "29/02/2012"}, {"29_days_from_thursday", "14/02/2024"},
    {"29_days_from_friday", "01/02/2008"},    {"29_days_from_saturday", "29/02/2020"},
    {"30_days_from_sunday", "15/06/2008"},    {"30_days_from_monday", "01/09/2008"},
    {"30_days_from_tuesday", "30/04/2008"},   {"30_days_from_wednesday", "15/04/2009"},
    {"30_days_from_thursday", "01/04/2010"},  {"30_days_from_friday", "30/04/2011"},
    {"30_days_from_saturday", "15/11/2008"},  {"31_days_from_sunday", "01/03/2009"},
    {"31_days_from_monday", "31/12/2008"},    {"31_days_from_tuesday", "15/01/2008"},
    {"31_days_from_wednesday", "01/10/2008"}, {"31_days_from_thursday", "31/05/2008"},
    {"31_days_from_friday", "15/08/2008"},    {"31_days_from_saturday", "01/03/2008"},
};

INSTANTIATE_TEST_SUITE_P(ShowCalendar, ShapeOfMonth, testing::ValuesIn(kShapes),
                         [](const auto& shape) { return std::string(shape.param.name); });

// Against the library's own calendar, which shares no code with ours.
TEST_F(ShowCalendarTest, EveryMonthOfFourCenturiesHasItsDaysInTheirColumns) {
  using namespace std::chrono;
  for (year_month month = year(1800) / January; month < year(2200) / January; month += months(1)) {
    const auto length = static_cast<unsigned>((month / last).day());
    const unsigned leading = weekday(sys_days(month / 1)).c_encoding();
    const unsigned rows = (leading + length + 6) / 7;
    const std::string date = std::to_string(static_cast<int>(month.year())) + "-" +
                             std::to_string(static_cast<unsigned>(month.month())) + "-" +
                             std::to_string(length);

    const std::string html = calendar_of("date=" + date);
    const std::string_view days =
        std::string_view(html).substr(html.find("</TR>\t<TR>\r\n") + sizeof("</TR>") - 1);
    ASSERT_EQ(count(days, "Choose('"), length) << date;
    ASSERT_EQ(count(days, "\t<TR>\r\n"), rows) << date;
    ASSERT_EQ(count(days, "\t</TR>\r\n"), rows) << date;
    ASSERT_EQ(count(days, "&nbsp;"), rows * 7 - length) << date;
    ASSERT_EQ(count(days.substr(0, days.find("Choose('01/")), "&nbsp;"), leading) << date;
    ASSERT_EQ(marked_day(html).substr(0, 2), std::to_string(length)) << date;
  }
}

struct Asked {
  std::string_view behaviour;
  std::string_view query_string;
  std::string_view marked;
  std::string_view previous;
  std::string_view next;
};

constexpr Asked kAsked[] = {
    {"NothingShowsToday", "", "15/07/2008", "15/06/2008", "15/08/2008"},
    {"ADate", "date=05/03/2008", "05/03/2008", "05/02/2008", "05/04/2008"},
    {"AnEncodedDate", "date=05%2F03%2F2008", "05/03/2008", "05/02/2008", "05/04/2008"},
    {"ADateWithDashes", "date=5-3-2008", "05/03/2008", "05/02/2008", "05/04/2008"},
    {"ADateYearFirst", "date=2008-03-05", "05/03/2008", "05/02/2008", "05/04/2008"},
    {"ADateMonthFirstWhereDayFirstFails", "date=03/31/2008", "31/03/2008", "29/02/2008",
     "30/04/2008"},
    {"ADayAndMonthOfThisYear", "date=5/3", "05/03/2008", "05/02/2008", "05/04/2008"},
    {"AMonthByItsName", "date=5+de+mar%C3%A7o+de+2008", "05/03/2008", "05/02/2008", "05/04/2008"},
    {"ATwoDigitYear", "date=05/03/30", "05/03/1930", "05/02/1930", "05/04/1930"},
    {"NamesWithoutCase", "DATE=05/03/2008", "05/03/2008", "05/02/2008", "05/04/2008"},
    {"ATimeGoesIntoTheLinks", "date=05/03/2008+14:07", "05/03/2008", "05/02/2008 14:07:00",
     "05/04/2008 14:07:00"},
    {"ATimeAloneIsOnDayZero", "date=14:07", "30/12/1899", "30/11/1899 14:07:00",
     "30/01/1900 14:07:00"},
    {"DayZeroIsNotADateInTheLinkToIt", "date=30/11/1899", "30/11/1899", "30/10/1899", "00:00:00"},
    {"ANumberIsNoDate", "date=39512", "15/07/2008", "15/06/2008", "15/08/2008"},
    {"ATextIsNoDate", "date=hoje", "15/07/2008", "15/06/2008", "15/08/2008"},
    {"ADayThatIsNotThereIsNoDate", "date=31/02/2008", "15/07/2008", "15/06/2008", "15/08/2008"},
    {"TwoDatesAreNone", "date=05/03/2008&date=06/03/2008", "15/07/2008", "15/06/2008",
     "15/08/2008"},
    {"MonthDayAndYearAreReadDayFirst", "month=3&day=5&year=2008", "03/05/2008", "03/04/2008",
     "03/06/2008"},
    {"MonthDayAndYearWhereTheDayIsNoMonth", "month=3&day=31&year=2008", "31/03/2008", "29/02/2008",
     "30/04/2008"},
    {"MonthDayAndYearInAnyOrder", "year=2008&day=31&month=3", "31/03/2008", "29/02/2008",
     "30/04/2008"},
    {"TheDateComesFirst", "month=3&day=31&year=2008&date=01/01/2001", "01/01/2001", "01/12/2000",
     "01/02/2001"},
    {"MonthDayAndYearAfterADateThatIsNone", "date=x&month=3&day=31&year=2008", "31/03/2008",
     "29/02/2008", "30/04/2008"},
    {"ANamedMonth", "month=mar&day=5&year=2008", "05/03/2008", "05/02/2008", "05/04/2008"},
    {"AMonthWithoutADay", "month=3&year=2008", "15/07/2008", "15/06/2008", "15/08/2008"},
    {"AMonthAndADayWithoutAYear", "month=3&day=5", "15/07/2008", "15/06/2008", "15/08/2008"},
};

class QueryString : public testing::TestWithParam<Asked> {
 protected:
  const ScopedClock now_{Date::from_civil({2008, 7, 15, 14, 7, 9})};
};

TEST_P(QueryString, ShowsItsMonth) {
  const std::string html = calendar_of(GetParam().query_string);
  const std::string address = "calendario.page?campo=&date=";
  EXPECT_EQ(marked_day(html), GetParam().marked);
  EXPECT_EQ(previous_link(html), address + std::string(GetParam().previous));
  EXPECT_EQ(next_link(html), address + std::string(GetParam().next));
}

INSTANTIATE_TEST_SUITE_P(ShowCalendar, QueryString, testing::ValuesIn(kAsked),
                         [](const auto& asked) { return std::string(asked.param.behaviour); });

TEST_F(ShowCalendarTest, MonthDayAndYearAreReadAsThePlatformReadsThem) {
  const cases::Table table = cases::read_table(std::string(PELM_TESTS_DIR) +
                                               "/platform/value/cases/calendar_month_day_year.tsv");
  ASSERT_EQ(table.columns, (std::vector<std::string>{"function", "input", "CDate", "IsDate"}));
  ASSERT_FALSE(table.rows.empty());
  for (const cases::Row& row : table.rows) {
    const std::vector<std::string> parts = cases::split(row.fields[1], "-");
    ASSERT_EQ(parts.size(), 3u) << "line " << row.line;
    const std::string query = "month=" + parts[0] + "&day=" + parts[1] + "&year=" + parts[2];
    if (row.fields[2].substr(0, 7) == "0100-01") {  // no month before it
      EXPECT_ERROR(error_number::kInvalidCall, calendar_of(query));
      continue;
    }
    std::string expected = "15/07/2008";
    if (row.fields[3] == "True") {
      const std::vector<std::string> date = cases::split(row.fields[2], "-");
      ASSERT_EQ(date.size(), 3u) << "line " << row.line;
      expected = date[2] + "/" + date[1] + "/" + std::to_string(std::stoi(date[0]));
    }
    EXPECT_EQ(marked_day(calendar_of(query)), expected) << row.fields[1];
  }
}

TEST_F(ShowCalendarTest, LinksGoToTheMonthsBesideAtTheEndsOfMonthsAndYears) {
  const struct {
    std::string_view shown, previous, next;
  } kLinks[] = {
      {"31/01/2008", "31/12/2007", "29/02/2008"}, {"30/01/2008", "30/12/2007", "29/02/2008"},
      {"29/01/2008", "29/12/2007", "29/02/2008"}, {"28/01/2008", "28/12/2007", "28/02/2008"},
      {"31/01/2007", "31/12/2006", "28/02/2007"}, {"29/02/2008", "29/01/2008", "29/03/2008"},
      {"28/02/2007", "28/01/2007", "28/03/2007"}, {"31/03/2008", "29/02/2008", "30/04/2008"},
      {"31/03/2007", "28/02/2007", "30/04/2007"}, {"30/04/2008", "30/03/2008", "30/05/2008"},
      {"31/05/2008", "30/04/2008", "30/06/2008"}, {"31/07/2008", "30/06/2008", "31/08/2008"},
      {"31/08/2008", "31/07/2008", "30/09/2008"}, {"31/10/2008", "30/09/2008", "30/11/2008"},
      {"01/12/2008", "01/11/2008", "01/01/2009"}, {"31/12/2008", "30/11/2008", "31/01/2009"},
      {"01/01/2009", "01/12/2008", "01/02/2009"}, {"31/12/1999", "30/11/1999", "31/01/2000"},
      {"29/02/2000", "29/01/2000", "29/03/2000"}, {"31/01/1900", "31/12/1899", "28/02/1900"},
      {"31/01/2100", "31/12/2099", "28/02/2100"},
  };
  for (const auto& [shown, previous, next] : kLinks) {
    const std::string html = calendar_of("campo=c&date=" + std::string(shown));
    EXPECT_EQ(previous_link(html), "calendario.page?campo=c&date=" + std::string(previous));
    EXPECT_EQ(next_link(html), "calendario.page?campo=c&date=" + std::string(next)) << shown;
  }
}

TEST_F(ShowCalendarTest, TheHeadingIsTheMonthInFullAndTheYear) {
  constexpr std::string_view kNames[] = {"janeiro",  "fevereiro", "março",    "abril",
                                         "maio",     "junho",     "julho",    "agosto",
                                         "setembro", "outubro",   "novembro", "dezembro"};
  int month = 0;
  for (const std::string_view name : kNames) {
    const std::string html = calendar_of("date=2008-" + std::to_string(++month) + "-1");
    EXPECT_EQ(heading(html), std::string(name) + " / 2008");
  }
  EXPECT_EQ(heading(calendar_of("date=1/2/987")), "fevereiro / 987");
}

TEST_F(ShowCalendarTest, TheYearOfADayIsNotPadded) {
  EXPECT_EQ(marked_day(calendar_of("date=1/2/987")), "01/02/987");
}

TEST_F(ShowCalendarTest, AddressAndFieldAreNeitherQuotedNorEncoded) {
  const auto page = test::page_asked_for("campo=a%22%3Eb%20c%26d&date=05/03/2008");
  Calendario calendar;
  calendar.OnStartPage(page);
  EXPECT_EQ(calendar.ScriptName(), "");
  calendar.ScriptName("cal endário.asp");
  EXPECT_EQ(calendar.ScriptName(), "cal endário.asp");
  calendar.ShowCalendar();
  EXPECT_EQ(previous_link(page->Response->body()),
            "cal endário.asp?campo=a\">b c&d&date=05/02/2008");
}

TEST_F(ShowCalendarTest, ASecondCallWritesASecondCalendar) {
  const auto page = test::page_asked_for("date=05/03/2008");
  Calendario calendar;
  calendar.OnStartPage(page);
  calendar.ShowCalendar();
  const std::string once = page->Response->body();
  calendar.ShowCalendar();
  EXPECT_EQ(page->Response->body(), once + once);
}

TEST_F(ShowCalendarTest, IsWrittenPartByPart) {
  std::vector<std::string> pieces;
  const auto page = test::page_asked_for("date=05/03/2008");
  page->Response = std::make_shared<page::Response>(
      [&](const page::Response&, std::string_view piece) { pieces.emplace_back(piece); });
  page->Response->Buffer(false);
  Calendario calendar;
  calendar.OnStartPage(page);
  calendar.ShowCalendar();
  using testing::AllOf, testing::EndsWith, testing::StartsWith;
  ASSERT_GE(pieces.size(), 6U);
  EXPECT_EQ(pieces[0], kBody);
  EXPECT_THAT(pieces[1], AllOf(StartsWith("<TABLE "), EndsWith("</TABLE>")));
  EXPECT_EQ(pieces[2], "<br>");
  EXPECT_THAT(pieces[3], AllOf(StartsWith("<TABLE "), EndsWith("</TR>")));
  EXPECT_THAT(pieces[4], StartsWith("\t<TR>\r\n"));
  EXPECT_EQ(pieces.back(), "</body>\r\n");
}

TEST_F(ShowCalendarTest, TheFirstMonthOfAllHasNoneBeforeAndTheLastNoneAfter) {
  const auto first = test::page_asked_for("date=15/1/100");
  Calendario calendar;
  calendar.OnStartPage(first);
  EXPECT_ERROR(error_number::kInvalidCall, calendar.ShowCalendar());
  EXPECT_EQ(first->Response->body(), kBody) << "what was written before the failure stays";
  EXPECT_EQ(heading(calendar_of("date=15/2/100")), "fevereiro / 100");

  const auto last = test::page_asked_for("date=15/12/9999");
  calendar.OnStartPage(last);
  EXPECT_ERROR(error_number::kInvalidCall, calendar.ShowCalendar());
  EXPECT_EQ(last->Response->body(), "") << "its days are counted from the month after";
  EXPECT_EQ(heading(calendar_of("date=15/11/9999")), "novembro / 9999");
}

TEST_F(ShowCalendarTest, OutsideAPageItFails) {
  Calendario calendar;
  EXPECT_ERROR(error_number::kObjectNotSet, calendar.ShowCalendar());
  EXPECT_ERROR(error_number::kObjectNotSet, calendar.OnStartPage(nullptr));
  const auto page = test::page_asked_for();
  calendar.OnStartPage(page);
  calendar.OnEndPage();
  EXPECT_ERROR(error_number::kObjectNotSet, calendar.ShowCalendar());
  EXPECT_EQ(page->Response->body(), "");
}

TEST_F(ShowCalendarTest, AnErrorKeepsItsSource) {
  const auto page = test::page_asked_for("date=15/12/9999");
  Calendario calendar;
  calendar.OnStartPage(page);
  try {
    calendar.ShowCalendar();
    FAIL() << "the month after December 9999 was shown";
  } catch (const Error& e) {
    EXPECT_EQ(e.source(), kProjectSource);
  }
}

}  // namespace
}  // namespace pelm
