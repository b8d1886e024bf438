// Reading: position, values, counts, pages.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "pelm/error.h"
#include "support/engine.h"
#include "support/raised.h"

namespace pelm::ado {
namespace {

using test::number_raised;
using test::raised;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
namespace number = error_number;

class RecordsetRead : public test::DatabaseTest {
 protected:
  void SetUp() override {
    DatabaseTest::SetUp();
    if (connection != nullptr) create_pessoa();
  }
  void add_people(int count) {
    for (int i = 1; i <= count; ++i) add_pessoa(i, "P" + std::to_string(i));
  }
  static std::vector<std::int32_t> oids(Recordset& rs) {
    std::vector<std::int32_t> result;
    for (; !rs.Eof(); rs.MoveNext()) result.push_back(rs.Fields("oid").Value().long_value());
    return result;
  }
};

TEST_P(RecordsetRead, GoesFromTheFirstRowToTheEnd) {
  add_people(3);
  const auto rs = query("select * from pessoa order by oid");
  EXPECT_FALSE(rs->Bof());
  EXPECT_THAT(oids(*rs), ElementsAre(1, 2, 3));
  EXPECT_TRUE(rs->Eof());
  EXPECT_FALSE(rs->Bof());
  rs->MoveFirst();
  EXPECT_THAT(oids(*rs), ElementsAre(1, 2, 3));
}

TEST_P(RecordsetRead, OfNothingIsAtBothEnds) {
  const auto rs = query("select * from pessoa");
  EXPECT_TRUE(rs->Eof());
  EXPECT_TRUE(rs->Bof());
  EXPECT_EQ(rs->RecordCount(), 0);
  EXPECT_EQ(rs->FieldCount(), 6U);
  EXPECT_EQ(number_raised([&] { rs->MoveFirst(); }), number::kNoCurrentRecord);
  EXPECT_EQ(number_raised([&] { rs->MoveLast(); }), number::kNoCurrentRecord);
  EXPECT_EQ(number_raised([&] { rs->MoveNext(); }), number::kNoCurrentRecord);
  EXPECT_EQ(number_raised([&] { rs->MovePrevious(); }), number::kNoCurrentRecord);
}

TEST_P(RecordsetRead, PastAnEndHasNoValues) {
  add_people(1);
  const auto rs = query("select * from pessoa");
  rs->MoveNext();
  EXPECT_EQ(number_raised([&] { rs->MoveNext(); }), number::kNoCurrentRecord);
  const auto e = raised([&] { (void)rs->Fields("nome").Value(); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kNoCurrentRecord);
  EXPECT_EQ(e->source(), "ADODB.Field");
  EXPECT_EQ(number_raised([&] { (void)rs->Fields("nome").OriginalValue(); }),
            number::kNoCurrentRecord);
  EXPECT_EQ(number_raised([&] { (void)rs->EditMode(); }), number::kNoCurrentRecord);
  rs->MovePrevious();
  EXPECT_EQ(rs->Fields("nome").Value(), Variant("P1"));
  rs->MovePrevious();
  EXPECT_TRUE(rs->Bof());
  EXPECT_EQ(number_raised([&] { rs->MovePrevious(); }), number::kNoCurrentRecord);
  rs->MoveNext();
  EXPECT_EQ(rs->Fields("nome").Value(), Variant("P1"));
}

TEST_P(RecordsetRead, MovesBackwards) {
  add_people(3);
  const auto rs = query("select * from pessoa order by oid");
  rs->MoveLast();
  EXPECT_EQ(rs->Fields("oid").Value(), Variant(3));
  rs->MovePrevious();
  EXPECT_EQ(rs->Fields("oid").Value(), Variant(2));
}

TEST_P(RecordsetRead, FindsFieldsByNameWithoutCaseOrByPosition) {
  add_people(1);
  const auto rs = query("select oid, nome, 1 as Ação from pessoa");
  EXPECT_EQ(rs->Fields("NOME").Value(), Variant("P1"));
  EXPECT_EQ(rs->Fields("aÇÃO").Value(), Variant(1));
  EXPECT_EQ(rs->Fields(std::size_t{1}).Value(), Variant("P1"));
  EXPECT_EQ(rs->Fields(std::size_t{2}).Name(), "Ação");
  EXPECT_EQ(rs->FieldCount(), 3U);
  EXPECT_EQ(number_raised([&] { (void)rs->Fields(std::size_t{3}); }), number::kItemNotFound);
  const auto e = raised([&] { (void)rs->Fields("apelido"); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kItemNotFound);
  EXPECT_EQ(e->source(), "ADODB.Fields");
  EXPECT_THAT(e->description(), HasSubstr("(apelido)"));
}

TEST_P(RecordsetRead, TakesTheFirstOfEqualNames) {
  const auto rs = query("select 1 as x, 2 as x");
  EXPECT_EQ(rs->Fields("x").Value(), Variant(1));
}

TEST_P(RecordsetRead, DescribesItsFields) {
  const auto rs = query("select * from pessoa");
  EXPECT_EQ(rs->Fields("oid").Type(), adInteger);
  EXPECT_EQ(rs->Fields("nome").DefinedSize(), 20);
  EXPECT_EQ(rs->Fields("nascido").Type(), adDate);
  EXPECT_EQ(rs->Fields("nascido").Name(), "nascido");
}

TEST_P(RecordsetRead, CountsRowsOnlyForCursorsThatCount) {
  add_people(3);
  EXPECT_EQ(query("select * from pessoa", adOpenForwardOnly)->RecordCount(), -1);
  EXPECT_EQ(query("select * from pessoa", adOpenDynamic)->RecordCount(), -1);
  EXPECT_EQ(query("select * from pessoa", adOpenKeyset)->RecordCount(), 3);
  EXPECT_EQ(query("select * from pessoa", adOpenStatic)->RecordCount(), 3);
}

TEST_P(RecordsetRead, StopsAtMaxRecords) {
  add_people(5);
  Recordset rs;
  rs.MaxRecords(2);
  rs.Open("select * from pessoa order by oid", connection, adOpenStatic);
  EXPECT_EQ(rs.RecordCount(), 2);
  EXPECT_THAT(oids(rs), ElementsAre(1, 2));
}

TEST_P(RecordsetRead, HoldsItsRowsWhileTheTableChanges) {
  add_people(2);
  const auto rs = query("select * from pessoa order by oid");
  run("delete from pessoa");
  EXPECT_THAT(oids(*rs), ElementsAre(1, 2));
}

TEST_P(RecordsetRead, LetsOtherStatementsRunMeanwhile) {
  add_people(3);
  std::vector<std::string> seen;
  const auto outer = query("select * from pessoa order by oid");
  for (; !outer->Eof(); outer->MoveNext()) {
    const auto inner = query("select count(*) as n from pessoa where oid > " +
                             std::to_string(outer->Fields("oid").Value().long_value()));
    seen.push_back(std::to_string(inner->Fields("n").Value().long_value()));
    run("update pessoa set peso = 1");
    connect()->Execute("update pessoa set peso = 2");
  }
  EXPECT_THAT(seen, ElementsAre("2", "1", "0"));
}

TEST_P(RecordsetRead, KeepsNullsAndEmptyTextsApart) {
  run("insert into pessoa (oid, nome, notas) values (1, '', null)");
  const auto rs = query("select * from pessoa");
  EXPECT_EQ(rs->Fields("nome").Value(), Variant(""));
  EXPECT_TRUE(rs->Fields("notas").Value().is_null());
}

TEST_P(RecordsetRead, IsReadOnlyUnlessAskedOtherwise) {
  add_people(1);
  const auto rs = query("select * from pessoa");
  const auto e = raised([&] { rs->Fields("nome") = "x"; });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kProviderCannot);
  EXPECT_EQ(e->source(), "ADODB.Field");
  EXPECT_EQ(number_raised([&] { rs->AddNew(); }), number::kProviderCannot);
  EXPECT_EQ(number_raised([&] { rs->Update(); }), number::kProviderCannot);
  EXPECT_EQ(number_raised([&] { rs->Delete(); }), number::kProviderCannot);
  EXPECT_EQ(rs->EditMode(), adEditNone);
}

TEST_P(RecordsetRead, GoesToAPosition) {
  add_people(5);
  const auto rs = query("select * from pessoa order by oid");
  EXPECT_EQ(rs->AbsolutePosition(), 1);
  rs->AbsolutePosition(4);
  EXPECT_EQ(rs->Fields("oid").Value(), Variant(4));
  EXPECT_EQ(rs->AbsolutePosition(), 4);
  EXPECT_EQ(number_raised([&] { rs->AbsolutePosition(0); }), number::kWrongArguments);
  EXPECT_EQ(number_raised([&] { rs->AbsolutePosition(6); }), number::kWrongArguments);
  rs->MoveLast();
  rs->MoveNext();
  EXPECT_EQ(rs->AbsolutePosition(), adPosEOF);
  rs->MoveFirst();
  rs->MovePrevious();
  EXPECT_EQ(rs->AbsolutePosition(), adPosBOF);
  const auto forward = query("select * from pessoa", adOpenForwardOnly);
  EXPECT_EQ(forward->AbsolutePosition(), adPosUnknown);
  EXPECT_EQ(number_raised([&] { forward->AbsolutePosition(2); }), number::kProviderCannot);
}

TEST_P(RecordsetRead, GoesToAPage) {
  add_people(7);
  Recordset rs;
  rs.CursorLocation(adUseClient);
  rs.PageSize(3);
  rs.Open("select * from pessoa order by oid", connection);
  EXPECT_EQ(rs.PageCount(), 3);
  EXPECT_EQ(rs.AbsolutePage(), 1);
  rs.AbsolutePage(3);
  EXPECT_EQ(rs.Fields("oid").Value(), Variant(7));
  rs.AbsolutePage(2);
  EXPECT_EQ(rs.Fields("oid").Value(), Variant(4));
  EXPECT_EQ(rs.AbsolutePage(), 2);
  EXPECT_EQ(number_raised([&] { rs.AbsolutePage(4); }), number::kWrongArguments);
  EXPECT_EQ(number_raised([&] { rs.AbsolutePage(0); }), number::kWrongArguments);
  EXPECT_EQ(query("select * from pessoa where 1 = 0")->PageCount(), 0);
  EXPECT_EQ(query("select * from pessoa", adOpenForwardOnly)->PageCount(), -1);
}

PELM_ON_EVERY_ENGINE(RecordsetRead);

}  // namespace
}  // namespace pelm::ado
