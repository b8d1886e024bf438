// Reading and writing dates.
#include "platform/value/date_text.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "platform/value/blank.h"
#include "platform/value/clock.h"
#include "platform/value/regional.h"
#include "platform/value/text.h"

namespace pelm {
namespace {

struct Item {
  enum class Kind { Number, Month, Am, Pm };
  // What stands between an item and the one before it.
  enum class Join { Nothing, Blank, DateSeparator, TimeSeparator, Link };

  Kind kind = Kind::Number;
  int value = 0;  ///< A number, or a month 1 to 12.
  Join join = Join::Nothing;

  bool is_half_of_day() const { return kind == Kind::Am || kind == Kind::Pm; }
};

constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }

constexpr bool is_letter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80;
}

// How many characters at the start of a text are of a kind.
template <bool (*is_of_kind)(char)>
std::size_t run_of(std::string_view s) {
  std::size_t count = 0;
  while (count < s.size() && is_of_kind(s[count])) ++count;
  return count;
}

// A text in items: six numbers, a month and a half of the day at most.
class Items {
 public:
  // False when the text has anything that a date cannot have.
  bool split(std::string_view s) {
    s = skip_blanks(s);
    while (!s.empty()) {
      Item item;
      if (!take_join(s, item.join)) return false;
      if (s.empty()) return item.join == Item::Join::Blank;
      if (count_ == items_.size() || !take_item(s, item)) return false;
      items_[count_++] = item;
    }
    return count_ > 0;
  }

  std::size_t size() const { return count_; }
  const Item& operator[](std::size_t i) const { return items_[i]; }

 private:
  // False at the start of the text for any separator, and anywhere for a second one.
  bool take_join(std::string_view& s, Item::Join& join) const {
    const std::string_view after_blanks = skip_blanks(s);
    join = after_blanks.size() == s.size() ? Item::Join::Nothing : Item::Join::Blank;
    s = after_blanks;
    if (s.empty() || is_digit(s.front())) return true;
    const char first = s.front();
    const bool date_separator = first == '-' || first == '/' || first == ',';
    const bool time_separator = first == ':' || first == '.';
    if (date_separator || time_separator) {
      join = date_separator ? Item::Join::DateSeparator : Item::Join::TimeSeparator;
      s = skip_blanks(s.substr(1));
      return count_ > 0;
    }
    const std::string_view link = regional::kLongDateLink;
    if (join == Item::Join::Blank && text::equal_case_blind(s.substr(0, link.size()), link)) {
      const std::string_view after_link = s.substr(link.size());
      const std::string_view next = skip_blanks(after_link);
      if (next.size() != after_link.size()) {
        join = Item::Join::Link;
        s = next;
        return count_ > 0;
      }
    }
    return true;
  }

  static bool take_item(std::string_view& s, Item& item) {
    if (const std::size_t digits = run_of<is_digit>(s); digits > 0) {
      constexpr int kPastAnyYear = 100000;
      for (const char c : s.substr(0, digits)) {
        item.value = std::min(item.value * 10 + (c - '0'), kPastAnyYear);
      }
      s.remove_prefix(digits);
      return true;
    }
    const std::string_view letters = s.substr(0, run_of<is_letter>(s));
    const std::string_view word = letters.substr(0, letters.find(kNonBreakingBlank));
    s.remove_prefix(word.size());
    return read_word(word, item);
  }

  static bool read_word(std::string_view word, Item& item) {
    if (text::equal_case_blind(word, "am") || text::equal_case_blind(word, "pm")) {
      item.kind = text::equal_case_blind(word, "am") ? Item::Kind::Am : Item::Kind::Pm;
      return true;
    }
    item.kind = Item::Kind::Month;
    for (std::size_t month = 0; month < 12; ++month) {
      item.value = static_cast<int>(month) + 1;
      if (text::equal_case_blind(word, regional::kMonthNames[month]) ||
          text::equal_case_blind(word, regional::kMonthAbbreviations[month])) {
        return true;
      }
    }
    return false;
  }

  std::array<Item, 8> items_;
  std::size_t count_ = 0;
};

constexpr int full_year(int year) {
  if (year >= 100) return year;
  return year + (year <= regional::kTwoDigitYearMax ? 2000 : 1900);
}

// Puts a day into `t`, whose time is left alone; false when there is no such day.
bool put_day(CivilTime& t, int year, int month, int day) {
  t.year = full_year(year);
  t.month = month;
  t.day = day;
  return is_valid(t);
}

// The numbers and the month's name of a date, in the order of the text.
class DateParts {
 public:
  bool add(const Item& item) {
    if (count_ == parts_.size()) return false;
    if (item.kind == Item::Kind::Month) {
      if (name_at_ != kNoName) return false;
      name_at_ = count_;
    }
    parts_[count_++] = item.value;
    return true;
  }

  bool empty() const { return count_ == 0; }

  // False when they are no day.
  bool put_into(CivilTime& t) const {
    if (count_ == 3) return of_three(t);
    if (count_ == 2) return name_at_ == kNoName ? of_two(t) : of_name_and_number(t);
    return false;
  }

 private:
  bool of_three(CivilTime& t) const {
    struct Order {
      std::size_t day, month, year;
    };
    static constexpr Order kOrders[] = {{0, 1, 2}, {2, 1, 0}, {1, 0, 2}, {1, 2, 0}};
    for (const Order& order : kOrders) {
      if (name_at_ != kNoName && order.month != name_at_) continue;
      if (put_day(t, parts_[order.year], parts_[order.month], parts_[order.day])) return true;
    }
    return false;
  }

  bool of_two(CivilTime& t) const {
    const auto [a, b] = std::pair(parts_[0], parts_[1]);
    const int this_year = clock_now().civil().year;
    return put_day(t, this_year, b, a) || put_day(t, this_year, a, b) || put_day(t, b, a, 1) ||
           put_day(t, a, b, 1);
  }

  bool of_name_and_number(CivilTime& t) const {
    const int month = parts_[name_at_];
    const int number = parts_[1 - name_at_];
    return put_day(t, clock_now().civil().year, month, number) || put_day(t, number, month, 1);
  }

  static constexpr std::size_t kNoName = 3;
  std::array<int, 3> parts_{};
  std::size_t count_ = 0;
  std::size_t name_at_ = kNoName;
};

// Hours, minutes and seconds joined in one group.
class TimeParts {
 public:
  // False for a fourth number and for a number that does not continue the group.
  bool add(const Item& item) {
    if (count_ == parts_.size()) return false;
    if (count_ > 0 && item.join != Item::Join::TimeSeparator) return false;
    parts_[count_++] = item.value;
    return true;
  }

  bool empty() const { return count_ == 0; }
  void set_half(Item::Kind half) { half_ = half; }

  bool put_into(CivilTime& t) const {
    t.hour = parts_[0];
    t.minute = parts_[1];
    t.second = parts_[2];
    if (half_ == Item::Kind::Am && t.hour == 12) t.hour = 0;
    if (half_ == Item::Kind::Pm && t.hour < 12) t.hour += 12;  // kept: "14:07 PM" is 14:07
    return is_valid(t);
  }

 private:
  std::array<int, 3> parts_{};
  std::size_t count_ = 0;
  std::optional<Item::Kind> half_;
};

class DateReader {
 public:
  // False when the text is no date.
  bool read(std::string_view s, CivilTime& t) {
    return items_.split(s) && sort_items() && (date_.empty() || date_.put_into(t)) &&
           time_.put_into(t);
  }

 private:
  // Hands each item to the date or the time; false when an item fits neither.
  bool sort_items() {
    bool half_seen = false;
    for (std::size_t i = 0; i < items_.size(); ++i) {
      const Item& item = items_[i];
      if (!joined_properly(i)) return false;
      if (item.is_half_of_day()) {
        if (half_seen || i == 0 || !is_time(i - 1)) return false;
        half_seen = true;
        time_.set_half(item.kind);
      } else if (!(is_time(i) ? time_.add(item) : date_.add(item))) {
        return false;
      }
    }
    return true;
  }

  bool has_kind(std::size_t i, Item::Kind kind) const {
    return i < items_.size() && items_[i].kind == kind;
  }

  bool joined_by_time(std::size_t i) const {
    return i < items_.size() && items_[i].join == Item::Join::TimeSeparator;
  }

  // A number that ":" or "." joins to another, or that AM or PM follows.
  bool is_time(std::size_t i) const {
    if (!has_kind(i, Item::Kind::Number)) return false;
    return joined_by_time(i) || joined_by_time(i + 1) ||
           (i + 1 < items_.size() && items_[i + 1].is_half_of_day());
  }

  bool joined_properly(std::size_t i) const {
    const Item& item = items_[i];
    if (i == 0) return true;
    if (item.is_half_of_day()) {
      return item.join == Item::Join::Nothing || item.join == Item::Join::Blank;
    }
    if (item.join == Item::Join::TimeSeparator) {
      return item.kind == Item::Kind::Number && has_kind(i - 1, Item::Kind::Number);
    }
    if (item.join == Item::Join::Link) {
      return item.kind == Item::Kind::Month || has_kind(i - 1, Item::Kind::Month);
    }
    return true;
  }

  Items items_;
  DateParts date_;
  TimeParts time_;
};

// The patterns of a short date and a long time, written out: most dates become texts this way.
static_assert(regional::kShortDate == "dd/mm/yyyy" && regional::kLongTime == "hh:mm:ss");

// Each writes at `at` and returns where the text goes on.
char* put_two_digits(char* at, int value) {
  *at++ = static_cast<char>('0' + value / 10);
  *at++ = static_cast<char>('0' + value % 10);
  return at;
}

char* put_three(char* at, int first, char separator, int second, int third) {
  at = put_two_digits(at, first);
  *at++ = separator;
  at = put_two_digits(at, second);
  *at++ = separator;
  return put_two_digits(at, third);
}

char* put_short_date(char* at, const CivilTime& t) {
  at = put_three(at, t.day, regional::kDateSeparator, t.month, t.year / 100);
  return put_two_digits(at, t.year % 100);
}

char* put_long_time(char* at, const CivilTime& t) {
  return put_three(at, t.hour, regional::kTimeSeparator, t.minute, t.second);
}

}  // namespace

std::optional<Date> read_date(std::string_view s) {
  DateReader reader;
  CivilTime t;
  if (!reader.read(s, t)) return std::nullopt;
  return Date::from_civil(t);
}

std::string date_text(Date d) { return date_text(d.civil()); }

std::string date_text(const CivilTime& t) {
  const bool day_zero = t.year == 1899 && t.month == 12 && t.day == 30;
  const bool midnight = t.hour == 0 && t.minute == 0 && t.second == 0;
  std::array<char, regional::kShortDate.size() + 1 + regional::kLongTime.size()> text;
  char* at = text.data();
  if (!day_zero) at = put_short_date(at, t);
  if (!day_zero && !midnight) *at++ = ' ';
  if (day_zero || !midnight) at = put_long_time(at, t);
  return {text.data(), at};
}

}  // namespace pelm
