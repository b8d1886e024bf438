// Dates as the embedded database keeps and converts them.
#include "platform/ado/sqlite/date_text.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

#include "platform/ado/sqlite/tokenizer.h"
#include "platform/value/regional.h"

namespace pelm::ado::sqlite {
namespace {

constexpr std::int64_t kSecondsOfDay = 86400;
// Two-digit years up to this one are of the 2000s: SQL Server's "two digit year cutoff".
constexpr int kTwoDigitYearCutoff = 49;

constexpr std::array<std::string_view, 12> kEnglishMonths = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};
constexpr std::array<std::string_view, 12> kEnglishShortMonths = {
    "Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::array<std::string_view, 7> kEnglishWeekdays = {
    "Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};

bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_letter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80;
}

template <class... Arguments>
std::string printed(const char* pattern, Arguments... arguments) {
  std::array<char, 64> buffer{};
  const int size = std::snprintf(buffer.data(), buffer.size(), pattern, arguments...);
  return {buffer.data(), static_cast<std::size_t>(std::clamp(size, 0, 63))};
}

int month_named(std::string_view word) {
  for (std::size_t i = 0; i < 12; ++i) {
    if (equal_names(word, kEnglishMonths[i]) || equal_names(word, kEnglishShortMonths[i]) ||
        equal_names(word, regional::kMonthNames[i]) ||
        equal_names(word, regional::kMonthAbbreviations[i])) {
      return static_cast<int>(i) + 1;
    }
  }
  return 0;
}

int full_year(int year, std::size_t digits) {
  if (digits > 2) return year;
  return year + (year <= kTwoDigitYearCutoff ? 2000 : 1900);
}

// Reads a date text piece by piece.
class Reader {
 public:
  Reader(std::string_view s, DateOrder order) : s_(s), order_(order) {}

  std::optional<CivilTime> read() {
    t_ = {1900, 1, 1, 0, 0, 0};
    blanks();
    if (at_ < s_.size() && !at_time() && !date()) return {};
    if (at_ < s_.size() && (s_[at_] == 'T' || s_[at_] == 't')) ++at_;
    blanks();
    if (at_ < s_.size() && !time()) return {};
    blanks();
    if (at_ < s_.size() || !is_valid(t_)) return {};
    return t_;
  }

 private:
  struct Part {
    int number = 0;
    std::size_t digits = 0;  // 0 for a month's name
  };

  void blanks() {
    while (at_ < s_.size() && s_[at_] == ' ') ++at_;
  }
  bool part(Part& out) {
    const std::size_t from = at_;
    if (at_ < s_.size() && is_letter(s_[at_])) {
      while (at_ < s_.size() && is_letter(s_[at_])) ++at_;
      out = {month_named(s_.substr(from, at_ - from)), 0};
      return out.number > 0;
    }
    out = {};
    while (at_ < s_.size() && is_digit(s_[at_]) && at_ - from < 9) {
      out.number = out.number * 10 + (s_[at_++] - '0');
    }
    out.digits = at_ - from;
    return out.digits > 0;
  }
  // A number followed by ":" begins the time.
  bool at_time() const {
    std::size_t i = at_;
    while (i < s_.size() && is_digit(s_[i])) ++i;
    return i > at_ && i < s_.size() && s_[i] == ':';
  }
  bool separator() {
    blanks();
    if (at_ < s_.size() && (s_[at_] == '/' || s_[at_] == '-' || s_[at_] == '.' || s_[at_] == ',')) {
      ++at_;
    }
    blanks();
    return at_ < s_.size();
  }

  bool date() {
    std::array<Part, 3> parts;
    if (!part(parts[0])) return false;
    if (parts[0].digits == 8) return compact(parts[0].number);
    if (parts[0].digits == 6) return compact_short(parts[0].number);
    if (!separator() || !part(parts[1]) || !separator() || !part(parts[2])) return false;
    return ordered(parts);
  }
  bool compact(int number) {
    t_.year = number / 10000;
    t_.month = number / 100 % 100;
    t_.day = number % 100;
    return true;
  }
  bool compact_short(int number) {
    compact(number);
    t_.year = full_year(t_.year, 2);
    return true;
  }
  void assign(const Part& year, const Part& month, const Part& day) {
    t_.year = full_year(year.number, year.digits);
    t_.month = month.number;
    t_.day = day.number;
  }
  bool ordered(const std::array<Part, 3>& p) {
    const auto names =
        std::count_if(p.begin(), p.end(), [](const Part& x) { return x.digits == 0; });
    if (names > 1) return false;
    DateOrder order = order_;
    if (p[0].digits > 2) {
      order = DateOrder::YearMonthDay;  // whatever the order, a month follows a year
    } else if (p[0].digits == 0) {
      order = DateOrder::MonthDayYear;
    } else if (p[1].digits == 0) {
      order = DateOrder::DayMonthYear;
    } else if (p[2].digits == 0) {
      return false;
    }
    switch (order) {
      case DateOrder::YearMonthDay:
        assign(p[0], p[1], p[2]);
        break;
      case DateOrder::MonthDayYear:
        assign(p[2], p[0], p[1]);
        break;
      case DateOrder::DayMonthYear:
        assign(p[2], p[1], p[0]);
        break;
    }
    return true;
  }

  bool time_number(int& out) {
    Part p;
    if (!part(p) || p.digits == 0 || p.digits > 2) return false;
    out = p.number;
    return true;
  }
  bool colon() {
    if (at_ >= s_.size() || s_[at_] != ':') return false;
    ++at_;
    return true;
  }
  bool time() {
    if (!time_number(t_.hour)) return false;
    if (colon()) {
      if (!time_number(t_.minute)) return false;
      if (colon() && !time_number(t_.second)) return false;
      if (at_ < s_.size() && (s_[at_] == '.' || s_[at_] == ':')) {
        Part fraction;
        ++at_;
        if (!part(fraction) || fraction.digits == 0) return false;
      }
    } else if (!half_follows()) {
      return false;
    }
    return half();
  }
  bool half_follows() const {
    const std::size_t i = s_.find_first_not_of(' ', at_);
    return i != std::string_view::npos && is_letter(s_[i]);
  }
  // AM or PM.
  bool half() {
    if (!half_follows()) return true;
    blanks();
    const std::string_view word = s_.substr(at_, 2);
    const bool pm = equal_names(word, "PM");
    if ((!pm && !equal_names(word, "AM")) || t_.hour < 1 || t_.hour > 12) return false;
    at_ += 2;
    t_.hour = t_.hour % 12 + (pm ? 12 : 0);
    return true;
  }

  std::string_view s_;
  DateOrder order_;
  std::size_t at_ = 0;
  CivilTime t_;
};

std::chrono::sys_days days_of(const CivilTime& t) {
  return std::chrono::year(t.year) / std::chrono::month(static_cast<unsigned>(t.month)) /
         std::chrono::day(static_cast<unsigned>(t.day));
}

std::string time_text(const CivilTime& t) {
  return printed("%02d:%02d:%02d", t.hour, t.minute, t.second);
}
std::string twelve_hours(const CivilTime& t) {
  return printed("%2d:%02d", t.hour % 12 == 0 ? 12 : t.hour % 12, t.minute);
}
const char* half_of(const CivilTime& t) { return t.hour < 12 ? "AM" : "PM"; }

}  // namespace

StoredDate::StoredDate(const CivilTime& t) noexcept {
  const auto put = [&](std::size_t at, int two_digits) {
    text_[at] = static_cast<char>('0' + two_digits / 10);
    text_[at + 1] = static_cast<char>('0' + two_digits % 10);
  };
  put(0, t.year / 100);
  put(2, t.year % 100);
  put(5, t.month);
  put(8, t.day);
  put(11, t.hour);
  put(14, t.minute);
  put(17, t.second);
}

std::string stored_date(const CivilTime& t) { return std::string(StoredDate(t).text()); }

std::string stored_date(Date d) { return stored_date(d.civil()); }

std::optional<CivilTime> read_stored_date(std::string_view s) noexcept {
  constexpr std::size_t kLength = 19;
  if (s.size() != kLength) return {};
  if (s[4] != '-' || s[7] != '-' || s[10] != ' ' || s[13] != ':' || s[16] != ':') return {};
  bool digits = true;
  const auto two = [&](std::size_t i) {
    digits = digits && is_digit(s[i]) && is_digit(s[i + 1]);
    return (s[i] - '0') * 10 + (s[i + 1] - '0');
  };
  const int century = two(0);
  const CivilTime t{century * 100 + two(2), two(5), two(8), two(11), two(14), two(17)};
  if (!digits || !is_valid(t)) return {};
  return t;
}

std::optional<CivilTime> read_date(std::string_view s, DateOrder order) noexcept {
  if (auto t = read_stored_date(s)) return t;
  return Reader(s, order).read();
}

std::optional<std::string> styled_date(const CivilTime& t, int style, const Language& language) {
  const int year = t.year, month = t.month, day = t.day;
  const bool century = style >= 100 || style == 0 || style == 9 || style == 13 || style == 14 ||
                       style == 20 || style == 21;
  const int shown_year = century ? year : year % 100;
  const int width = century ? 4 : 2;
  const std::string name(short_month_of(language, month - 1));
  const auto three = [&](int a, const char* separator, int b) {
    return printed("%02d%s%02d%s%0*d", a, separator, b, separator, width, shown_year);
  };
  switch (style % 100) {
    case 0:
      return name + printed(" %2d %04d ", day, year) + twelve_hours(t) + half_of(t);
    case 1:
      return three(month, "/", day);
    case 2:
      return printed("%0*d.%02d.%02d", width, shown_year, month, day);
    case 3:
      return three(day, "/", month);
    case 4:
      return three(day, ".", month);
    case 5:
      return three(day, "-", month);
    case 6:
      return printed("%02d ", day) + name + printed(" %0*d", width, shown_year);
    case 7:
      return name + printed(" %02d, %0*d", day, width, shown_year);
    case 8:
      return time_text(t);
    case 9:
      return name + printed(" %2d %04d ", day, year) + twelve_hours(t) +
             printed(":%02d:000", t.second) + half_of(t);
    case 10:
      return three(month, "-", day);
    case 11:
      return printed("%0*d/%02d/%02d", width, shown_year, month, day);
    case 12:
      return printed("%0*d%02d%02d", width, shown_year, month, day);
    case 13:
      return printed("%02d ", day) + name + printed(" %04d ", year) + time_text(t) + ":000";
    case 14:
      return time_text(t) + ":000";
    case 20:
      return stored_date(t);
    case 21:
      return stored_date(t) + ".000";
    case 26:
      return printed("%04d-%02d-%02dT", year, month, day) + time_text(t);
    default:
      return {};
  }
}

DateOrder order_of_style(int style, DateOrder otherwise) noexcept {
  switch (style % 100) {
    case 1:
    case 7:
    case 10:
      return DateOrder::MonthDayYear;
    case 3:
    case 4:
    case 5:
    case 6:
    case 13:
      return DateOrder::DayMonthYear;
    case 2:
    case 11:
    case 12:
    case 20:
    case 21:
      return DateOrder::YearMonthDay;
    default:
      return otherwise;
  }
}

std::int64_t day_number(const CivilTime& t) noexcept {
  return days_of(t).time_since_epoch().count();
}

std::int64_t second_number(const CivilTime& t) noexcept {
  return day_number(t) * kSecondsOfDay + t.hour * 3600L + t.minute * 60L + t.second;
}

std::optional<CivilTime> from_second_number(std::int64_t seconds) noexcept {
  constexpr std::int64_t kMaxSeconds = 8100LL * 366 * kSecondsOfDay;
  if (seconds > kMaxSeconds || seconds < -kMaxSeconds) return {};
  std::int64_t days = seconds / kSecondsOfDay;
  std::int64_t rest = seconds % kSecondsOfDay;
  if (rest < 0) {
    rest += kSecondsOfDay;
    --days;
  }
  const std::chrono::year_month_day d{std::chrono::sys_days{std::chrono::days{days}}};
  const auto of_day = static_cast<int>(rest);
  const CivilTime t{static_cast<int>(d.year()),
                    static_cast<int>(static_cast<unsigned>(d.month())),
                    static_cast<int>(static_cast<unsigned>(d.day())),
                    of_day / 3600,
                    of_day / 60 % 60,
                    of_day % 60};
  if (!is_valid(t)) return {};
  return t;
}

std::optional<CivilTime> plus_months(CivilTime t, std::int64_t months) noexcept {
  constexpr std::int64_t kMost = 12LL * 10000;
  if (months > kMost || months < -kMost) return {};
  const std::int64_t total = t.year * 12LL + (t.month - 1) + months;
  if (total < 0) return {};
  t.year = static_cast<int>(total / 12);
  t.month = static_cast<int>(total % 12) + 1;
  const auto last = std::chrono::year(t.year) / std::chrono::month(static_cast<unsigned>(t.month)) /
                    std::chrono::last;
  t.day = std::min(t.day, static_cast<int>(static_cast<unsigned>(last.day())));
  if (!is_valid(t)) return {};
  return t;
}

int weekday_of(const CivilTime& t) noexcept {
  return static_cast<int>(std::chrono::weekday(days_of(t)).c_encoding()) + 1;
}

std::string_view month_of(const Language& language, int month) noexcept {
  const auto i = static_cast<std::size_t>(month);
  return language.portuguese ? regional::kMonthNames[i] : kEnglishMonths[i];
}

std::string_view short_month_of(const Language& language, int month) noexcept {
  const auto i = static_cast<std::size_t>(month);
  return language.portuguese ? regional::kMonthAbbreviations[i] : kEnglishShortMonths[i];
}

std::string_view weekday_name_of(const Language& language, int weekday) noexcept {
  const auto i = static_cast<std::size_t>(weekday);
  return language.portuguese ? regional::kWeekdayNames[i] : kEnglishWeekdays[i];
}

}  // namespace pelm::ado::sqlite
