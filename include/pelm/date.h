/// A date with time as the platform counts it.
///
/// Contents: `Date`, `CivilTime`. Formatting and reading texts: platform/value/date_text.h.
///
///     pelm::Date d = pelm::Date::from_civil({2008, 3, 5, 14, 7, 9});
///     d.serial();          // days since 30 December 1899, time as fraction
///     d.civil().hour;      // 14
///
/// Not for time zones: a Date is local time without a zone.
#pragma once

#include <compare>
#include <cstdint>

namespace pelm {

/// A calendar date with a time of day, to the second.
struct CivilTime {
  int year = 1899;  ///< 100 to 9999
  int month = 12;   ///< 1 to 12
  int day = 30;     ///< 1 to 31
  int hour = 0;     ///< 0 to 23
  int minute = 0;   ///< 0 to 59
  int second = 0;   ///< 0 to 59

  friend bool operator==(const CivilTime&, const CivilTime&) = default;
};

/// True when the day exists, the year lies in 100 to 9999 and the time is within a day.
bool is_valid(const CivilTime& t) noexcept;

/// Days since 30 December 1899, the time of day as a fraction. Before that day the fraction
/// counts forward from midnight all the same: -1.25 is 29 December 1899 06:00.
class Date {
 public:
  constexpr Date() = default;  ///< 30 December 1899 00:00:00

  /// Raises overflow (6) outside the years 100 to 9999.
  static Date from_serial(double serial);
  /// Raises invalid call (5) when `t` is not a valid date.
  static Date from_civil(const CivilTime& t);

  constexpr double serial() const noexcept { return serial_; }
  /// Rounded to the nearest second; the last second of the year 9999 is not left.
  CivilTime civil() const noexcept;
  /// Of the day that `civil()` shows. Sunday is 1, Saturday is 7.
  int weekday() const noexcept;

  /// By moment, not by serial: -0.25 and 0.25 are both 06:00 of day zero. Nothing is rounded.
  friend constexpr bool operator==(Date a, Date b) noexcept { return std::is_eq(a <=> b); }
  friend constexpr std::partial_ordering operator<=>(Date a, Date b) noexcept {
    if (const auto by_day = a.day() <=> b.day(); std::is_neq(by_day)) return by_day;
    return a.day_fraction() <=> b.day_fraction();
  }

 private:
  constexpr explicit Date(double serial) : serial_(serial) {}
  constexpr std::int32_t day() const noexcept { return static_cast<std::int32_t>(serial_); }
  constexpr double day_fraction() const noexcept {
    const double fraction = serial_ - day();
    return fraction < 0 ? -fraction : fraction;
  }
  double serial_ = 0.0;
};

}  // namespace pelm
