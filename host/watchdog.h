/// Wakes running scripts at short intervals, so that they look at their limits.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

struct JSContext;  // the engine's; pages and tests see none of its headers

namespace pelm::host {

/// One thread for any number of script contexts; it sleeps while no page runs.
class Watchdog {
 public:
  explicit Watchdog(std::chrono::milliseconds period = std::chrono::milliseconds(20));
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;
  ~Watchdog();

  /// Wakes a context for as long as it lives.
  class Watching {
   public:
    Watching(Watchdog& watchdog, JSContext* cx);
    Watching(const Watching&) = delete;
    Watching& operator=(const Watching&) = delete;
    ~Watching();

   private:
    Watchdog& watchdog_;
    JSContext* cx_;
  };

 private:
  void run();

  const std::chrono::milliseconds period_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<JSContext*> running_;
  bool sleeps_ = false;  // until something runs; the thread that makes it run wakes this one
  bool ends_ = false;
  std::thread thread_;
};

}  // namespace pelm::host
