// Sessions: ids, time-outs by a clock of the test, and the limit on their number.
#include "host/session_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "pelm/error.h"

namespace pelm::host {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;
using ::testing::MatchesRegex;

class SessionStoreTest : public ::testing::Test {
 protected:
  std::shared_ptr<page::Session> begun() {
    auto session = store_.fresh([](const std::string&) {});
    session->Value("x", true);
    return session;
  }

  SessionStore::Clock::time_point now_ = SessionStore::Clock::now();
  SessionStore store_{3, [this] { return now_; }};
};

TEST_F(SessionStoreTest, KeepsASessionFromItsFirstWrite) {
  std::string told;
  const auto session = store_.fresh([&](const std::string& id) { told = id; });
  EXPECT_EQ(store_.size(), 0U);
  EXPECT_EQ(store_.find(session->id()), nullptr);
  session->Value("x", "y");
  EXPECT_EQ(told, session->id());
  EXPECT_EQ(store_.find(told), session);
}

TEST_F(SessionStoreTest, IdsAreHexadecimalAndNeverTheSame) {
  std::set<std::string> ids;
  for (int i = 0; i < 1000; ++i) {
    const auto session = store_.fresh([](const std::string&) {});
    EXPECT_THAT(session->id(), MatchesRegex("[0-9a-f]+"));
    EXPECT_EQ(session->id().size(), 32U);
    EXPECT_TRUE(ids.insert(session->id()).second);
  }
}

TEST_F(SessionStoreTest, ASessionThatCannotBeginIsNotKept) {
  const auto session =
      store_.fresh([](const std::string&) { raise_error(error_number::kInvalidCall); });
  EXPECT_THROW(session->Value("x", true), Error);
  EXPECT_EQ(store_.size(), 0U);
}

TEST_F(SessionStoreTest, ForgetsWhatWasNotUsedForItsTimeout) {
  const auto session = begun();
  const std::string id = session->id();
  now_ += minutes(20);
  EXPECT_EQ(store_.find(id), session);
  now_ += minutes(20);
  EXPECT_EQ(store_.find(id), session);
  now_ += minutes(20) + seconds(1);
  EXPECT_EQ(store_.find(id), nullptr);
  EXPECT_EQ(store_.size(), 0U);
}

TEST_F(SessionStoreTest, APageMayChangeTheTimeout) {
  const auto session = begun();
  session->Timeout(1);
  now_ += minutes(2);
  EXPECT_EQ(store_.find(session->id()), nullptr);
}

TEST_F(SessionStoreTest, ForgetsExpiredOnesWithoutBeingAskedForThem) {
  begun();
  begun();
  now_ += minutes(21);
  begun();
  EXPECT_EQ(store_.size(), 1U);
}

TEST_F(SessionStoreTest, BeyondTheLimitTheLongestUnusedGoes) {
  const auto first = begun();
  now_ += seconds(1);
  const auto second = begun();
  now_ += seconds(1);
  const auto third = begun();
  now_ += seconds(1);
  EXPECT_EQ(store_.find(first->id()), first);
  const auto fourth = begun();
  EXPECT_EQ(store_.size(), 3U);
  EXPECT_EQ(store_.find(second->id()), nullptr);
  EXPECT_EQ(store_.find(first->id()), first);
}

TEST_F(SessionStoreTest, AnAbandonedSessionGoesWhenItsPageEnds) {
  const auto session = begun();
  store_.page_ended(*session);
  EXPECT_EQ(store_.size(), 1U);
  session->Abandon();
  EXPECT_EQ(store_.find(session->id()), session);
  store_.page_ended(*session);
  EXPECT_EQ(store_.find(session->id()), nullptr);
}

TEST_F(SessionStoreTest, IsSafeFromSeveralThreads) {
  SessionStore store(100);
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&store] {
      for (int i = 0; i < 200; ++i) {
        const auto session = store.fresh([](const std::string&) {});
        session->Value("i", i);
        (void)store.find(session->id());
        if (i % 2 == 0) session->Abandon();
        store.page_ended(*session);
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_LE(store.size(), 100U);
}

}  // namespace
}  // namespace pelm::host
