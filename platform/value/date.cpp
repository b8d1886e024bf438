// Serial numbers and calendar days.
#include "pelm/date.h"

#include <chrono>
#include <cmath>

#include "pelm/error.h"

namespace pelm {
namespace {

using std::chrono::sys_days;

constexpr sys_days kDayZero = std::chrono::year{1899} / 12 / 30;

constexpr int serial_day(sys_days day) { return static_cast<int>((day - kDayZero).count()); }

constexpr int kFirstDay = serial_day(std::chrono::year{100} / 1 / 1);
constexpr int kLastDay = serial_day(std::chrono::year{9999} / 12 / 31);
constexpr int kSecondsPerDay = 86400;

std::chrono::year_month_day calendar_day(const CivilTime& t) {
  return std::chrono::year{t.year} / std::chrono::month{static_cast<unsigned>(t.month)} /
         std::chrono::day{static_cast<unsigned>(t.day)};
}

struct DayAndSecond {
  int day;
  int second;
};

DayAndSecond rounded(Date d) {
  const double serial = d.serial();
  const int day = static_cast<int>(serial);
  if (serial == day) return {day, 0};
  const DayAndSecond r{day,
                       static_cast<int>(std::lround(std::fabs(serial - day) * kSecondsPerDay))};
  if (r.second < kSecondsPerDay) return r;
  if (r.day == kLastDay) return {kLastDay, kSecondsPerDay - 1};  // there is no day after it
  return {r.day + 1, 0};
}

}  // namespace

bool is_valid(const CivilTime& t) noexcept {
  const auto within = [](int value, int low, int high) { return value >= low && value <= high; };
  return within(t.year, 100, 9999) && within(t.month, 1, 12) && within(t.day, 1, 31) &&
         (t.day <= 28 || calendar_day(t).ok()) && within(t.hour, 0, 23) &&
         within(t.minute, 0, 59) && within(t.second, 0, 59);
}

Date Date::from_serial(double serial) {
  const double day = std::trunc(serial);
  const bool in_range = day >= kFirstDay && day <= kLastDay;  // false for a NaN too
  if (!in_range) raise_error(error_number::kOverflow);
  return Date(serial);
}

Date Date::from_civil(const CivilTime& t) {
  if (!is_valid(t)) raise_error(error_number::kInvalidCall);
  const int day = serial_day(calendar_day(t));
  const double fraction =
      static_cast<double>(t.hour * 3600 + t.minute * 60 + t.second) / kSecondsPerDay;
  return Date(day < 0 ? day - fraction : day + fraction);
}

CivilTime Date::civil() const noexcept {
  const auto [day, second] = rounded(*this);
  const std::chrono::year_month_day ymd{kDayZero + std::chrono::days{day}};
  return {static_cast<int>(ymd.year()),
          static_cast<int>(static_cast<unsigned>(ymd.month())),
          static_cast<int>(static_cast<unsigned>(ymd.day())),
          second / 3600,
          second / 60 % 60,
          second % 60};
}

int Date::weekday() const noexcept {
  const std::chrono::weekday day{kDayZero + std::chrono::days{rounded(*this).day}};
  return static_cast<int>(day.c_encoding()) + 1;
}

}  // namespace pelm
