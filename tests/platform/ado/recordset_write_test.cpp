// Adding, changing and deleting rows: the edit buffer and what reaches the database.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "pelm/error.h"
#include "support/engine.h"
#include "support/raised.h"
#include "support/recording_provider.h"

namespace pelm::ado {
namespace {

using test::number_raised;
using test::raised;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;
namespace number = error_number;

/// A table of people, one there: 8, Ana, of 50 kilos.
class RecordsetWrite : public test::DatabaseTest {
 protected:
  void SetUp() override {
    DatabaseTest::SetUp();
    if (connection == nullptr) return;
    create_pessoa();
    run("insert into pessoa (oid, nome, peso) values (8, 'Ana', 50)");
  }
  std::shared_ptr<Recordset> ana() {
    return query_for_update("select * from pessoa where oid = 8");
  }
  Variant count() const { return stored("select count(*) from pessoa"); }
};

class RecordsetAddNew : public RecordsetWrite {};
class RecordsetUpdate : public RecordsetWrite {};
class RecordsetPendingEdit : public RecordsetWrite {};
class RecordsetDelete : public RecordsetWrite {};
class RecordsetOfAQuery : public RecordsetWrite {};

TEST_P(RecordsetAddNew, StoresWhatWasAssigned) {
  const auto rs = open_table("pessoa");
  rs->AddNew();
  EXPECT_EQ(rs->EditMode(), adEditAdd);
  rs->Fields("OID") = 9;
  rs->Fields("NOME") = "João";
  rs->Fields("NASCIDO") = "5/3/2008 14:07:09";
  rs->Fields("ATIVO") = true;
  rs->Fields("NOTAS") = "";
  rs->Update();
  EXPECT_EQ(rs->EditMode(), adEditNone);
  rs->Close();
  const auto stored_row = query("select * from pessoa where oid = 9");
  EXPECT_EQ(stored_row->Fields("nome").Value(), Variant("João"));
  EXPECT_EQ(stored_row->Fields("nascido").Value(),
            Variant(Date::from_civil({2008, 3, 5, 14, 7, 9})));
  EXPECT_EQ(stored_row->Fields("ativo").Value(), Variant(true));
  EXPECT_EQ(stored_row->Fields("notas").Value(), Variant(""));
  EXPECT_TRUE(stored_row->Fields("peso").Value().is_null());
}

TEST_P(RecordsetAddNew, SendsOnlyTheAssignedColumnsInTheirOrder) {
  test::RecordingProvider recorder(GetParam().provider);
  connection = connect();
  const auto rs = open_table("pessoa");
  rs->AddNew();
  rs->Fields("nome") = "Bia";
  rs->Fields("peso") = Null{};
  rs->Fields("oid") = 9;
  rs->Fields("peso") = 61.5;  // keeps its place
  rs->Update();
  rs->Close();
  const std::string q = connection->Execute("pessoa", nullptr, adCmdTable)->Source();
  EXPECT_EQ(q, "select * from pessoa");
  const auto calls = recorder.calls();
  ASSERT_GE(calls.size(), 2U);
  EXPECT_EQ(calls[0].kind, test::ProviderCall::Kind::Describe);
  EXPECT_THAT(calls[1].text, StartsWith("insert into pessoa ("));
  EXPECT_THAT(calls[1].values, ElementsAre(Variant("Bia"), Variant(61.5), Variant(9)));
}

TEST_P(RecordsetAddNew, WithoutAnyValueIsRefused) {
  const auto rs = open_table("pessoa");
  rs->AddNew();
  const auto e = raised([&] { rs->Update(); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kErrorsOccurred);
  EXPECT_EQ(e->source(), "ADODB.Recordset");
  EXPECT_THAT(e->description(), HasSubstr("linha vazia"));
  EXPECT_EQ(rs->EditMode(), adEditAdd);
  rs->CancelUpdate();
  EXPECT_EQ(count(), Variant(1));
}

TEST_P(RecordsetAddNew, ReadsBackWhatWasAssigned) {
  const auto rs = open_table("pessoa");
  rs->AddNew();
  rs->Fields("oid") = "9";
  EXPECT_EQ(rs->Fields("oid").Value(), Variant(9));
  EXPECT_TRUE(rs->Fields("nome").Value().is_null());
  EXPECT_TRUE(rs->Fields("oid").OriginalValue().is_null());
  EXPECT_FALSE(rs->Eof());
  EXPECT_FALSE(rs->Bof());
}

TEST_P(RecordsetAddNew, LeavesTheAddedRowCurrent) {
  const auto rs = query("select * from pessoa", adOpenKeyset, adLockOptimistic);
  rs->AddNew();
  rs->Fields("oid") = 9;
  rs->Fields("nome") = "Bia";
  rs->Update();
  EXPECT_EQ(rs->Fields("nome").Value(), Variant("Bia"));
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_FALSE(rs->Eof());
  rs->MoveNext();
  EXPECT_TRUE(rs->Eof());
  rs->MoveFirst();
  EXPECT_EQ(rs->Fields("nome").Value(), Variant("Ana"));
}

TEST_P(RecordsetAddNew, AgainStoresThePendingRow) {
  const auto rs = open_table("pessoa");
  for (int oid = 9; oid <= 11; ++oid) {
    rs->AddNew();
    rs->Fields("oid") = oid;
    rs->Fields("nome") = "x";
  }
  EXPECT_EQ(count(), Variant(3));
  rs->Update();
  EXPECT_EQ(count(), Variant(4));
}

TEST_P(RecordsetAddNew, CancelledGoesBackToTheRowBefore) {
  const auto rs = ana();
  rs->AddNew();
  rs->Fields("oid") = 9;
  rs->CancelUpdate();
  EXPECT_EQ(rs->EditMode(), adEditNone);
  EXPECT_EQ(rs->Fields("nome").Value(), Variant("Ana"));
  rs->Update();
  EXPECT_EQ(count(), Variant(1));
}

TEST_P(RecordsetAddNew, ToAnEmptyResultIsPossible) {
  const auto rs = query_for_update("select * from pessoa where oid = 77");
  EXPECT_TRUE(rs->Eof());
  rs->AddNew();
  rs->Fields("oid") = 77;
  rs->Fields("nome") = "Caio";
  rs->Update();
  EXPECT_FALSE(rs->Eof());
  EXPECT_EQ(rs->Fields("nome").Value(), Variant("Caio"));
  EXPECT_EQ(stored("select nome from pessoa where oid = 77"), Variant("Caio"));
}

TEST_P(RecordsetAddNew, FillsInDefaultsAndNumbersWhenAsked) {
  run("create table menu (id " + std::string(GetParam().numbered_key) +
      ", nome varchar(20), ordem integer default 5)");
  const auto rs = open_table("menu");
  for (const char* nome : {"Um", "Dois"}) {
    rs->AddNew();
    rs->Fields("nome") = nome;
    rs->Update();
  }
  EXPECT_EQ(rs->Fields("id").Value(), Variant(2));
  EXPECT_EQ(rs->Fields("ordem").Value(), Variant(5));
  EXPECT_EQ(rs->Fields("nome").Value(), Variant("Dois"));
}

TEST_P(RecordsetAddNew, NeverTakesANumberGivenToAnotherRow) {
  run("create table menu (id " + std::string(GetParam().numbered_key) + ", nome varchar(20))");
  const auto rs = open_table("menu");
  rs->AddNew();
  rs->Fields("nome") = "Um";
  rs->Update();
  run("insert into menu (nome) values ('Outro')");
  EXPECT_TRUE(rs->Fields("id").Value().is_null());
  EXPECT_EQ(rs->Fields("nome").Value(), Variant("Um"));
}

TEST_P(RecordsetAddNew, TheAddedRowCanBeChangedAndDeleted) {
  run("create table menu (id " + std::string(GetParam().numbered_key) +
      ", nome varchar(20), ordem integer default 5)");
  const auto rs = open_table("menu");
  rs->AddNew();
  rs->Fields("nome") = "Um";
  rs->Update();
  rs->Fields("nome") = "Dois";
  rs->Update();
  EXPECT_EQ(stored("select nome from menu"), Variant("Dois"));
  rs->Delete();
  EXPECT_EQ(stored("select count(*) from menu"), Variant(0));
}

TEST_P(RecordsetAddNew, FailsWithTheEnginesErrorAndStaysPending) {
  const auto rs = open_table("pessoa");
  rs->AddNew();
  rs->Fields("oid") = 8;
  rs->Fields("nome") = "Outra";
  EXPECT_EQ(number_raised([&] { rs->Update(); }), number::kIntegrityViolation);
  EXPECT_EQ(rs->EditMode(), adEditAdd);
  EXPECT_EQ(rs->Fields("nome").Value(), Variant("Outra"));
  rs->Fields("oid") = 9;
  rs->Update();
  EXPECT_EQ(stored("select nome from pessoa where oid = 9"), Variant("Outra"));
}

TEST_P(RecordsetAddNew, NullInARequiredColumnIsTheEnginesError) {
  const auto rs = open_table("pessoa");
  rs->AddNew();
  rs->Fields("oid") = 9;
  rs->Fields("nome") = Null{};
  EXPECT_EQ(number_raised([&] { rs->Update(); }), number::kIntegrityViolation);
}

TEST_P(RecordsetUpdate, ChangesOnlyTheAssignedColumns) {
  const auto rs = ana();
  run("update pessoa set notas = 'de outra página' where oid = 8");
  rs->Fields("nome") = "Ana Maria";
  EXPECT_EQ(rs->EditMode(), adEditInProgress);
  EXPECT_EQ(rs->Fields("nome").Value(), Variant("Ana Maria"));
  EXPECT_EQ(rs->Fields("nome").OriginalValue(), Variant("Ana"));
  rs->Update();
  EXPECT_EQ(rs->EditMode(), adEditNone);
  EXPECT_EQ(rs->Fields("nome").OriginalValue(), Variant("Ana Maria"));
  EXPECT_EQ(stored("select nome from pessoa"), Variant("Ana Maria"));
  EXPECT_EQ(stored("select notas from pessoa"), Variant("de outra página"));
}

TEST_P(RecordsetUpdate, OfTheSameRowTwice) {
  const auto rs = ana();
  for (const char* nome : {"Bia", "Caio"}) {
    rs->Fields("nome") = nome;
    rs->Update();
  }
  EXPECT_EQ(stored("select nome from pessoa"), Variant("Caio"));
}

TEST_P(RecordsetUpdate, MayChangeTheKey) {
  const auto rs = ana();
  rs->Fields("oid") = 80;
  rs->Update();
  rs->Fields("nome") = "Bia";
  rs->Update();
  EXPECT_EQ(stored("select nome from pessoa where oid = 80"), Variant("Bia"));
}

TEST_P(RecordsetUpdate, WithNothingPendingDoesNothing) {
  const auto rs = ana();
  rs->Update();
  rs->MoveNext();
  rs->Update();  // also without a current row
  EXPECT_TRUE(rs->Eof());
  query_for_update("select * from pessoa where 1 = 0")->Update();
}

TEST_P(RecordsetUpdate, WithNothingPendingSendsNothing) {
  test::RecordingProvider recorder(GetParam().provider);
  connection = connect();
  const auto rs = ana();
  recorder.clear();
  rs->Update();
  EXPECT_TRUE(recorder.calls().empty());
}

TEST_P(RecordsetUpdate, RefusesValuesThatTheColumnCannotTake) {
  const auto rs = ana();
  EXPECT_EQ(number_raised([&] { rs->Fields("peso") = "pesado"; }), number::kCantConvertValue);
  EXPECT_EQ(number_raised([&] { rs->Fields("nome") = std::string(21, 'x'); }),
            number::kDataOverflow);
  EXPECT_EQ(rs->EditMode(), adEditNone);
  rs->Fields("nome") = "çççççççççççççççççççç";
  rs->Update();
}

TEST_P(RecordsetUpdate, WithoutACurrentRowCannotBegin) {
  const auto rs = query_for_update("select * from pessoa where oid = 99");
  const auto e = raised([&] { rs->Fields("nome") = "x"; });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kNoCurrentRecord);
  EXPECT_EQ(e->source(), "ADODB.Field");
}

TEST_P(RecordsetUpdate, FailsWithTheEnginesErrorAndStaysPending) {
  add_pessoa(9, "Bia");
  const auto rs = ana();
  rs->Fields("oid") = 9;
  EXPECT_EQ(number_raised([&] { rs->Update(); }), number::kIntegrityViolation);
  EXPECT_EQ(rs->EditMode(), adEditInProgress);
  rs->CancelUpdate();
  EXPECT_EQ(rs->Fields("oid").Value(), Variant(8));
}

TEST_P(RecordsetPendingEdit, KeepsItFromClosing) {
  const auto rs = ana();
  rs->Fields("nome") = "Bia";
  const auto e = raised([&] { rs->Close(); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kNotAllowedInContext);
  EXPECT_EQ(e->source(), "ADODB.Recordset");
  rs->CancelUpdate();
  rs->Close();
}

TEST_P(RecordsetPendingEdit, IsUntouchedByCancel) {
  const auto rs = open_table("pessoa");
  rs->AddNew();
  rs->Fields("oid") = 9;
  rs->Cancel();
  EXPECT_EQ(rs->EditMode(), adEditAdd);
  EXPECT_EQ(number_raised([&] { rs->Close(); }), number::kNotAllowedInContext);
}

TEST_P(RecordsetPendingEdit, IsDroppedInSilenceOnRelease) {
  auto rs = open_table("pessoa");
  rs->AddNew();
  rs->Fields("oid") = 9;
  rs->Fields("nome") = "Bia";
  rs.reset();
  EXPECT_EQ(count(), Variant(1));
}

TEST_P(RecordsetPendingEdit, IsStoredByAMove) {
  add_pessoa(9, "Bia");
  const auto rs = query("select * from pessoa order by oid", adOpenKeyset, adLockOptimistic);
  rs->Fields("nome") = "Ana Maria";
  rs->MoveNext();
  EXPECT_EQ(stored("select nome from pessoa where oid = 8"), Variant("Ana Maria"));
  EXPECT_EQ(rs->Fields("oid").Value(), Variant(9));
  rs->Fields("nome") = "Beatriz";
  rs->MoveFirst();
  EXPECT_EQ(stored("select nome from pessoa where oid = 9"), Variant("Beatriz"));
}

TEST_P(RecordsetPendingEdit, KeepsItsRowWhenAMoveCannotStoreIt) {
  add_pessoa(9, "Bia");
  const auto rs = query("select * from pessoa order by oid", adOpenKeyset, adLockOptimistic);
  rs->Fields("oid") = 9;
  EXPECT_EQ(number_raised([&] { rs->MoveNext(); }), number::kIntegrityViolation);
  EXPECT_EQ(rs->Fields("nome").Value(), Variant("Ana"));
  EXPECT_EQ(number_raised([&] { rs->AddNew(); }), number::kIntegrityViolation);
  EXPECT_EQ(rs->EditMode(), adEditInProgress);
}

TEST_P(RecordsetPendingEdit, WithoutOneCannotBeCancelled) {
  EXPECT_EQ(number_raised([&] { ana()->CancelUpdate(); }), number::kNotAllowedInContext);
}

TEST_P(RecordsetDelete, RemovesTheRowAndStaysOnIt) {
  add_pessoa(9, "Bia");
  const auto rs = query("select * from pessoa order by oid", adOpenKeyset, adLockOptimistic);
  rs->Delete();
  EXPECT_EQ(stored("select count(*) from pessoa where oid = 8"), Variant(0));
  EXPECT_EQ(rs->RecordCount(), 1);
  EXPECT_FALSE(rs->Eof());
  EXPECT_EQ(number_raised([&] { (void)rs->Fields("nome").Value(); }), number::kNoCurrentRecord);
  EXPECT_EQ(number_raised([&] { rs->Delete(); }), number::kNoCurrentRecord);
  rs->MoveNext();
  EXPECT_EQ(rs->Fields("oid").Value(), Variant(9));
  rs->MovePrevious();
  EXPECT_TRUE(rs->Bof());
  rs->MoveFirst();
  EXPECT_EQ(rs->Fields("oid").Value(), Variant(9));
}

TEST_P(RecordsetDelete, OfEveryRowLeavesNone) {
  add_pessoa(9, "Bia");
  const auto rs = query("select * from pessoa", adOpenKeyset, adLockOptimistic);
  for (; !rs->Eof(); rs->MoveNext()) rs->Delete();
  EXPECT_TRUE(rs->Bof());
  EXPECT_EQ(count(), Variant(0));
}

TEST_P(RecordsetDelete, IsRefusedWhileAnEditIsPending) {
  const auto rs = ana();
  rs->Fields("nome") = "x";
  EXPECT_EQ(number_raised([&] { rs->Delete(); }), number::kNotAllowedInContext);
}

TEST_P(RecordsetDelete, OfARowThatIsGoneIsAConflict) {
  const auto rs = ana();
  run("delete from pessoa");
  EXPECT_EQ(number_raised([&] { rs->Delete(); }), number::kConcurrencyViolation);
}

TEST_P(RecordsetOfAQuery, OfSeveralTablesCannotBeStored) {
  run("create table cidade (oid integer primary key, estado varchar(2))");
  run("insert into cidade (oid, estado) values (8, 'RS')");
  const auto rs = query_for_update(
      "select p.oid, p.nome, c.estado from pessoa p, cidade c where c.oid = p.oid");
  rs->Fields("nome") = "x";
  const auto e = raised([&] { rs->Update(); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kProviderCannot);
  EXPECT_EQ(e->source(), "ADODB.Recordset");
  EXPECT_THAT(e->description(), HasSubstr("não são de uma só tabela"));
  EXPECT_EQ(rs->EditMode(), adEditInProgress);
  rs->CancelUpdate();
  EXPECT_EQ(number_raised([&] { rs->Delete(); }), number::kProviderCannot);
}

TEST_P(RecordsetOfAQuery, StoresThroughPartOfTheColumns) {
  add_pessoa(9, "Ana");
  const auto rs = query_for_update("select nome, oid from pessoa as p where p.oid = 8");
  rs->Fields("nome") = "Bia";
  rs->Update();
  EXPECT_EQ(stored("select nome from pessoa where oid = 8"), Variant("Bia"));
  EXPECT_EQ(stored("select nome from pessoa where oid = 9"), Variant("Ana"));
}

TEST_P(RecordsetOfAQuery, WithoutTheKeyFindsItsRowByAllValues) {
  const auto rs = query_for_update("select nome, peso from pessoa where oid = 8");
  rs->Fields("nome") = "Bia";
  rs->Update();
  EXPECT_EQ(stored("select nome from pessoa where oid = 8"), Variant("Bia"));
}

TEST_P(RecordsetOfAQuery, WithoutTheKeyRefusesWhenTwoRowsAreAlike) {
  run("insert into pessoa (oid, nome, peso) values (9, 'Ana', 50)");
  const auto rs = query_for_update("select nome, peso from pessoa");
  rs->Fields("nome") = "Bia";
  EXPECT_EQ(number_raised([&] { rs->Update(); }), number::kConcurrencyViolation);
  EXPECT_EQ(stored("select count(*) from pessoa where nome = 'Ana'"), Variant(2));
}

TEST_P(RecordsetOfAQuery, RefusesToStoreAComputedColumn) {
  const auto rs = query_for_update(
      "select oid, nome, nome as apelido, nome as notas from pessoa where oid = 8");
  rs->Fields("notas") = "x";
  const auto e = raised([&] { rs->Update(); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kProviderCannot);
  EXPECT_THAT(e->description(), HasSubstr("coluna 4"));
  rs->CancelUpdate();
  rs->Fields("nome") = "Bia";
  rs->Update();
  EXPECT_EQ(stored("select nome from pessoa"), Variant("Bia"));
}

TEST_P(RecordsetOfAQuery, NamesTheTableAsTheTextDoes) {
  run("create table [tabela longa] (oid integer primary key, [coluna longa] varchar(10))");
  run("insert into [tabela longa] (oid, [coluna longa]) values (1, 'a')");
  const auto rs = query_for_update("select * from [tabela longa] where oid = 1");
  rs->Fields("coluna longa") = "b";
  rs->Update();
  const auto table = open_table("[tabela longa]");
  table->AddNew();
  table->Fields("oid") = 2;
  table->Fields("coluna longa") = "c";
  table->Update();
  EXPECT_EQ(stored("select count(*) from [tabela longa] where [coluna longa] in ('b', 'c')"),
            Variant(2));
}

// What was found out about the first is known again for the second.
TEST_P(RecordsetOfAQuery, StatementsThatDifferInTheirNumbersChangeTheirOwnRows) {
  run("insert into pessoa (oid, nome, peso) values (9, 'Bia', 60)");
  for (const int oid : {8, 9, 8}) {
    const auto rs =
        query_for_update("select oid, peso, nome from pessoa where oid = " + std::to_string(oid));
    rs->Fields("nome") = "n" + std::to_string(oid);
    rs->Update();
  }
  EXPECT_EQ(stored("select nome from pessoa where oid = 8"), Variant("n8"));
  EXPECT_EQ(stored("select nome from pessoa where oid = 9"), Variant("n9"));
}

// The engine has just told that nothing about the table has changed.
TEST_P(RecordsetOfAQuery, TheEmbeddedEngineIsNotAskedForAKnownTableAgain) {
  if (GetParam().provider != "SQLite") GTEST_SKIP() << "a server's table is described each time";
  test::RecordingProvider recorder(GetParam().provider);
  connection = connect();
  for (const char* name : {"Bia", "Caio"}) {
    recorder.clear();
    const auto rs = query_for_update("select oid, nome from pessoa where oid = 8");
    rs->Fields("nome") = name;
    rs->Update();
  }
  EXPECT_THAT(recorder.texts(),
              ElementsAre(StartsWith("execute select"), StartsWith("execute update")));
}

TEST_P(RecordsetOfAQuery, AStatementThatMixesRowsIsRefusedEachTime) {
  for (int i = 0; i < 2; ++i) {
    const auto rs = query_for_update("select distinct oid, nome from pessoa where oid = 8");
    rs->Fields("nome") = "Bia";
    EXPECT_EQ(number_raised([&] { rs->Update(); }), number::kProviderCannot);
    rs->CancelUpdate();
  }
  EXPECT_EQ(stored("select nome from pessoa where oid = 8"), Variant("Ana"));
}

TEST_P(RecordsetOfAQuery, AColumnAddedSinceTheLastTimeIsThere) {
  const std::string all = "select * from pessoa where oid = 8";
  query_for_update(all)->Fields("nome") = "Bia";
  run("alter table pessoa add cidade varchar(30)");
  const auto rs = query_for_update(all);
  rs->Fields("cidade") = "Recife";
  rs->Update();
  EXPECT_EQ(stored("select cidade from pessoa where oid = 8"), Variant("Recife"));
}

PELM_ON_EVERY_ENGINE(RecordsetAddNew);
PELM_ON_EVERY_ENGINE(RecordsetUpdate);
PELM_ON_EVERY_ENGINE(RecordsetPendingEdit);
PELM_ON_EVERY_ENGINE(RecordsetDelete);
PELM_ON_EVERY_ENGINE(RecordsetOfAQuery);

}  // namespace
}  // namespace pelm::ado
