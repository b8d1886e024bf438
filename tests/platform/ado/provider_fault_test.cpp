// What stands after any call of the database fails: nothing leaked, nothing half done.
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "pelm/ado/command.h"
#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "pelm/error.h"
#include "platform/ado/session_pool.h"
#include "support/engine.h"
#include "support/faulty_provider.h"
#include "support/raised.h"

namespace pelm::ado {
namespace {

using test::number_raised;
using test::raised;
namespace number = error_number;

class ProviderFault : public test::DatabaseTest {
 protected:
  void SetUp() override {
    DatabaseTest::SetUp();
    if (connection == nullptr) return;
    create_pessoa();
    add_pessoa(1, "Ana");
    add_pessoa(2, "Bia");
    connection.reset();
    faulty_ = std::make_unique<test::FaultyProvider>(GetParam().provider);
  }
  void TearDown() override {
    faulty_.reset();
    DatabaseTest::TearDown();
  }

  /// Makes call 1 of the operation fail, then 2, and so on until a run meets no fault. Each failed
  /// run must raise the provider's error and leave no session in use.
  void fail_each_call(const std::function<void(Connection&)>& operation, std::size_t at_least) {
    std::size_t n = 1;
    for (;; ++n) {
      empty_session_pool();
      faulty_->fail_at(n, test::provider_failure());
      const auto e = raised([&] {
        const auto c = connect();
        operation(*c);
        c->Close();
      });
      EXPECT_EQ(session_counts().in_use, 0U) << "after a fault at call " << n;
      const bool met = faulty_->failed();
      faulty_->stop();
      if (!met) {
        EXPECT_FALSE(e) << e->what();
        break;
      }
      ASSERT_TRUE(e) << "the fault at call " << n << " was swallowed";
      EXPECT_EQ(e->number(), number::kProviderFailure);
      EXPECT_EQ(e->source(), "Test provider");
    }
    EXPECT_GT(n, at_least) << "fewer calls than the operation must make";
  }

  std::shared_ptr<Recordset> opened(Connection& c, std::string_view text, std::int32_t kind) {
    auto rs = std::make_shared<Recordset>();
    rs->Open(text, std::static_pointer_cast<Connection>(c.shared_from_this()), adOpenKeyset,
             adLockOptimistic, kind);
    return rs;
  }

  std::unique_ptr<test::FaultyProvider> faulty_;
};

TEST_P(ProviderFault, WhileReadingAQuery) {
  fail_each_call(
      [&](Connection& c) {
        const auto rs = opened(c, "select * from pessoa order by oid", adCmdText);
        EXPECT_EQ(rs->RecordCount(), 2);
      },
      5);  // connect, execute, three fetches
}

TEST_P(ProviderFault, WhileAddingARow) {
  int oid = 100;
  fail_each_call(
      [&](Connection& c) {
        const auto rs = opened(c, "pessoa", adCmdTable);
        rs->AddNew();
        rs->Fields("oid") = ++oid;
        rs->Fields("nome") = "x";
        const auto e = raised([&] { rs->Update(); });
        if (e) {
          EXPECT_EQ(rs->EditMode(), adEditAdd);
          EXPECT_EQ(number_raised([&] { rs->Close(); }), number::kNotAllowedInContext);
          throw Error(*e);
        }
        rs->Close();
      },
      3);
  EXPECT_EQ(stored("select count(*) from pessoa where oid > 100"), Variant(1));
}

TEST_P(ProviderFault, WhileChangingARow) {
  fail_each_call(
      [&](Connection& c) {
        const auto rs = opened(c, "select * from pessoa where oid = 1", adCmdText);
        rs->Fields("nome") = rs->Fields("nome").Value().text() + "!";
        const auto e = raised([&] { rs->Update(); });
        if (e) {
          EXPECT_EQ(rs->EditMode(), adEditInProgress);
          throw Error(*e);
        }
      },
      5);
  EXPECT_EQ(stored("select nome from pessoa where oid = 1"), Variant("Ana!"));
}

TEST_P(ProviderFault, WhileReadingATableLate) {
  fail_each_call(
      [&](Connection& c) {
        const auto rs = opened(c, "pessoa", adCmdTable);
        const auto e = raised([&] { EXPECT_FALSE(rs->Eof()); });
        if (!e) return;
        EXPECT_EQ(rs->State(), adStateOpen);
        rs->MoveFirst();  // the next attempt reads every row
        EXPECT_EQ(rs->RecordCount(), 2);
        throw Error(*e);
      },
      5);
}

TEST_P(ProviderFault, InATransactionRollsBackOnRelease) {
  fail_each_call(
      [&](Connection& c) {
        c.BeginTrans();
        c.Execute("delete from pessoa where oid = 2");
        c.Execute("insert into pessoa (oid, nome) values (2, 'de novo')");
        c.CommitTrans();
      },
      5);
  EXPECT_EQ(stored("select count(*) from pessoa"), Variant(2));
  EXPECT_EQ(stored("select nome from pessoa where oid = 2"), Variant("de novo"));
}

TEST_P(ProviderFault, FromThenOnLeavesEverythingClosable) {
  const auto c = connect();
  const auto rs = opened(*c, "select * from pessoa", adCmdText);
  faulty_->fail_at(1, test::provider_failure(), test::FaultyProvider::Lasting::FromThenOn);
  EXPECT_EQ(number_raised([&] { rs->Fields("nome") = "x"; }), number::kProviderFailure);
  EXPECT_EQ(rs->EditMode(), adEditNone);
  rs->Close();
  c->Close();
  EXPECT_EQ(c->State(), adStateClosed);
}

TEST_P(ProviderFault, ALostSessionIsReplaced) {
  { const auto c = connect(); }
  ASSERT_EQ(session_counts().idle, 1U);
  faulty_->lose_sessions();
  faulty_->stop();
  const auto c = connect();
  EXPECT_EQ(faulty_->count(), 1U) << "the lost session should have been replaced by a new one";
  EXPECT_EQ(c->Execute("select count(*) from pessoa")->Fields(0).Value(), Variant(2));
}

TEST_P(ProviderFault, ASessionLostInUseIsNotPooled) {
  {
    const auto c = connect();
    faulty_->lose_sessions();
  }
  EXPECT_EQ(session_counts().idle, 0U);
}

PELM_ON_EVERY_ENGINE(ProviderFault);

}  // namespace
}  // namespace pelm::ado
