// The time limit of a session's statements.
#include "platform/ado/sqlite/watchdog.h"

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <thread>
#include <utility>

namespace pelm::ado::sqlite {
namespace {

constexpr int kStepsBetweenLooks = 4000;  // some 100 µs of the engine's own steps

// A waiting writer looks again after a short time that differs from everybody else's. The
// engine's own handler soon waits 100 ms at a time: among busy writers it would come too late
// again and again.
constexpr std::uint32_t kFirstWaitMicroseconds = 100;
constexpr std::uint32_t kLongestWaitMicroseconds = 2000;

}  // namespace

void Watchdog::install(sqlite3* db, std::function<bool()> waits_for_itself) {
  waits_for_itself_ = std::move(waits_for_itself);
  random_ = static_cast<std::uint32_t>(getpid()) * 2654435761U ^
            static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(this) >> 4U) ^
            static_cast<std::uint32_t>(std::chrono::steady_clock::now().time_since_epoch().count());
  random_ |= 1U;
  sqlite3_busy_handler(
      db, [](void* self, int waits) { return static_cast<Watchdog*>(self)->wait(waits) ? 1 : 0; },
      this);
  sqlite3_progress_handler(
      db, kStepsBetweenLooks,
      [](void* self) { return static_cast<Watchdog*>(self)->expired() ? 1 : 0; }, this);
}

bool Watchdog::expired() {
  if (limit_.count() == 0) return false;
  const auto now = std::chrono::steady_clock::now();
  if (state_ == State::Ready) {
    state_ = State::Running;
    start_ = now;
  }
  return now - start_ >= limit_;
}

bool Watchdog::wait(int waits) {
  if (expired()) return false;
  if (waits_for_itself_()) {
    state_ = State::Hopeless;
    return false;
  }
  random_ ^= random_ << 13U;
  random_ ^= random_ >> 17U;
  random_ ^= random_ << 5U;
  const std::uint32_t longest =
      std::min(kLongestWaitMicroseconds, kFirstWaitMicroseconds << std::min(waits, 8));
  std::this_thread::sleep_for(std::chrono::microseconds(longest / 4 + random_ % longest));
  return true;
}

}  // namespace pelm::ado::sqlite
