// Lending sessions: reuse, reset, bounds, lost sessions, and many threads at once.
#include "platform/ado/session_pool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "pelm/error.h"

namespace pelm::ado {
namespace {

/// What the sessions of a provider went through.
struct Tally {
  std::atomic<int> opened = 0;
  std::atomic<int> closed = 0;
  std::atomic<int> reset = 0;
  std::atomic<int> looked_at = 0;
  std::atomic<bool> lost = false;
  std::atomic<int> shared_use = 0;  // a session found in use by two threads at once
};

/// Only opens, resets and closes: what a pool is about.
class PlainSession final : public Session {
 public:
  explicit PlainSession(Tally& tally) : number(++tally.opened), tally_(tally) {}
  ~PlainSession() override { ++tally_.closed; }

  void command_timeout(std::int32_t) override {
    if (in_use_.exchange(true)) ++tally_.shared_use;
    std::this_thread::yield();
    in_use_ = false;
  }
  std::unique_ptr<Cursor> execute(std::string_view, std::span<const Variant>) override {
    raise_error(error_number::kProviderFailure);
  }
  ColumnList describe(std::string_view) override { return no_columns(); }
  std::string quoted(std::string_view identifier) const override { return std::string(identifier); }
  void call(std::string_view, std::span<ProcedureArgument>) override {}
  void begin(IsolationLevelEnum) override {}
  void commit() override {}
  void rollback() override {}
  bool reset() noexcept override {
    ++tally_.reset;
    return !tally_.lost;
  }
  bool still_good() noexcept override {
    ++tally_.looked_at;
    return !tally_.lost;
  }

  const int number;  ///< of the openings; an address may come again

 private:
  Tally& tally_;
  std::atomic<bool> in_use_ = false;
};

class PlainProvider final : public Provider {
 public:
  std::string_view name() const override { return "PoolTest"; }
  std::unique_ptr<Session> connect(const SessionSettings& settings) override {
    if (settings.properties.find("fail") != nullptr) raise_error(error_number::kLoginFailed);
    return std::make_unique<PlainSession>(tally);
  }
  std::string pool_key(const SessionSettings& settings) const override {
    if (settings.properties.find("private") != nullptr) return {};
    return settings.properties.canonical() + std::to_string(settings.mode);
  }
  Tally tally;
};

class SessionPool : public ::testing::Test {
 protected:
  SessionPool() { empty_session_pool(); }
  ~SessionPool() override {
    empty_session_pool();
    EXPECT_EQ(session_counts().in_use, 0U);
    EXPECT_EQ(provider_->tally.opened, provider_->tally.closed);
  }

  SessionLease acquire(std::string_view text = "a=1") {
    return acquire_session(provider_, {.properties = ConnectionString::parse(text)}, text);
  }
  Tally& tally() { return provider_->tally; }
  static int number_of(const SessionLease& lease) {
    return dynamic_cast<const PlainSession&>(lease.session()).number;
  }

  std::shared_ptr<PlainProvider> provider_ = std::make_shared<PlainProvider>();
};

TEST_F(SessionPool, HandsOutTheSameSessionAgain) {
  const Session* first = &acquire().session();
  EXPECT_EQ(&acquire().session(), first);
  EXPECT_EQ(tally().opened, 1);
}

TEST_F(SessionPool, ResetsWhenGivenBackAndLooksWhenHandedOut) {
  acquire();
  EXPECT_EQ(tally().reset, 1);
  EXPECT_EQ(tally().looked_at, 0);
  acquire();
  EXPECT_EQ(tally().reset, 2);
  EXPECT_EQ(tally().looked_at, 1);
}

TEST_F(SessionPool, NeverLendsASessionTwice) {
  const SessionLease a = acquire();
  const SessionLease b = acquire();
  EXPECT_NE(&a.session(), &b.session());
  EXPECT_EQ(session_counts().in_use, 2U);
}

TEST_F(SessionPool, KeepsKindsApart) {
  acquire("a=1");
  acquire("a=2");
  acquire("A = 1");
  EXPECT_EQ(tally().opened, 2);
}

TEST_F(SessionPool, KeepsProvidersApart) {
  acquire();
  const auto other = std::make_shared<PlainProvider>();
  acquire_session(other, {.properties = ConnectionString::parse("a=1")}, "a=1");
  EXPECT_EQ(other->tally.opened, 1);
  empty_session_pool(other.get());
  EXPECT_EQ(other->tally.closed, 1);
  EXPECT_EQ(session_counts().idle, 1U);
}

class SessionPoolByWords : public SessionPool {
 protected:
  SessionPoolByWords() { register_provider(provider_); }
  ~SessionPoolByWords() override { register_provider(std::make_shared<PlainProvider>()); }
};

TEST_F(SessionPoolByWords, HandsOutTheSessionLastAskedForWithTheSameWords) {
  const Session* first = &acquire("a=1").session();
  EXPECT_FALSE(acquire_session_again("A = 1"));
  EXPECT_EQ(&acquire_session_again("a=1").session(), first);
  EXPECT_EQ(&acquire("A = 1").session(), first);  // the same thing in other words
  EXPECT_EQ(&acquire_session_again("A = 1").session(), first);
  EXPECT_FALSE(acquire_session_again("a=1"));
  EXPECT_EQ(tally().opened, 1);
}

TEST_F(SessionPoolByWords, LooksAtWhatItHandsOutAndDropsWhatIsLost) {
  acquire("a=1");
  EXPECT_TRUE(acquire_session_again("a=1"));
  EXPECT_EQ(tally().looked_at, 1);
  tally().lost = true;
  EXPECT_FALSE(acquire_session_again("a=1"));
  EXPECT_EQ(tally().closed, 1);
}

TEST_F(SessionPoolByWords, HasNoneOfAProviderThatWasReplaced) {
  SessionLease lease = acquire("a=1");
  register_provider(std::make_shared<PlainProvider>());
  lease.give_back();
  EXPECT_FALSE(acquire_session_again("a=1"));
}

TEST_F(SessionPool, NeverKeepsASessionWithoutAKey) {
  acquire("private=1");
  EXPECT_EQ(session_counts().idle, 0U);
  EXPECT_EQ(tally().closed, 1);
}

TEST_F(SessionPool, ResetsASessionWithoutAKeyBeforeItCloses) {
  acquire("private=1");
  EXPECT_EQ(tally().reset, 1);
}

TEST_F(SessionPool, DropsASessionLostWhileInUse) {
  {
    const SessionLease lease = acquire();
    tally().lost = true;
  }
  EXPECT_EQ(session_counts().idle, 0U);
  EXPECT_EQ(tally().closed, 1);
}

TEST_F(SessionPool, DropsEverySessionLostWhileIdle) {
  {
    const SessionLease a = acquire();
    const SessionLease b = acquire();
  }
  tally().lost = true;
  const SessionLease fresh = acquire();
  EXPECT_EQ(tally().closed, 2);
  EXPECT_EQ(tally().opened, 3);
  tally().lost = false;
}

TEST_F(SessionPool, CountsNothingWhenOpeningFails) {
  EXPECT_THROW(acquire("fail=1"), Error);
  EXPECT_EQ(session_counts().in_use, 0U);
}

TEST_F(SessionPool, KeepsALimitedNumberIdle) {
  std::vector<SessionLease> leases;
  for (std::size_t i = 0; i < kMaxIdleSessions + 5; ++i) leases.push_back(acquire());
  const int longest_idle = number_of(leases.front());
  for (SessionLease& lease : leases) lease.give_back();
  EXPECT_EQ(session_counts().idle, kMaxIdleSessions);
  EXPECT_EQ(tally().closed, 5);
  for (SessionLease& lease : leases) {
    lease = acquire();
    EXPECT_NE(number_of(lease), longest_idle) << "the longest idle should have gone";
  }
}

TEST_F(SessionPool, EmptyingLeavesSessionsInUseAlone) {
  SessionLease lease = acquire();
  acquire("a=2");
  empty_session_pool();
  EXPECT_EQ(session_counts().idle, 0U);
  EXPECT_EQ(session_counts().in_use, 1U);
  EXPECT_EQ(tally().closed, 1);
  lease.give_back();
  EXPECT_EQ(session_counts().idle, 1U);
}

TEST_F(SessionPool, AMovedLeaseGivesBackOnce) {
  SessionLease a = acquire();
  SessionLease b = std::move(a);
  a.give_back();  // NOLINT(bugprone-use-after-move): a moved-from lease holds nothing
  EXPECT_EQ(session_counts().in_use, 1U);
  b = SessionLease();
  EXPECT_EQ(session_counts().in_use, 0U);
  EXPECT_EQ(session_counts().idle, 1U);
}

TEST_F(SessionPool, ReplacingAProviderClosesItsIdleSessions) {
  register_provider(provider_);
  acquire();
  register_provider(std::make_shared<PlainProvider>());
  EXPECT_EQ(tally().closed, 1);
}

TEST_F(SessionPool, LendsToOneThreadAtATime) {
  constexpr int kThreads = 8;
  constexpr int kRounds = 400;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([this, t] {
      for (int i = 0; i < kRounds; ++i) {
        const SessionLease lease = acquire(i % 3 == 0 ? "a=1" : "a=2");
        lease.session().command_timeout(t);
        if (i % 100 == 0) empty_session_pool();
        if (t == 0 && i % 50 == 0) tally().lost = !tally().lost;
      }
    });
  }
  for (std::thread& t : threads) t.join();
  tally().lost = false;
  EXPECT_EQ(tally().shared_use, 0);
  EXPECT_EQ(session_counts().in_use, 0U);
}

}  // namespace
}  // namespace pelm::ado
