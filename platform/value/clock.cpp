// The thread's clock.
#include "platform/value/clock.h"

#include <ctime>
#include <utility>

namespace pelm {
namespace {

ScopedClock::Reading& thread_reading() {
  thread_local ScopedClock::Reading reading;
  return reading;
}

Date system_now() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  if (local.tm_sec > 59) local.tm_sec = 59;  // a leap second has no place in a Date
  return Date::from_civil({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                           local.tm_min, local.tm_sec});
}

CivilTime civil_now() {
  const ScopedClock::Reading& reading = thread_reading();
  return (reading ? reading() : system_now()).civil();
}

}  // namespace

Date clock_now() { return Date::from_civil(civil_now()); }

Date clock_today() {
  const CivilTime now = civil_now();
  return Date::from_civil({now.year, now.month, now.day});
}

Date clock_time() {
  CivilTime time;
  const CivilTime now = civil_now();
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
