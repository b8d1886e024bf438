/// What the C interface's numbers stand for: objects, class objects and pages, each with the
/// thread it belongs to.
///
/// A number is a place in a table and a count of how often the place was used, so a released or
/// invented number is told from a good one. Safe from any thread.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "pelm/object.h"

namespace pelm::c_api {

class Handles {
 public:
  static Handles& instance();

  /// A number for one reference to `object`, which belongs to the calling thread from now on.
  std::uint64_t add(ObjectRef object);
  /// The object behind a number. Raises invalid call (5) for a number that stands for nothing and
  /// for one of another thread.
  ObjectRef find(std::uint64_t handle);
  /// Lets a reference go: at once on its own thread, otherwise when that thread calls next or
  /// ends. Raises invalid call (5) for a number that stands for nothing.
  void release(std::uint64_t handle);
  bool empty();

  /// Lets go what other threads released of this thread's objects.
  void release_left_behind();
  /// Lets go everything of a thread that ends.
  void thread_ends() noexcept;

 private:
  struct Slot {
    std::uint32_t uses = 1;
    ObjectRef object;  // null: free, or waiting for its thread when `left_behind`
    std::thread::id owner;
    bool left_behind = false;
  };

  Slot& used_slot(std::uint64_t handle);
  ObjectRef take(Slot& slot, std::size_t index);

  std::mutex mutex_;
  std::vector<Slot> slots_;
  std::vector<std::size_t> free_;
  std::atomic<std::size_t> left_behind_ = 0;  ///< changed under the lock
};

}  // namespace pelm::c_api
