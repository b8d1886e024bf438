// The server's functions of dates.
#include <array>
#include <cmath>

#include "platform/ado/sqlite/date_part.h"
#include "platform/ado/sqlite/functions.h"
#include "platform/value/clock.h"

namespace pelm::ado::sqlite {
namespace {

constexpr std::int64_t kSecondsOfDay = 86400;
constexpr std::int64_t kDaysOfWeek = 7;

DatePart part_argument(const FunctionCall& c) {
  const auto part = date_part_named(c.text(0));
  if (part) return *part;
  throw FunctionError{SQLITE_ERROR,
                      "'" + std::string(c.text(0)) + "' is not a recognized datepart option."};
}

std::int64_t floor_divided(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }
// Weeks begin on Sunday; day 0 (1 January 1970) was a Thursday.
std::int64_t week_number(const CivilTime& t) {
  return floor_divided(day_number(t) + 4, kDaysOfWeek);
}
std::int64_t month_number(const CivilTime& t) { return t.year * 12LL + t.month - 1; }
CivilTime new_year(const CivilTime& t) { return {t.year, 1, 1, 0, 0, 0}; }

std::int64_t part_of(const CivilTime& t, DatePart part) {
  switch (part) {
    case DatePart::Year:
      return t.year;
    case DatePart::Quarter:
      return (t.month + 2) / 3;
    case DatePart::Month:
      return t.month;
    case DatePart::DayOfYear:
      return day_number(t) - day_number(new_year(t)) + 1;
    case DatePart::Day:
      return t.day;
    case DatePart::Week:
      return week_number(t) - week_number(new_year(t)) + 1;
    case DatePart::Weekday:
      return weekday_of(t);
    case DatePart::Hour:
      return t.hour;
    case DatePart::Minute:
      return t.minute;
    case DatePart::Second:
      return t.second;
    case DatePart::Millisecond:
      break;
  }
  return 0;
}

void getdate(FunctionCall& c) { c.give(clock_now().civil()); }
void datepart(FunctionCall& c) { c.give(part_of(c.date(1), part_argument(c))); }
void year(FunctionCall& c) { c.give(std::int64_t{c.date(0).year}); }
void month(FunctionCall& c) { c.give(std::int64_t{c.date(0).month}); }
void day(FunctionCall& c) { c.give(std::int64_t{c.date(0).day}); }

void datename(FunctionCall& c) {
  const CivilTime t = c.date(1);
  const Language& language = c.session().language;
  switch (const DatePart part = part_argument(c)) {
    case DatePart::Month:
      return c.give(month_of(language, t.month - 1));
    case DatePart::Weekday:
      return c.give(weekday_name_of(language, weekday_of(t) - 1));
    default:
      return c.give(std::string_view(std::to_string(part_of(t, part))));
  }
}

std::optional<CivilTime> sum(const CivilTime& t, DatePart part, std::int64_t n) {
  constexpr std::int64_t kLargest = std::int64_t{1} << 40U;
  if (n > kLargest || n < -kLargest) return {};
  const auto seconds = [&](std::int64_t size) {
    return from_second_number(second_number(t) + n * size);
  };
  switch (part) {
    case DatePart::Year:
      return plus_months(t, n * 12);
    case DatePart::Quarter:
      return plus_months(t, n * 3);
    case DatePart::Month:
      return plus_months(t, n);
    case DatePart::DayOfYear:
    case DatePart::Weekday:
    case DatePart::Day:
      return seconds(kSecondsOfDay);
    case DatePart::Week:
      return seconds(kDaysOfWeek * kSecondsOfDay);
    case DatePart::Hour:
      return seconds(3600);
    case DatePart::Minute:
      return seconds(60);
    case DatePart::Second:
      return seconds(1);
    case DatePart::Millisecond:
      break;
  }
  return from_second_number(second_number(t) + floor_divided(n, 1000));
}

void dateadd(FunctionCall& c) {
  const auto t = sum(c.date(2), part_argument(c), c.whole(1));
  if (!t) {
    throw FunctionError{SQLITE_TOOBIG, "Adding a value to a 'datetime' column caused overflow."};
  }
  c.give(*t);
}

// Counts the borders between the two dates, not whole parts.
void datediff(FunctionCall& c) {
  const CivilTime a = c.date(1);
  const CivilTime b = c.date(2);
  const auto between = [&](std::int64_t (*number)(const CivilTime&)) {
    return number(b) - number(a);
  };
  const auto borders = [&](std::int64_t size) {
    return floor_divided(second_number(b), size) - floor_divided(second_number(a), size);
  };
  switch (part_argument(c)) {
    case DatePart::Year:
      return c.give(std::int64_t{b.year - a.year});
    case DatePart::Quarter:
      return c.give(floor_divided(month_number(b), 3) - floor_divided(month_number(a), 3));
    case DatePart::Month:
      return c.give(between(month_number));
    case DatePart::DayOfYear:
    case DatePart::Weekday:
    case DatePart::Day:
      return c.give(borders(kSecondsOfDay));
    case DatePart::Week:
      return c.give(between(week_number));
    case DatePart::Hour:
      return c.give(borders(3600));
    case DatePart::Minute:
      return c.give(borders(60));
    case DatePart::Second:
      return c.give(borders(1));
    case DatePart::Millisecond:
      break;
  }
  c.give(borders(1) * 1000);
}

void isdate(FunctionCall& c) {
  const bool readable = c.is_text(0) && !c.text(0).empty() &&
                        read_date(c.text(0), c.session().language.date_order).has_value();
  c.give(std::int64_t{readable ? 1 : 0});
}

constexpr std::array kFunctions = {
    function<getdate>("getdate", 0, false),
    function<datepart>("datepart", 2),
    function<datename>("datename", 2),
    function<dateadd>("dateadd", 3),
    function<datediff>("datediff", 3),
    function<year>("year", 1),
    function<month>("month", 1),
    function<day>("day", 1),
    function<isdate, Nulls::ToTheFunction>("isdate", 1),
};

}  // namespace

std::span<const Function> date_functions() { return kFunctions; }

}  // namespace pelm::ado::sqlite
