// The month calendar.
#include "pelm/calendario.h"

#include <optional>

#include "frame/mod_principal.h"
#include "platform/page/request.h"
#include "platform/page/response.h"
#include "platform/value/clock.h"
#include "platform/value/date_text.h"
#include "platform/value/formatting.h"

namespace pelm {
namespace {

constexpr std::string_view kBody =
    "<body style=\"font-size: 1pt;\" topmargin=2 bottommargin=2 rightmargin=2 leftmargin=2>";
constexpr std::string_view kNavigationStart =
    "<TABLE class=Calendar CELLSPACING=0 CELLPADDING=0><TR>";
constexpr std::string_view kDaysStart =
    "<TABLE class=Calendar CELLSPACING=0 CELLPADDING=2><TR>"
    "<TD class=DayOfTheweek>D</TD><TD class=DayOfTheweek>S</TD><TD class=DayOfTheweek>T</TD>"
    "<TD class=DayOfTheweek>Q</TD><TD class=DayOfTheweek>Q</TD><TD class=DayOfTheweek>S</TD>"
    "<TD class=DayOfTheweek>S</TD></TR>";
constexpr std::string_view kRowStart = "\t<TR>\r\n";
constexpr std::string_view kRowEnd = "\t</TR>\r\n";
constexpr std::string_view kBlankDay = "\t\t<TD class=Day>&nbsp;</TD>\r\n";
constexpr int kFirstColumn = 1;
constexpr int kLastColumn = 7;
constexpr std::size_t kUsualSize = 4096;

/// How a day is shown, before the date that its link chooses and after its number.
struct DayForm {
  std::string_view before_date;
  std::string_view after_number;
};
constexpr DayForm kMarkedDay = {"\t\t<TD class=Today><a class=Today href=javascript:Choose('",
                                "</a></TD>\r\n"};
// kept: opened by "<a", closed by "</A>"
constexpr DayForm kOtherDay = {"\t\t<TD class=Day><a href=javascript:Choose('", "</A></TD>\r\n"};

struct Month {
  CivilTime shown;
  int first_weekday;
  int days;

  /// Raises invalid call (5) for December 9999: the month after it is counted from.
  explicit Month(Date d) : shown(d.civil()) {
    const Date first = Date::from_civil({shown.year, shown.month, 1, 0, 0, 0});
    first_weekday = first.weekday();
    days = static_cast<int>(add_months(first, 1).serial() - first.serial());
  }
};

void append_two_digits(std::string& html, int number) {
  html += static_cast<char>('0' + number / 10);
  html += static_cast<char>('0' + number % 10);
}

void append_number(std::string& html, int number) {
  if (number < 10) {
    html += static_cast<char>('0' + number);
  } else {
    append_two_digits(html, number);
  }
}

void append_days(std::string& html, const Month& month) {
  std::string rest_of_date = "/";
  append_two_digits(rest_of_date, month.shown.month);
  rest_of_date += "/" + std::to_string(month.shown.year) + "');>";

  int column = kFirstColumn;
  if (month.first_weekday != kFirstColumn) html += kRowStart;
  for (; column < month.first_weekday; ++column) html += kBlankDay;

  for (int day = 1; day <= month.days; ++day) {
    if (column == kFirstColumn) html += kRowStart;
    // kept: marked is the day of the date shown, which is today only when no date was asked for
    const DayForm& form = day == month.shown.day ? kMarkedDay : kOtherDay;
    html += form.before_date;
    append_two_digits(html, day);
    html += rest_of_date;
    append_number(html, day);
    html += form.after_number;
    if (column == kLastColumn) {
      html += kRowEnd;
      column = 0;
    }
    ++column;
  }

  if (column != kFirstColumn) {
    for (; column <= kLastColumn; ++column) html += kBlankDay;
    html += kRowEnd;
  }
}

}  // namespace

Calendario::Calendario() { frame::start_thread(); }

std::string Calendario::query(std::string_view name) const {
  return request().QueryString->Item(name).value_or(std::string());
}

Date Calendario::shown_date() const {
  if (const std::optional<Date> date = read_date(query("date"))) return *date;
  // kept: joined month first, but read day first
  const std::string parts = query("month") + "-" + query("day") + "-" + query("year");
  if (const std::optional<Date> date = read_date(parts)) return *date;
  return clock_today();
}

std::string Calendario::link_to(Date month) const {
  // kept: neither quoted nor encoded; a date with a time has a blank in it
  return "<A class=nav HREF=" + ScriptName_ + "?campo=" + query("campo") +
         "&date=" + date_text(month) + ">";
}

void Calendario::ShowCalendar() {
  const Date shown = shown_date();
  const Month month(shown);
  response().Write(kBody);

  std::string html;
  html.reserve(kUsualSize);
  html += kNavigationStart;
  html += "<TD class=nav ALIGN=right>" + link_to(add_months(shown, -1)) + "&lt;&lt;</A></TD>";
  html += "<TD class=nav ALIGN=center>";
  html += month_name(month.shown.month);
  html += " / " + std::to_string(month.shown.year) + "</TD>";
  html += "<TD class=nav ALIGN=left >" + link_to(add_months(shown, 1)) + "&gt;&gt;</A></TD>";
  html += "</TR></TABLE><br>";
  html += kDaysStart;
  append_days(html, month);
  html += "</body>\r\n";  // kept: the table of days is not closed
  response().Write(html);
}

}  // namespace pelm
