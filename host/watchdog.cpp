// The interrupt itself is the engine's; this only asks for it.
#include "host/watchdog.h"

#include <js/Interrupt.h>

#include <utility>

namespace pelm::host {

Watchdog::Watchdog(std::chrono::milliseconds period)
    : period_(period), thread_([this] { run(); }) {}

Watchdog::~Watchdog() {
  {
    const std::lock_guard guard(mutex_);
    ends_ = true;
  }
  changed_.notify_one();
  thread_.join();
}

void Watchdog::run() {
  std::unique_lock lock(mutex_);
  while (!ends_) {
    if (running_.empty()) {
      sleeps_ = true;
      changed_.wait(lock, [this] { return ends_ || !sleeps_; });
    } else if (!changed_.wait_for(lock, period_, [this] { return ends_; })) {
      for (JSContext* cx : running_) JS_RequestInterruptCallback(cx);
    }
  }
}

Watchdog::Watching::Watching(Watchdog& watchdog, JSContext* cx) : watchdog_(watchdog), cx_(cx) {
  bool slept = false;
  {
    const std::lock_guard guard(watchdog_.mutex_);
    watchdog_.running_.push_back(cx_);
    slept = std::exchange(watchdog_.sleeps_, false);
  }
  // Pages that follow one another within a period find it awake: it is woken once for them all.
  if (slept) watchdog_.changed_.notify_one();
}

Watchdog::Watching::~Watching() {
  const std::lock_guard guard(watchdog_.mutex_);
  std::erase(watchdog_.running_, cx_);
}

}  // namespace pelm::host
