// The application's variables: one for the process, locked by pages.
#include "platform/page/application.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "tests/platform/page/expect_error.h"

namespace pelm::page {
namespace {

using ::testing::ElementsAre;
using testing::error_of;

TEST(Application, AMissingVariableReadsEmpty) {
  const Application application;
  EXPECT_TRUE(application.Value("dataconn_Database").is_empty());
}

TEST(Application, NamesCompareWithoutCaseAndKeepTheirFirstSpelling) {
  Application application;
  application.Value("Versão", std::int32_t{1});
  application.Value("VERSÃO", std::int32_t{2});
  application.Value("outra", "x");
  EXPECT_EQ(application.Value("versão"), Variant(std::int32_t{2}));
  EXPECT_THAT(application.Names(), ElementsAre("Versão", "outra"));
}

TEST(Application, RemovesOneAndAll) {
  Application application;
  application.Value("a", true);
  application.Value("b", true);
  application.Remove("A");
  application.Remove("never there");
  EXPECT_THAT(application.Names(), ElementsAre("b"));
  application.RemoveAll();
  EXPECT_TRUE(application.Names().empty());
}

TEST(Application, RefusesAnObjectAlsoInsideAnArray) {
  Application application;
  const ObjectRef object = std::make_shared<Application>();
  EXPECT_EQ(error_of([&] { application.Value("o", object); }), error_number::kInvalidCall);
  EXPECT_EQ(error_of([&] { application.Value("o", Variant::Elements{object}); }),
            error_number::kInvalidCall);
  EXPECT_TRUE(application.Value("o").is_empty());
  application.Value("nothing", ObjectRef());
  EXPECT_TRUE(application.Value("nothing").is_object());
}

TEST(Application, LockLetsOnePageAtATimeReadAndWrite) {
  Application application;
  application.Value("n", std::int32_t{0});
  constexpr int kThreads = 4;
  constexpr int kRounds = 500;
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&application] {
      for (int round = 0; round < kRounds; ++round) {
        application.Lock();
        application.Value("n", application.Value("n").long_value() + 1);
        application.Unlock();
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(application.Value("n").long_value(), kThreads * kRounds);
}

TEST(Application, UnlockAllReleasesEveryNestedLockOfThisThread) {
  Application application;
  EXPECT_FALSE(application.unlock_all());
  application.Lock();
  application.Lock();
  EXPECT_TRUE(application.unlock_all());
  std::atomic<bool> entered{false};
  std::thread other([&] {
    application.Lock();
    entered = true;
    application.Unlock();
  });
  other.join();
  EXPECT_TRUE(entered);
}

TEST(Application, UnlockByAThreadThatHoldsNothingReleasesNoOne) {
  Application application;
  application.Lock();
  std::atomic<bool> entered{false};
  std::thread stranger([&] { application.Unlock(); });
  stranger.join();
  std::thread waiting([&] {
    application.Lock();
    entered = true;
    application.Unlock();
  });
  EXPECT_FALSE(entered);
  application.Unlock();
  waiting.join();
  EXPECT_TRUE(entered);
}

}  // namespace
}  // namespace pelm::page
