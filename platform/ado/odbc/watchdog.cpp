// The thread that watches, and the threads that cancel.
#include "platform/ado/odbc/watchdog.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace pelm::ado::odbc {
namespace {

using Clock = std::chrono::steady_clock;
using Ticks = std::int64_t;

constexpr Ticks kIdle = 0;
constexpr Ticks kCancelling = -1;
constexpr Ticks kNever = std::numeric_limits<Ticks>::max();

/// Between two attempts to cancel.
constexpr std::chrono::milliseconds kAgain{500};

Ticks now() { return Clock::now().time_since_epoch().count(); }
Ticks after(std::int32_t seconds) {
  return (Clock::now() + std::chrono::seconds(seconds)).time_since_epoch().count();
}

}  // namespace

struct Watch::Slot {
  std::atomic<Ticks> deadline{kIdle};
  SQLHSTMT statement = nullptr;  // written before the deadline is
  std::mutex mutex;
  std::condition_variable changed;
  bool returned = false;   // the call that was watched, for whoever cancels it
  bool cancelled = false;  // nobody cancels any more, for whoever made the call
};

namespace {

/// Until the call has returned: a statement takes several steps, and a cancellation that comes
/// between two of them meets nothing.
void cancel(const std::shared_ptr<Watch::Slot>& slot) {
  std::unique_lock lock(slot->mutex);
  do {
    lock.unlock();
    SQLCancel(slot->statement);
    lock.lock();
  } while (!slot->changed.wait_for(lock, kAgain, [&] { return slot->returned; }));
  slot->cancelled = true;
  slot->changed.notify_all();
}

void start_cancelling(const std::shared_ptr<Watch::Slot>& slot) {
  try {
    std::thread(cancel, slot).detach();
  } catch (const std::system_error&) {
    cancel(slot);  // no thread to be had: the other limits wait meanwhile
  }
}

/// Never destroyed: a session may end after every static object.
class Watcher {
 public:
  static Watcher& the_one() {
    static auto* const watcher = new Watcher;
    return *watcher;
  }

  void add(std::shared_ptr<Watch::Slot> slot) {
    const std::lock_guard lock(mutex_);
    if (!running_) {
      std::thread([this] { run(); }).detach();
      running_ = true;
    }
    slots_.push_back(std::move(slot));
  }

  void remove(const std::shared_ptr<Watch::Slot>& slot) {
    const std::lock_guard lock(mutex_);
    std::erase(slots_, slot);
  }

  /// Somebody armed a slot: wake earlier where that is due before everything else.
  void heed(Ticks deadline) {
    if (deadline >= next_look_.load()) return;
    const std::lock_guard lock(mutex_);
    if (deadline >= next_look_.load()) return;
    next_look_ = deadline;
    changed_.notify_all();
  }

 private:
  [[noreturn]] void run() {
    std::unique_lock lock(mutex_);
    for (;;) {
      // Set before the slots are read: whoever arms one from now on compares with this.
      next_look_ = kNever;
      Ticks earliest = kNever;
      const Ticks moment = now();
      for (const auto& slot : slots_) {
        Ticks deadline = slot->deadline.load();
        if (deadline == kIdle || deadline == kCancelling) continue;
        if (deadline > moment) {
          earliest = std::min(earliest, deadline);
        } else if (slot->deadline.compare_exchange_strong(deadline, kCancelling)) {
          start_cancelling(slot);
        }
      }
      if (earliest < next_look_.load()) next_look_ = earliest;
      if (next_look_.load() == kNever) {
        changed_.wait(lock);
      } else {
        changed_.wait_until(lock, Clock::time_point(Clock::duration(next_look_.load())));
      }
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::shared_ptr<Watch::Slot>> slots_;
  std::atomic<Ticks> next_look_{kNever};
  bool running_ = false;
};

}  // namespace

Watch::Watch() : slot_(std::make_shared<Slot>()) { Watcher::the_one().add(slot_); }

Watch::~Watch() {
  disarm();
  Watcher::the_one().remove(slot_);
}

void Watch::arm(SQLHSTMT statement, std::int32_t seconds) {
  if (seconds <= 0) return;
  slot_->statement = statement;
  const Ticks deadline = after(seconds);
  slot_->deadline.store(deadline);
  Watcher::the_one().heed(deadline);
}

bool Watch::disarm() {
  if (slot_->deadline.exchange(kIdle) != kCancelling) return false;
  std::unique_lock lock(slot_->mutex);
  slot_->returned = true;
  slot_->changed.notify_all();
  slot_->changed.wait(lock, [&] { return slot_->cancelled; });
  slot_->returned = slot_->cancelled = false;
  return true;
}

}  // namespace pelm::ado::odbc
