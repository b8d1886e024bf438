// The thread's clock.
#include "platform/value/clock.h"

#include <ctime>
#include <optional>
#include <utility>

namespace pelm {
namespace {

ScopedClock::Reading& thread_reading() {
  thread_local ScopedClock::Reading reading;
  return reading;
}

Date at_second(std::time_t second) {
  std::tm local{};
  localtime_r(&second, &local);
  if (local.tm_sec > 59) local.tm_sec = 59;  // a leap second has no place in a Date
  return Date::from_civil({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                           local.tm_min, local.tm_sec});
}

// A page asks several times within a second, and finding out costs as much as storing five values.
Date system_now() {
  struct Known {
    std::time_t second;
    Date date;
  };
  thread_local std::optional<Known> last;
  const std::time_t second = std::time(nullptr);
  if (!last || last->second != second) last = {second, at_second(second)};
  return last->date;
}

}  // namespace

Date clock_now() {
  const ScopedClock::Reading& reading = thread_reading();
  return reading ? Date::from_civil(reading().civil()) : system_now();
}

Date clock_today() {
  const CivilTime now = clock_now().civil();
  return Date::from_civil({now.year, now.month, now.day});
}

Date clock_time() {
  CivilTime time;
  const CivilTime now = clock_now().civil();
  time.hour = now.hour;
  time.minute = now.minute;
  time.second = now.second;
  return Date::from_civil(time);
}

ScopedClock::ScopedClock(Reading reading)
    : previous_(std::exchange(thread_reading(), std::move(reading))) {}

ScopedClock::ScopedClock(Date always) : ScopedClock([always] { return always; }) {}

ScopedClock::~ScopedClock() { thread_reading() = std::move(previous_); }

}  // namespace pelm
