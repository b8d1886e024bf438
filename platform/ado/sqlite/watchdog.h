/// The time limit of a session's statements: how long one waits for other writers and how long it
/// may run.
#pragma once

#include <chrono>
#include <cstdint>

struct sqlite3;

namespace pelm::ado::sqlite {

/// Installed on one engine connection, whose thread it shares. The clock starts with the first
/// wait or the first few thousand steps of a statement, so a short statement never reads it.
class Watchdog {
 public:
  Watchdog() = default;
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;

  void install(sqlite3* db);
  /// Seconds for each statement from now on; 0 waits for ever.
  void limit(std::int32_t seconds) { limit_ = std::chrono::seconds(seconds); }
  std::int64_t seconds() const { return limit_.count(); }
  /// Before each statement, and before each further row of one.
  void restart() { running_ = false; }

 private:
  bool expired();
  bool wait(int waits);

  std::chrono::seconds limit_{30};
  std::chrono::steady_clock::time_point start_;
  std::uint32_t random_ = 0;
  bool running_ = false;
};

}  // namespace pelm::ado::sqlite
