// A visitor's variables, and the moment at which a session begins.
#include "platform/page/session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

#include "platform/page/application.h"
#include "tests/platform/page/expect_error.h"

namespace pelm::page {
namespace {

using ::testing::ElementsAre;
using testing::error_of;

TEST(Session, KeepsValuesByNameWithoutCase) {
  Session session("id");
  session.Value("usuário", "Ana");
  EXPECT_EQ(session.Value("USUÁRIO"), Variant("Ana"));
  EXPECT_TRUE(session.Value("outro").is_empty());
  session.Value("b", std::int32_t{5});
  EXPECT_THAT(session.Names(), ElementsAre("usuário", "b"));
  session.Remove("B");
  EXPECT_THAT(session.Names(), ElementsAre("usuário"));
  session.RemoveAll();
  EXPECT_TRUE(session.Names().empty());
}

TEST(Session, RefusesAnObject) {
  Session session("id");
  EXPECT_EQ(error_of([&] { session.Value("o", std::make_shared<Application>()); }),
            error_number::kInvalidCall);
}

TEST(Session, BeginsOnceAtTheFirstWriteAndNeverByReading) {
  int begun = 0;
  Session session("id", [&] { ++begun; });
  (void)session.Value("a");
  (void)session.Names();
  session.Remove("a");
  EXPECT_EQ(session.id(), "id");
  EXPECT_EQ(begun, 0);
  session.Value("a", true);
  session.Value("b", true);
  EXPECT_EQ(session.SessionID(), "id");
  EXPECT_EQ(begun, 1);
}

TEST(Session, AskingForTheIdBeginsIt) {
  int begun = 0;
  const Session session("id", [&] { ++begun; });
  (void)session.SessionID();
  EXPECT_EQ(begun, 1);
}

TEST(Session, AWriteThatCannotBeginFailsAndWritesNothing) {
  bool head_is_gone = true;
  Session session("id", [&] {
    if (head_is_gone) raise_error(error_number::kInvalidCall);
  });
  EXPECT_EQ(error_of([&] { session.Value("a", true); }), error_number::kInvalidCall);
  EXPECT_TRUE(session.Value("a").is_empty());
  head_is_gone = false;
  session.Value("a", true);
  EXPECT_EQ(session.Value("a"), Variant(true));
}

TEST(Session, TimeoutIsFrom1To1440Minutes) {
  Session session("id");
  EXPECT_EQ(session.Timeout(), 20);
  for (const int bad : {0, -1, 1441}) {
    EXPECT_EQ(error_of([&] { session.Timeout(bad); }), error_number::kInvalidCall);
  }
  session.Timeout(1440);
  EXPECT_EQ(session.Timeout(), 1440);
}

TEST(Session, AbandonIsRemembered) {
  Session session("id");
  EXPECT_FALSE(session.abandoned());
  session.Abandon();
  EXPECT_TRUE(session.abandoned());
}

TEST(Session, IsSafeFromSeveralThreads) {
  Session session("id");
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&session, t] {
      for (int i = 0; i < 200; ++i) {
        session.Value("v" + std::to_string(t), i);
        (void)session.Value("v0");
        (void)session.Names();
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(session.Names().size(), 4U);
}

}  // namespace
}  // namespace pelm::page
