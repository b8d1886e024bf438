// The threads that run pages.
#include "host/page_pool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <numeric>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/host/probe.h"
#include "tests/host/temporary_site.h"

namespace pelm::host {
namespace {

/// Lets nobody through before all have come.
class Meeting {
 public:
  explicit Meeting(int expected) : missing_(expected) {}
  void join() {
    std::unique_lock lock(mutex_);
    if (--missing_ == 0) all_here_.notify_all();
    all_here_.wait(lock, [this] { return missing_ == 0; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable all_here_;
  int missing_;
};

class PagePoolTest : public ::testing::Test {
 protected:
  PagePool::MakeRunner make_runner() {
    return [this] {
      return std::make_unique<PageRunner>(page::SiteRoot(site_.root()),
                                          testing::probe_hooks(ended_), ScriptLimits(), watchdog_);
    };
  }

 private:
  testing::TemporarySite site_;
  std::string ended_;
  std::shared_ptr<Watchdog> watchdog_ = std::make_shared<Watchdog>();
};

TEST_F(PagePoolTest, EveryThreadRunsAtOnce) {
  constexpr int kThreads = 4;
  PagePool pool(kThreads, make_runner());
  for (int round = 0; round < 10; ++round) {
    const auto all = std::make_shared<Meeting>(kThreads + 1);
    for (int i = 0; i < kThreads; ++i) pool.submit([all](PageRunner&) { all->join(); });
    all->join();  // never passed while one of them waits for another to end
  }
}

TEST_F(PagePoolTest, WhatWaitsForAThreadRunsInItsOrder) {
  std::vector<int> order;
  {
    PagePool pool(1, make_runner());
    const auto all_submitted = std::make_shared<Meeting>(2);
    pool.submit([all_submitted](PageRunner&) { all_submitted->join(); });
    for (int i = 0; i < 50; ++i) pool.submit([&, i](PageRunner&) { order.push_back(i); });
    all_submitted->join();
  }
  std::vector<int> wanted(50);
  std::iota(wanted.begin(), wanted.end(), 0);
  EXPECT_EQ(order, wanted);
}

TEST_F(PagePoolTest, AJobRunsWhoeverBecameIdleInBetween) {
  constexpr int kJobs = 20'000;
  std::atomic<int> run{0};
  {
    PagePool pool(3, make_runner());
    for (int i = 0; i < kJobs; ++i) pool.submit([&](PageRunner&) { ++run; });
  }
  EXPECT_EQ(run, kJobs);
}

TEST_F(PagePoolTest, TellsWhatKeptAThreadFromStarting) {
  std::atomic<int> made{0};
  const auto make = [&, runner = make_runner()] {
    if (++made == 2) throw std::runtime_error("sem memória");
    return runner();
  };
  try {
    const PagePool pool(3, make);
    ADD_FAILURE() << "started";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "sem memória");
  }
}

}  // namespace
}  // namespace pelm::host
