/// The time limit of a session's statements: how long one waits for other writers and how long it
/// may run.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

struct sqlite3;

namespace pelm::ado::sqlite {

/// Installed on one engine connection, whose thread it shares. The clock starts with the first
/// wait or the first few thousand steps of a statement, so a short statement never reads it.
class Watchdog {
 public:
  Watchdog() = default;
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;

  /// `waits_for_itself` tells of a wait that only the waiting thread could end: it is given up at
  /// once.
  void install(sqlite3* db, std::function<bool()> waits_for_itself);
  /// Seconds for each statement from now on; 0 waits for ever.
  void limit(std::int32_t seconds) { limit_ = std::chrono::seconds(seconds); }
  std::int64_t seconds() const { return limit_.count(); }
  /// Before each statement, and before each further row of one.
  void restart() { state_ = State::Ready; }
  /// Whether the statement was given up because it waited for its own thread.
  bool waited_for_itself() const { return state_ == State::Hopeless; }

 private:
  enum class State : std::uint8_t { Ready, Running, Hopeless };

  bool expired();
  bool wait(int waits);

  std::chrono::seconds limit_{30};
  std::chrono::steady_clock::time_point start_;
  std::function<bool()> waits_for_itself_;
  std::uint32_t random_ = 0;
  State state_ = State::Ready;
};

}  // namespace pelm::ado::sqlite
