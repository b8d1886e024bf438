// Optimistic locking: an update by somebody else is never lost.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "pelm/error.h"
#include "support/engine.h"
#include "support/raised.h"

namespace pelm::ado {
namespace {

using test::number_raised;
using test::raised;
using ::testing::StartsWith;
namespace number = error_number;

class RecordsetConflict : public test::DatabaseTest {
 protected:
  void SetUp() override {
    DatabaseTest::SetUp();
    if (connection == nullptr) return;
    create_pessoa();
    run("insert into pessoa (oid, nome, peso, nascido, ativo, notas) "
        "values (8, 'Ana', 50.25, '2008-03-05 14:07:09', 1, 'x')");
  }
  std::shared_ptr<Recordset> ana() {
    return query_for_update("select * from pessoa where oid = 8");
  }
  void somebody_else(std::string_view sql) const { connect()->Execute(sql); }
};

TEST_P(RecordsetConflict, WithAChangeOfTheSameColumn) {
  const auto rs = ana();
  somebody_else("update pessoa set nome = 'Bia' where oid = 8");
  rs->Fields("nome") = "Caio";
  const auto e = raised([&] { rs->Update(); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kConcurrencyViolation);
  EXPECT_EQ(e->source(), "ADODB.Recordset");
  EXPECT_THAT(e->description(), StartsWith("A linha não pode ser localizada para atualização."));
  EXPECT_EQ(rs->EditMode(), adEditInProgress);
  EXPECT_EQ(rs->Fields("nome").Value(), Variant("Caio"));
  EXPECT_EQ(stored("select nome from pessoa"), Variant("Bia"));
}

TEST_P(RecordsetConflict, SpeaksEnglishWhenAsked) {
  const auto rs = ana();
  somebody_else("delete from pessoa");
  rs->Fields("nome") = "Caio";
  set_message_language(MessageLanguage::English);
  const auto e = raised([&] { rs->Update(); });
  set_message_language(MessageLanguage::Portuguese);
  ASSERT_TRUE(e);
  EXPECT_EQ(e->description(),
            "Row cannot be located for updating. Some values may have been changed since it was "
            "last read.");
}

struct Change {
  std::string column;
  std::string by_somebody;
  Variant ours;
};

TEST_P(RecordsetConflict, IsSeenInColumnsOfEveryType) {
  const std::vector<Change> changes = {
      {"nome", "'ANA'", "Caio"},  // also where only the case differs
      {"peso", "51", 60},
      {"peso", "null", 60},
      {"nascido", "'2008-03-05 14:07:10'", Date::from_civil({2009, 1, 1, 0, 0, 0})},
      {"ativo", "0", true},
      {"notas", "'y'", "z"},
      {"notas", "null", "z"}};
  for (const Change& change : changes) {
    connection->BeginTrans();
    const auto rs = ana();
    run("update pessoa set " + change.column + " = " + change.by_somebody);
    rs->Fields(change.column) = change.ours;
    EXPECT_EQ(number_raised([&] { rs->Update(); }), number::kConcurrencyViolation)
        << change.column << " = " << change.by_somebody;
    rs->CancelUpdate();
    connection->RollbackTrans();
  }
}

TEST_P(RecordsetConflict, IsSeenWhereANullGotAValue) {
  run("update pessoa set peso = null");
  const auto rs = ana();
  somebody_else("update pessoa set peso = 60");
  rs->Fields("peso") = 61;
  EXPECT_EQ(number_raised([&] { rs->Update(); }), number::kConcurrencyViolation);
}

TEST_P(RecordsetConflict, WithADeletedRow) {
  const auto rs = ana();
  somebody_else("delete from pessoa");
  rs->Fields("peso") = 1;
  EXPECT_EQ(number_raised([&] { rs->Update(); }), number::kConcurrencyViolation);
}

TEST_P(RecordsetConflict, IsNoneWhereOtherColumnsChanged) {
  const auto rs = ana();
  somebody_else("update pessoa set peso = 70, notas = 'outras' where oid = 8");
  rs->Fields("nome") = "Caio";
  rs->Update();
  EXPECT_EQ(stored("select nome from pessoa"), Variant("Caio"));
  EXPECT_EQ(stored("select peso from pessoa"), Variant(70.0));
}

TEST_P(RecordsetConflict, IsNoneWhereNothingChanged) {
  const auto rs = ana();
  rs->Fields("nome") = "Caio";
  rs->Fields("peso") = Null{};
  rs->Fields("nascido") = Date::from_civil({2009, 1, 1, 8, 30, 0});
  rs->Fields("ativo") = false;
  rs->Fields("notas") = Null{};
  rs->Update();
  rs->Fields("nascido") = Null{};
  rs->Fields("notas") = "de novo";
  rs->Update();
  EXPECT_TRUE(stored("select nascido from pessoa").is_null());
  EXPECT_EQ(stored("select notas from pessoa"), Variant("de novo"));
}

TEST_P(RecordsetConflict, OfTwoRecordSetsTheFirstWins) {
  const auto a = ana();
  const auto b = ana();
  a->Fields("nome") = "Bia";
  b->Fields("nome") = "Caio";
  a->Update();
  EXPECT_EQ(number_raised([&] { b->Update(); }), number::kConcurrencyViolation);
  EXPECT_EQ(stored("select nome from pessoa"), Variant("Bia"));
}

TEST_P(RecordsetConflict, OfARowFoundByAllItsValues) {
  run("create table marca (nome varchar(20), valor integer)");
  run("insert into marca (nome, valor) values ('a', null)");
  const auto rs = query_for_update("select * from marca");
  somebody_else("update marca set valor = 1");
  rs->Fields("nome") = "b";  // not the column that changed
  EXPECT_EQ(number_raised([&] { rs->Update(); }), number::kConcurrencyViolation);
}

TEST_P(RecordsetConflict, WithoutAKeyFindsTheRowByItsValues) {
  run("create table marca (nome varchar(20), valor integer)");
  run("insert into marca (nome, valor) values ('a', null)");
  run("insert into marca (nome, valor) values ('a', 1)");
  const auto rs = query_for_update("select * from marca where valor is null");
  rs->Fields("nome") = "b";
  rs->Update();
  EXPECT_EQ(stored("select nome from marca where valor is null"), Variant("b"));
  EXPECT_EQ(stored("select nome from marca where valor = 1"), Variant("a"));
  rs->Delete();
  EXPECT_EQ(stored("select count(*) from marca"), Variant(1));
}

TEST_P(RecordsetConflict, WithoutAKeyNeverTouchesTwoRowsAlike) {
  run("create table marca (nome varchar(20), valor integer)");
  for (int i = 0; i < 2; ++i) run("insert into marca (nome, valor) values ('a', 1)");
  const auto rs = query_for_update("select * from marca");
  rs->Fields("nome") = "b";
  EXPECT_EQ(number_raised([&] { rs->Update(); }), number::kConcurrencyViolation);
  rs->CancelUpdate();
  EXPECT_EQ(number_raised([&] { rs->Delete(); }), number::kConcurrencyViolation);
  EXPECT_EQ(stored("select count(*) from marca where nome = 'a'"), Variant(2));
}

PELM_ON_EVERY_ENGINE(RecordsetConflict);

}  // namespace
}  // namespace pelm::ado
