// A table record set does not read its table before somebody asks for rows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "pelm/error.h"
#include "support/engine.h"
#include "support/raised.h"
#include "support/recording_provider.h"

namespace pelm::ado {
namespace {

using test::number_raised;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
namespace number = error_number;

class TableRecordset : public test::DatabaseTest {
 protected:
  void SetUp() override {
    DatabaseTest::SetUp();
    if (connection == nullptr) return;
    create_pessoa();
    recorder_ = std::make_unique<test::RecordingProvider>(GetParam().provider);
    connection = connect();
  }
  void TearDown() override {
    connection.reset();
    recorder_.reset();
    DatabaseTest::TearDown();
  }
  static void add(Recordset& rs, int oid, std::string_view nome) {
    rs.AddNew();
    rs.Fields("oid") = oid;
    rs.Fields("nome") = nome;
    rs.Update();
  }
  std::size_t calls() const { return recorder_->calls().size(); }

  std::unique_ptr<test::RecordingProvider> recorder_;
};

TEST_P(TableRecordset, OpensWithOneDescription) {
  recorder_->clear();
  const auto rs = open_table("pessoa");
  EXPECT_EQ(rs->State(), adStateOpen);
  EXPECT_EQ(rs->FieldCount(), 6U);
  EXPECT_EQ(rs->Fields("nome").DefinedSize(), 20);
  EXPECT_THAT(recorder_->texts(), ElementsAre("describe pessoa"));
}

TEST_P(TableRecordset, AddsARowWithOneStatementMoreInATableOfAnySize) {
  for (const int rows : {0, 300}) {
    for (int i = 1; i <= rows; ++i) add_pessoa(i, "x");
    recorder_->clear();
    const auto rs = open_table("pessoa");
    add(*rs, 1000 + rows, "Ana");
    rs->Close();
    EXPECT_EQ(calls(), 2U) << rows << " rows";
  }
}

TEST_P(TableRecordset, KeepsTheAddedRowCurrentWithoutReading) {
  add_pessoa(1, "Ana");
  const auto rs = open_table("pessoa");
  add(*rs, 2, "Bia");
  recorder_->clear();
  EXPECT_EQ(rs->Fields("nome").Value(), Variant("Bia"));
  EXPECT_EQ(rs->EditMode(), adEditNone);
  EXPECT_FALSE(rs->Eof());
  rs->MoveNext();
  EXPECT_TRUE(rs->Eof());
  EXPECT_EQ(calls(), 0U);
}

struct Asking {
  std::string name;
  std::function<void(Recordset&)> ask;
};

TEST_P(TableRecordset, ReadsItsRowsOnceWhenAsked) {
  add_pessoa(1, "Ana");
  const std::vector<Asking> askings = {
      {"Eof", [](Recordset& rs) { EXPECT_FALSE(rs.Eof()); }},
      {"Bof", [](Recordset& rs) { EXPECT_FALSE(rs.Bof()); }},
      {"MoveFirst", [](Recordset& rs) { rs.MoveFirst(); }},
      {"Value", [](Recordset& rs) { EXPECT_EQ(rs.Fields("nome").Value(), Variant("Ana")); }},
      {"RecordCount", [](Recordset& rs) { EXPECT_EQ(rs.RecordCount(), 1); }},
      {"EditMode", [](Recordset& rs) { EXPECT_EQ(rs.EditMode(), adEditNone); }},
      {"MoveLast", [](Recordset& rs) { rs.MoveLast(); }},
      {"Assigning", [](Recordset& rs) {
         rs.Fields("peso") = 1;
         rs.CancelUpdate();
       }}};
  for (const Asking& asking : askings) {
    const auto rs = open_table("pessoa");
    recorder_->clear();
    asking.ask(*rs);
    EXPECT_THAT(recorder_->texts(), ElementsAre("execute select * from pessoa")) << asking.name;
    asking.ask(*rs);
    EXPECT_EQ(calls(), 1U) << asking.name;
  }
}

TEST_P(TableRecordset, ReadsNothingForAnUpdateWithoutEdit) {
  const auto rs = open_table("pessoa");
  recorder_->clear();
  rs->Update();
  rs->AddNew();
  rs->CancelUpdate();
  rs->Close();
  EXPECT_EQ(calls(), 0U);
}

TEST_P(TableRecordset, ShowsAddedRowsAfterReadingToo) {
  add_pessoa(1, "Ana");
  const auto rs = open_table("pessoa");
  add(*rs, 2, "Bia");
  rs->MoveFirst();
  std::vector<Variant> names;
  for (; !rs->Eof(); rs->MoveNext()) names.push_back(rs->Fields("nome").Value());
  EXPECT_THAT(names, ElementsAre(Variant("Ana"), Variant("Bia")));
  EXPECT_EQ(rs->RecordCount(), 2);
}

TEST_P(TableRecordset, CountsInTheDatabaseWhileOnAnAddedRow) {
  add_pessoa(1, "Ana");
  const auto rs = open_table("pessoa");
  add(*rs, 2, "Bia");
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(rs->Fields("nome").Value(), Variant("Bia"));
  rs->AddNew();
  EXPECT_EQ(rs->RecordCount(), 2);
  rs->CancelUpdate();
}

TEST_P(TableRecordset, GoesBackFromAnAddedRowToTheLast) {
  add_pessoa(1, "Ana");
  const auto rs = open_table("pessoa");
  add(*rs, 2, "Bia");
  rs->MoveNext();
  rs->MovePrevious();
  EXPECT_EQ(rs->Fields("nome").Value(), Variant("Bia"));
  EXPECT_EQ(rs->AbsolutePosition(), 2);
}

TEST_P(TableRecordset, ChangesRowsOnceRead) {
  add_pessoa(1, "Ana");
  const auto rs = open_table("pessoa");
  rs->Fields("nome") = "Bia";
  rs->Update();
  EXPECT_EQ(stored("select nome from pessoa"), Variant("Bia"));
}

TEST_P(TableRecordset, StopsAtMaxRecords) {
  for (int i = 1; i <= 3; ++i) add_pessoa(i, "x");
  Recordset rs;
  rs.MaxRecords(2);
  rs.Open("pessoa", connection, adOpenKeyset, adLockReadOnly, adCmdTable);
  EXPECT_EQ(rs.RecordCount(), 2);
}

TEST_P(TableRecordset, FollowsATableThatGainedAColumn) {
  add_pessoa(1, "Ana");
  const auto rs = open_table("pessoa");
  run("alter table pessoa add cidade varchar(30)");
  rs->MoveFirst();
  EXPECT_EQ(rs->FieldCount(), 7U);
  rs->Fields("cidade") = "Porto Alegre";
  rs->Update();
  EXPECT_EQ(stored("select cidade from pessoa"), Variant("Porto Alegre"));
}

TEST_P(TableRecordset, OfNoTableIsTheProvidersError) {
  EXPECT_EQ(number_raised([&] { open_table("nada"); }), number::kNoTable);
}

TEST_P(TableRecordset, OfAReadOnlyLockIsReadLateToo) {
  recorder_->clear();
  Recordset rs;
  rs.Open("pessoa", connection, adOpenStatic, adLockReadOnly, adCmdTable);
  EXPECT_EQ(calls(), 1U);
  EXPECT_EQ(number_raised([&] { rs.AddNew(); }), number::kProviderCannot);
}

PELM_ON_EVERY_ENGINE(TableRecordset);

}  // namespace
}  // namespace pelm::ado
