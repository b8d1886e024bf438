// The clock, and a thread's own.
#include "platform/value/clock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <thread>

namespace pelm {
namespace {

Date day(int d) { return Date::from_civil({2008, 3, d, 14, 7, 9}); }

std::time_t as_system_time(const CivilTime& t) {
  std::tm local{};
  local.tm_year = t.year - 1900;
  local.tm_mon = t.month - 1;
  local.tm_mday = t.day;
  local.tm_hour = t.hour;
  local.tm_min = t.minute;
  local.tm_sec = t.second;
  local.tm_isdst = -1;
  return std::mktime(&local);
}

void expect_system_time() {
  const std::time_t before = std::time(nullptr);
  const std::time_t now = as_system_time(clock_now().civil());
  const std::time_t after = std::time(nullptr);
  EXPECT_LE(before, now);
  EXPECT_LE(now, after);
}

TEST(Clock, IsTheSystemsLocalTimeInTheNextSecondToo) {
  expect_system_time();
  const std::time_t first = std::time(nullptr);
  while (std::time(nullptr) == first) std::this_thread::sleep_for(std::chrono::milliseconds(20));
  expect_system_time();
}

TEST(Clock, PartsAreTheDayAndTheTime) {
  const ScopedClock fixed(day(5));
  EXPECT_EQ(clock_now(), day(5));
  EXPECT_EQ(clock_today(), Date::from_civil({2008, 3, 5}));
  EXPECT_EQ(clock_time(), Date::from_civil({1899, 12, 30, 14, 7, 9}));
}

TEST(Clock, ReadsWholeSeconds) {
  const ScopedClock fixed(Date::from_serial(day(5).serial() + 0.3 / 86400));
  EXPECT_EQ(clock_now(), day(5));
}

TEST(Clock, AsksItsReadingEachTime) {
  int asked = 0;
  const ScopedClock counting([&] { return day(++asked); });
  EXPECT_EQ(clock_now(), day(1));
  EXPECT_EQ(clock_now(), day(2));
  EXPECT_EQ(clock_today(), Date::from_civil({2008, 3, 3}));
  EXPECT_EQ(asked, 3);
}

TEST(ScopedClock, Nests) {
  const ScopedClock outer(day(5));
  {
    const ScopedClock inner(day(6));
    EXPECT_EQ(clock_now(), day(6));
  }
  EXPECT_EQ(clock_now(), day(5));
}

TEST(ScopedClock, IsOfItsThreadAlone) {
  const ScopedClock fixed(day(5));
  Date elsewhere;
  std::thread([&] { elsewhere = clock_now(); }).join();
  EXPECT_GT(elsewhere, day(31));
}

}  // namespace
}  // namespace pelm
