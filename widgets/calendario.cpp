// The month calendar.
#include "pelm/calendario.h"

#include <array>
#include <chrono>
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
    "<TABLE class=Calendar CELLSPACING=0 CELLPADDING=0><TR><TD class=nav ALIGN=right>";
/// Enough for the navigation beside what the page gave for its two links.
constexpr std::size_t kNavigationRoom = 384;
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
  std::string year;
  int first_weekday;
  int days;

  explicit Month(Date d) : shown(d.civil()), year(std::to_string(shown.year)) {
    first_weekday = (d.weekday() - shown.day % 7 + 7) % 7 + 1;
    const auto last = std::chrono::year(shown.year) /
                      std::chrono::month(static_cast<unsigned>(shown.month)) / std::chrono::last;
    days = static_cast<int>(static_cast<unsigned>(last.day()));
  }
};

/// Both digits of a day or a month.
const char* digits_of(int number) noexcept {
  static constexpr char kDigits[] =
      "0001020304050607080910111213141516171819202122232425262728293031";
  return &kDigits[2 * static_cast<std::size_t>(number)];
}

/// Writes `piece` at `at` and returns where the text goes on. Where the compiler knows the length,
/// it takes a few moves.
char* put(char* at, std::string_view piece) {
  std::memcpy(at, piece.data(), piece.size());
  return at + piece.size();
}

/// A day of one month as it is shown, ready but for its digits.
class Cell {
 public:
  static constexpr std::string_view kLongestRest = "/12/9999');>";
  static constexpr std::size_t kLongest =
      kMarkedDay.before_date.size() + 4 + kLongestRest.size() + kMarkedDay.after_number.size();
  static_assert(kOtherDay.before_date.size() + kOtherDay.after_number.size() <=
                kMarkedDay.before_date.size() + kMarkedDay.after_number.size());

  /// `rest_of_date` is what follows the day in every date of the month.
  Cell(const DayForm& form, std::string_view rest_of_date, std::size_t digits_of_number)
      : date_(form.before_date.size()),
        number_end_(date_ + 2 + rest_of_date.size() + digits_of_number),
        size_(number_end_ + form.after_number.size()) {
    put(text_.data(), form.before_date);
    put(text_.data() + date_ + 2, rest_of_date);
    put(text_.data() + number_end_, form.after_number);
  }

  /// Writes it for `day` at `at` and returns where the text goes on. There is room for the longest
  /// cell: all of the place is copied, and what counts is kept.
  char* put_at(char* at, int day) const {
    std::memcpy(at, text_.data(), text_.size());
    const char* const digits = digits_of(day);
    std::memcpy(at + date_, digits, 2);
    if (day >= 10) at[number_end_ - 2] = digits[0];
    at[number_end_ - 1] = digits[1];
    return at + size_;
  }

 private:
  std::array<char, kLongest> text_{};
  std::size_t date_;
  std::size_t number_end_;
  std::size_t size_;
};

/// The rows of days, written into a place that every month fits: nothing grows while they are.
class Days {
 public:
  explicit Days(const Month& month) {
    const char* const digits = digits_of(month.shown.month);
    const std::string rest = std::string{'/', digits[0], digits[1], '/'} + month.year + "');>";
    const Cell one_digit(kOtherDay, rest, 1);
    const Cell two_digits(kOtherDay, rest, 2);
    const Cell marked(kMarkedDay, rest, month.shown.day < 10 ? 1 : 2);

    char* at = place_.data();
    int column = 1;
    if (month.first_weekday != 1) at = put(at, kRowStart);
    for (; column < month.first_weekday; ++column) at = put(at, kBlankDay);

    for (int day = 1; day <= month.days; ++day) {
      if (column == 1) at = put(at, kRowStart);
      // kept: marked is the day of the date shown, which is today only when no date was asked for
      const Cell& cell = day == month.shown.day ? marked : day < 10 ? one_digit : two_digits;
      at = cell.put_at(at, day);
      if (column == kColumns) {
        at = put(at, kRowEnd);
        column = 0;
      }
      ++column;
    }

    if (column != 1) {
      for (; column <= kColumns; ++column) at = put(at, kBlankDay);
      at = put(at, kRowEnd);
    }
    size_ = static_cast<std::size_t>(at - place_.data());
  }

  std::string_view text() const { return {place_.data(), size_}; }

 private:
  static constexpr std::size_t kMost =
      kMostRows * (kRowStart.size() + kColumns * Cell::kLongest + kRowEnd.size());
  static_assert(kBlankDay.size() <= Cell::kLongest);

  std::array<char, kMost> place_;
  std::size_t size_;
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
  const Month month(shown_date());
  const CivilTime next = add_months(month.shown, 1);  // none after December 9999: before a write
  response().Write(kBody);

  const std::string campo = query("campo");
  std::string navigation;
  navigation.reserve(kNavigationRoom + 2 * (ScriptName_.size() + campo.size()));
  // kept: neither quoted nor encoded; a date with a time has a blank in it
  const auto put_link = [&](const CivilTime& date) {
    navigation += "<A class=nav HREF=";
    navigation += ScriptName_;
    navigation += "?campo=";
    navigation += campo;
    navigation += "&date=";
    navigation += date_text(date);
  };
  navigation += kNavigationStart;
  put_link(add_months(month.shown, -1));
  navigation += ">&lt;&lt;</A></TD><TD class=nav ALIGN=center>";
  navigation += month_name(month.shown.month);
  navigation += " / ";
  navigation += month.year;
  navigation += "</TD><TD class=nav ALIGN=left >";
  put_link(next);
  navigation += ">&gt;&gt;</A></TD></TR></TABLE>";
  response().Write(navigation);
  response().Write("<br>");

  response().Write(kDaysStart);
  response().Write(Days(month).text());
  response().Write("</body>\r\n");  // kept: the table of days is not closed
}

}  // namespace pelm
