// A stretch of reading: what it sees, what ends it, and that nothing of it is left behind.
#include "platform/ado/read_snapshot.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "pelm/ado/command.h"
#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "support/engine.h"
#include "support/raised.h"

namespace pelm::ado {
namespace {

using test::number_raised;

class ReadSnapshotOver : public test::DatabaseTest {
 protected:
  void SetUp() override {
    DatabaseTest::SetUp();
    if (IsSkipped()) return;
    create_pessoa();
    add_pessoa(8, "Ana");
    other_ = connect();
  }
  void TearDown() override {
    other_.reset();
    DatabaseTest::TearDown();
  }

  int people() { return to_int(query("select count(*) from pessoa")->Fields(0).Value()); }
  int people_stored() const { return to_int(stored("select count(*) from pessoa")); }
  void another_adds(int oid) {
    other_->Execute("insert into pessoa (oid, nome) values (" + std::to_string(oid) + ", 'Bia')");
  }
  /// What two people are counted as under a snapshot that has seen one.
  int seen() const { return GetParam().reads_under_one_view ? 1 : 2; }

 private:
  static int to_int(const Variant& count) {
    return count.type() == Variant::Type::Double ? static_cast<int>(count.double_value())
                                                 : count.long_value();
  }
  std::shared_ptr<Connection> other_;
};
PELM_ON_EVERY_ENGINE(ReadSnapshotOver);

TEST_P(ReadSnapshotOver, ShowsWhatItsFirstStatementFound) {
  {
    const ReadSnapshot one_view(connection);
    EXPECT_EQ(people(), 1);
    another_adds(9);
    EXPECT_EQ(people_stored(), 2) << "nobody waits for it";
    EXPECT_EQ(people(), seen());
  }
  EXPECT_EQ(people(), 2);
}

TEST_P(ReadSnapshotOver, BeginsWithItsFirstStatement) {
  const ReadSnapshot one_view(connection);
  another_adds(9);
  EXPECT_EQ(people(), 2);
}

TEST_P(ReadSnapshotOver, EndsWhereTheConnectionWrites) {
  const ReadSnapshot one_view(connection);
  EXPECT_EQ(people(), 1);
  another_adds(9);
  add_pessoa(10, "Eva");  // an engine refuses to write on what is old by now
  EXPECT_EQ(people(), 3);
  EXPECT_EQ(people_stored(), 3);
  another_adds(11);
  EXPECT_EQ(people(), 4);
}

TEST_P(ReadSnapshotOver, EndsWhereARecordSetWrites) {
  const ReadSnapshot one_view(connection);
  const auto person = query_for_update("select * from pessoa where oid = 8");
  another_adds(9);
  person->Fields("nome") = "Eva";
  person->Update();
  EXPECT_EQ(stored("select nome from pessoa where oid = 8"), Variant("Eva"));
  EXPECT_EQ(people(), 2);
}

TEST_P(ReadSnapshotOver, EndsWhereATransactionBegins) {
  for (const IsolationLevelEnum level : {adXactReadCommitted, adXactSerializable}) {
    run("delete from pessoa where oid > 8");
    const ReadSnapshot one_view(connection);
    EXPECT_EQ(people(), 1);
    another_adds(9);
    connection->IsolationLevel(level);
    connection->BeginTrans();
    EXPECT_EQ(people(), 2);
    add_pessoa(10, "Eva");
    connection->CommitTrans();
    EXPECT_EQ(people_stored(), 3);
  }
}

TEST_P(ReadSnapshotOver, EndsWhereAProcedureIsCalled) {
  GetParam().create_counter(*connection);
  const ReadSnapshot one_view(connection);
  EXPECT_EQ(people(), 1);
  another_adds(9);
  const auto advance = std::make_shared<Command>();
  advance->ActiveConnection(connection);
  advance->CommandText("avancar");
  advance->CommandType(adCmdStoredProc);
  advance->Append(advance->CreateParameter("@novo", adInteger, adParamOutput));
  advance->Execute();
  EXPECT_EQ(stored("select valor from contador"), Variant(std::int32_t{6}));
  EXPECT_EQ(people(), 2);
}

TEST_P(ReadSnapshotOver, WithinATransactionDoesNothing) {
  connection->BeginTrans();
  add_pessoa(9, "Bia");
  {
    const ReadSnapshot one_view(connection);
    EXPECT_EQ(people(), 2);
  }
  EXPECT_EQ(people_stored(), 1);
  connection->RollbackTrans();
  EXPECT_EQ(people(), 1);
}

TEST_P(ReadSnapshotOver, BeforeATransactionHasWrittenDoesNothing) {
  connection->BeginTrans();
  const ReadSnapshot one_view(connection);
  EXPECT_EQ(people(), 1);
  connection->RollbackTrans();
  EXPECT_NE(number_raised([&] { connection->CommitTrans(); }), 0);
}

TEST_P(ReadSnapshotOver, WithinAnotherOneLeavesItAsItIs) {
  const ReadSnapshot one_view(connection);
  EXPECT_EQ(people(), 1);
  { const ReadSnapshot within(connection); }
  another_adds(9);
  EXPECT_EQ(people(), seen());
}

TEST_P(ReadSnapshotOver, IsNoTransactionToCommit) {
  const ReadSnapshot one_view(connection);
  EXPECT_EQ(people(), 1);
  EXPECT_NE(number_raised([&] { connection->CommitTrans(); }), 0);
  EXPECT_NE(number_raised([&] { connection->RollbackTrans(); }), 0);
}

TEST_P(ReadSnapshotOver, OutlivesAStatementThatFails) {
  const ReadSnapshot one_view(connection);
  EXPECT_EQ(people(), 1);
  EXPECT_NE(number_raised([&] { query("select nada from pessoa"); }), 0);
  another_adds(9);
  EXPECT_EQ(people(), seen());
}

TEST_P(ReadSnapshotOver, IsNotInheritedThroughThePool) {
  std::optional<ReadSnapshot> one_view(connection);
  EXPECT_EQ(people(), 1);
  connection->Close();
  another_adds(9);
  EXPECT_EQ(people_stored(), 2);  // by the session that was given back
  connection->Open();
  EXPECT_EQ(people(), 2);
  one_view.reset();
  EXPECT_EQ(people(), 2);
}

TEST(ReadSnapshotOverNothing, DoesNothing) {
  { const ReadSnapshot none(nullptr); }
  const ReadSnapshot closed(std::make_shared<Connection>());
}

}  // namespace
}  // namespace pelm::ado
