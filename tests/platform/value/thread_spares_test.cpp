// What threads keep for their next use.
#include "platform/value/thread_spares.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace pelm {
namespace {

/// Counts how many there are.
struct Counted {
  Counted() { ++alive; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() { --alive; }
  static inline int alive = 0;
};
using Owned = std::unique_ptr<Counted>;

// Each test on a thread of its own, which begins without spares.
void on_a_thread(void (*body)()) { std::thread(body).join(); }

TEST(ThreadSpares, GivesBackWhatWasKeptLast) {
  on_a_thread([] {
    using Spares = ThreadSpares<Owned, 2>;
    EXPECT_EQ(Spares::take(), nullptr);
    auto first = std::make_unique<Counted>();
    auto second = std::make_unique<Counted>();
    const Counted* const addresses[] = {first.get(), second.get()};
    Spares::keep(std::move(first));
    Spares::keep(std::move(second));
    EXPECT_EQ(Spares::take().get(), addresses[1]);
    EXPECT_EQ(Spares::take().get(), addresses[0]);
    EXPECT_EQ(Spares::take(), nullptr);
  });
}

TEST(ThreadSpares, KeepsNoMoreThanItsNumberAndNothingBeyondTheThread) {
  on_a_thread([] {
    for (int i = 0; i < 5; ++i) ThreadSpares<Owned, 3>::keep(std::make_unique<Counted>());
    EXPECT_EQ(Counted::alive, 3);
  });
  EXPECT_EQ(Counted::alive, 0);
}

TEST(ThreadSpares, AreEachThreadsOwn) {
  on_a_thread([] {
    ThreadSpares<Owned, 4>::keep(std::make_unique<Counted>());
    on_a_thread([] { EXPECT_EQ((ThreadSpares<Owned, 4>::take()), nullptr); });
    EXPECT_NE((ThreadSpares<Owned, 4>::take()), nullptr);
  });
}

TEST(ThreadSpares, MayBeAskedAfterTheyHaveGone) {
  struct GoesLater {
    ~GoesLater() {
      ThreadSpares<Owned, 5>::keep(std::make_unique<Counted>());
      EXPECT_EQ((ThreadSpares<Owned, 5>::take()), nullptr);
    }
  };
  on_a_thread([] {
    thread_local GoesLater later;  // made before the spares, so it goes after them
    (void)later;
    ThreadSpares<Owned, 5>::keep(std::make_unique<Counted>());
  });
  EXPECT_EQ(Counted::alive, 0);
}

TEST(SpareMemory, IsUsedForTheNextObjectOfItsType) {
  on_a_thread([] {
    SpareMemory<long> memory;
    long* const one = memory.allocate(1);
    memory.deallocate(one, 1);
    EXPECT_EQ(memory.allocate(1), one);
    memory.deallocate(one, 1);
    long* const several = memory.allocate(3);
    EXPECT_NE(several, one);
    memory.deallocate(several, 3);
    const std::shared_ptr<int> shared = std::allocate_shared<int>(SpareMemory<int>(), 7);
    EXPECT_EQ(*shared, 7);
  });
}

}  // namespace
}  // namespace pelm
