// The month calendar.
#include "pelm/calendario.h"

#include <array>
#include <cstddef>
#include <cstring>
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
constexpr int kColumns = 7;
constexpr int kMostRows = 6;

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

/// The rows of days, written into a place that every month fits: nothing grows while they are.
class Days {
 public:
  explicit Days(const Month& month) {
    const std::string rest_of_date = rest_of(month.shown);
    int column = 1;
    if (month.first_weekday != 1) put(kRowStart);
    for (; column < month.first_weekday; ++column) put(kBlankDay);

    for (int day = 1; day <= month.days; ++day) {
      if (column == 1) put(kRowStart);
      // kept: marked is the day of the date shown, which is today only when no date was asked for
      if (day == month.shown.day) {
        put_day<kMarkedDay>(day, rest_of_date);
      } else {
        put_day<kOtherDay>(day, rest_of_date);
      }
      if (column == kColumns) {
        put(kRowEnd);
        column = 0;
      }
      ++column;
    }

    if (column != 1) {
      for (; column <= kColumns; ++column) put(kBlankDay);
      put(kRowEnd);
    }
  }

  std::string_view text() const { return {place_.data(), size_}; }

 private:
  static constexpr std::string_view kLongestRest = "/12/9999');>";
  static constexpr std::size_t kLongestDay =
      kMarkedDay.before_date.size() + 4 + kLongestRest.size() + kMarkedDay.after_number.size();
  static constexpr std::size_t kMost =
      kMostRows * (kRowStart.size() + kColumns * kLongestDay + kRowEnd.size());
  static_assert(kBlankDay.size() <= kLongestDay &&
                kOtherDay.before_date.size() + kOtherDay.after_number.size() <=
                    kMarkedDay.before_date.size() + kMarkedDay.after_number.size());

  /// Of every date of the month, what follows the day.
  static std::string rest_of(const CivilTime& t) {
    return (t.month < 10 ? "/0" : "/") + std::to_string(t.month) + "/" + std::to_string(t.year) +
           "');>";
  }
  template <const DayForm& form>  // lengths that the compiler knows: a copy is a few moves
  void put_day(int day, std::string_view rest_of_date) {
    put(form.before_date);
    put_digit(day / 10);
    put_digit(day % 10);
    put(rest_of_date);
    if (day >= 10) put_digit(day / 10);
    put_digit(day % 10);
    put(form.after_number);
  }
  void put(std::string_view piece) {
    std::memcpy(place_.data() + size_, piece.data(), piece.size());
    size_ += piece.size();
  }
  void put_digit(int digit) { place_[size_++] = static_cast<char>('0' + digit); }

  std::array<char, kMost> place_;
  std::size_t size_ = 0;
};

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

void Calendario::ShowCalendar() {
  const Date shown = shown_date();
  const Month month(shown);
  response().Write(kBody);

  // kept: neither quoted nor encoded; a date with a time has a blank in it
  const std::string link =
      "<A class=nav HREF=" + ScriptName_ + "?campo=" + query("campo") + "&date=";
  std::string navigation(kNavigationStart);
  navigation += "<TD class=nav ALIGN=right>";
  navigation += link;
  navigation += date_text(add_months(shown, -1));
  navigation += ">&lt;&lt;</A></TD><TD class=nav ALIGN=center>";
  navigation += month_name(month.shown.month);
  navigation += " / ";
  navigation += std::to_string(month.shown.year);
  navigation += "</TD><TD class=nav ALIGN=left >";
  navigation += link;
  navigation += date_text(add_months(shown, 1));
  navigation += ">&gt;&gt;</A></TD></TR></TABLE>";
  response().Write(navigation);
  response().Write("<br>");

  response().Write(kDaysStart);
  response().Write(Days(month).text());
  response().Write("</body>\r\n");  // kept: the table of days is not closed
}

}  // namespace pelm
