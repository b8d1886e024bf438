// A date through a pattern.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/value/date_text.h"
#include "platform/value/formatting.h"
#include "platform/value/regional.h"
#include "platform/value/text.h"

namespace pelm {
namespace {

enum class Code : std::uint8_t {
  Literal,
  DateSeparator,
  TimeSeparator,
  Day,
  Day2,
  WeekdayShort,
  WeekdayLong,
  ShortDate,
  LongDate,
  WeekdayNumber,
  Week,
  Month,
  Month2,
  MonthShort,
  MonthLong,
  Quarter,
  DayOfYear,
  Year2,
  Year4,
  Hour,
  Hour2,
  Minute,
  Minute2,
  Second,
  Second2,
  LongTime,
  HalfOfDay,
  General,
};

struct Spelling {
  std::string_view letters;
  Code code;
};

// Among spellings of one letter the longer comes first: the first that fits is taken.
constexpr Spelling kSpellings[] = {
    {"dddddd", Code::LongDate},  {"ddddd", Code::ShortDate}, {"dddd", Code::WeekdayLong},
    {"ddd", Code::WeekdayShort}, {"dd", Code::Day2},         {"d", Code::Day},
    {"mmmm", Code::MonthLong},   {"mmm", Code::MonthShort},  {"mm", Code::Month2},
    {"m", Code::Month},          {"yyyy", Code::Year4},      {"yy", Code::Year2},
    {"y", Code::DayOfYear},      {"hh", Code::Hour2},        {"h", Code::Hour},
    {"nn", Code::Minute2},       {"n", Code::Minute},        {"ss", Code::Second2},
    {"s", Code::Second},         {"ttttt", Code::LongTime},  {"ww", Code::Week},
    {"w", Code::WeekdayNumber},  {"q", Code::Quarter},       {"am/pm", Code::HalfOfDay},
    {"a/p", Code::HalfOfDay},    {"c", Code::General},       {"/", Code::DateSeparator},
    {":", Code::TimeSeparator},
};

struct NamedPattern {
  std::string_view name;
  std::string_view pattern;
};

constexpr NamedPattern kNamedPatterns[] = {
    {"General Date", "c"},   {"Long Date", "dddddd"}, {"Medium Date", "dd-mmm-yy"},
    {"Short Date", "ddddd"}, {"Long Time", "ttttt"},  {"Medium Time", "hh:mm AM/PM"},
    {"Short Time", "hh:mm"},
};

struct Piece {
  Code code;
  std::string_view letters;  ///< As the pattern has them.

  bool is_separator() const {
    return code == Code::Literal || code == Code::DateSeparator || code == Code::TimeSeparator;
  }
};

constexpr char small(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

// `spelling` is in small letters.
bool begins_with(std::string_view pattern, std::string_view spelling) {
  if (pattern.size() < spelling.size()) return false;
  for (std::size_t i = 0; i < spelling.size(); ++i) {
    if (small(pattern[i]) != spelling[i]) return false;
  }
  return true;
}

// The piece at the start of `pattern`, which is not empty, and how much of the pattern it takes.
std::size_t take_piece(std::string_view pattern, Piece& piece) {
  const char first = small(pattern.front());
  if (first == '"') {
    const std::size_t close = std::min(pattern.find('"', 1), pattern.size());
    piece = {Code::Literal, pattern.substr(1, close - 1)};
    return std::min(close + 1, pattern.size());
  }
  if (first == '\\' && pattern.size() > 1) {
    piece = {Code::Literal, pattern.substr(1, 1)};
    return 2;
  }
  for (const Spelling& spelling : kSpellings) {
    if (spelling.letters.front() == first && begins_with(pattern, spelling.letters)) {
      piece = {spelling.code, pattern.substr(0, spelling.letters.size())};
      return piece.letters.size();
    }
  }
  piece = {Code::Literal, pattern.substr(0, 1)};
  return 1;
}

// The nearest code that prints a part of the date, from `at` on in steps of `step`.
Code neighbour(const std::vector<Piece>& pieces, std::size_t at, std::size_t step) {
  for (std::size_t i = at + step; i < pieces.size(); i += step) {  // past 0 it wraps to the end
    if (!pieces[i].is_separator()) return pieces[i].code;
  }
  return Code::Literal;
}

// m after h, or before s, means minutes.
void turn_months_to_minutes(std::vector<Piece>& pieces) {
  constexpr auto kBack = static_cast<std::size_t>(-1);
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    Code& code = pieces[i].code;
    if (code != Code::Month && code != Code::Month2) continue;
    const Code before = neighbour(pieces, i, kBack);
    const Code after = neighbour(pieces, i, 1);
    if (before == Code::Hour || before == Code::Hour2 || after == Code::Second ||
        after == Code::Second2) {
      code = code == Code::Month ? Code::Minute : Code::Minute2;
    }
  }
}

class Printer {
 public:
  explicit Printer(Date date) : date_(date), t_(date.civil()) {}

  std::string print(std::string_view pattern) {
    std::vector<Piece> pieces;
    pieces.reserve(pattern.size());
    out_.reserve(pattern.size());
    while (!pattern.empty()) {
      Piece piece{};
      pattern.remove_prefix(take_piece(pattern, piece));
      pieces.push_back(piece);
    }
    turn_months_to_minutes(pieces);
    bool half_of_day = false;
    for (const Piece& piece : pieces) half_of_day |= piece.code == Code::HalfOfDay;
    hour_ = half_of_day ? (t_.hour + 11) % 12 + 1 : t_.hour;
    for (const Piece& piece : pieces) put(piece);
    return std::move(out_);
  }

 private:
  void put(const Piece& piece) {
    using namespace regional;
    switch (piece.code) {
      case Code::Literal:
        out_ += piece.letters;
        break;
      case Code::DateSeparator:
        out_ += kDateSeparator;
        break;
      case Code::TimeSeparator:
        out_ += kTimeSeparator;
        break;
      case Code::Day:
        put_number(t_.day, 1);
        break;
      case Code::Day2:
        put_number(t_.day, 2);
        break;
      case Code::WeekdayShort:
        out_ += kWeekdayAbbreviations.at(weekday_index());
        break;
      case Code::WeekdayLong:
        out_ += kWeekdayNames.at(weekday_index());
        break;
      case Code::ShortDate:
        out_ += format_date(date_, kShortDate);
        break;
      case Code::LongDate:
        out_ += format_date(date_, kLongDate);
        break;
      case Code::WeekdayNumber:
        put_number(date_.weekday(), 1);
        break;
      case Code::Week:
        put_number(week(), 1);
        break;
      case Code::Month:
        put_number(t_.month, 1);
        break;
      case Code::Month2:
        put_number(t_.month, 2);
        break;
      case Code::MonthShort:
        out_ += kMonthAbbreviations.at(month_index());
        break;
      case Code::MonthLong:
        out_ += kMonthNames.at(month_index());
        break;
      case Code::Quarter:
        put_number((t_.month + 2) / 3, 1);
        break;
      case Code::DayOfYear:
        put_number(day_of_year(), 1);
        break;
      case Code::Year2:
        put_number(t_.year % 100, 2);
        break;
      case Code::Year4:
        put_number(t_.year, 4);
        break;
      case Code::Hour:
        put_number(hour_, 1);
        break;
      case Code::Hour2:
        put_number(hour_, 2);
        break;
      case Code::Minute:
        put_number(t_.minute, 1);
        break;
      case Code::Minute2:
        put_number(t_.minute, 2);
        break;
      case Code::Second:
        put_number(t_.second, 1);
        break;
      case Code::Second2:
        put_number(t_.second, 2);
        break;
      case Code::LongTime:
        out_ += format_date(date_, kLongTime);
        break;
      case Code::HalfOfDay:
        put_half_of_day(piece.letters);
        break;
      case Code::General:
        out_ += date_text(date_);
        break;
    }
  }

  void put_number(int value, std::size_t width) {
    std::array<char, 12> digits{};
    const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    const auto count = static_cast<std::size_t>(end - digits.data());
    if (count < width) out_.append(width - count, '0');
    out_.append(digits.data(), count);
  }

  // "AM/PM" prints AM or PM, "am/pm" am or pm, "A/P" A or P.
  void put_half_of_day(std::string_view letters) {
    const std::size_t slash = letters.find('/');
    out_ += t_.hour < 12 ? letters.substr(0, slash) : letters.substr(slash + 1);
  }

  std::size_t weekday_index() const { return static_cast<std::size_t>(date_.weekday() - 1); }
  std::size_t month_index() const { return static_cast<std::size_t>(t_.month - 1); }

  Date new_year() const { return Date::from_civil({t_.year, 1, 1}); }

  int day_of_year() const {
    const Date day = Date::from_civil({t_.year, t_.month, t_.day});
    return static_cast<int>(day.serial() - new_year().serial()) + 1;
  }

  // Weeks begin on Sunday; the first one holds the first of January.
  int week() const { return (day_of_year() + new_year().weekday() - 2) / 7 + 1; }

  Date date_;
  CivilTime t_;
  int hour_ = 0;
  std::string out_;
};

}  // namespace

std::string format_date(Date d, std::string_view pattern) {
  if (pattern.empty()) pattern = "c";
  for (const NamedPattern& named : kNamedPatterns) {
    if (pattern.size() == named.name.size() && text::equal_case_blind(pattern, named.name)) {
      pattern = named.pattern;
    }
  }
  return Printer(d).print(pattern);
}

}  // namespace pelm
