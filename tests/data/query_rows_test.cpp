// The rows of a query of the component's own: as RunSQL gives them, and nothing left open.
#include "data/query_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "pelm/error.h"
#include "support/component_fixture.h"
#include "support/raised_matchers.h"

namespace pelm::data {
namespace {

using test::raised;
using test::Raised;

constexpr std::string_view kRunSql = "PelmComum2008.Conn.RunSQL";

class FirstRowOf : public test::ComponentFixture {
 protected:
  FirstRow read(std::string sql) { return {conn(), sql, "oid", "nome"}; }
};
PELM_ON_EVERY_ENGINE(FirstRowOf);

TEST_P(FirstRowOf, HasTheValuesOfTheColumnsByName) {
  base().cadastrar_item(1, "Ana", 20, 8);
  base().cadastrar_item(1, "Bia", 20, 9);
  std::string sql = "select oid, nome from item where oid > 7 order by oid desc";
  const FirstRow row(conn(), sql, "OID", "Nome");
  ASSERT_TRUE(row.found());
  EXPECT_EQ(row[0], Variant(std::int32_t{9}));
  EXPECT_EQ(row[1], Variant("Bia"));
  EXPECT_EQ(conn().LastSQL(), sql);
}

TEST_P(FirstRowOf, TellsWhenThereIsNone) {
  EXPECT_FALSE(read("select oid, nome from item where oid = -5").found());
  std::string sql = "select oid from item where oid = -5";
  EXPECT_FALSE(FirstRow(conn(), sql).found());
}

TEST_P(FirstRowOf, KeepsNobodyFromWriting) {
  base().cadastrar_item(1, "Ana", 20, 8);
  base().cadastrar_item(1, "Bia", 20, 9);
  const FirstRow row = read("select oid, nome from item where oid > 7");
  ASSERT_TRUE(row.found());
  run("update item set nome = 'Outra'");
  run("delete from item where oid = 8");
  EXPECT_EQ(base().fObterNomeItem(9), "Outra");
}

TEST_P(FirstRowOf, IsTranslatedForOracleInPlace) {
  conn().Database(2);
  std::string sql = "select isnull(oid, 1) as oid from item where oid = -5";
  (void)raised([&] { FirstRow(conn(), sql, "oid"); });  // not every engine knows the result
  EXPECT_EQ(sql, "SELECT NVL(OID, 1) AS OID FROM ITEM WHERE OID = -5");
}

TEST_P(FirstRowOf, FailsAsRunSQLFails) {
  EXPECT_THAT(raised([&] { read("select oid, nome from nao_ha"); }),
              Raised(error_number::kNoTable, kRunSql, testing::HasSubstr("nao_ha")));
  EXPECT_EQ(conn().LastSQL(), "select oid, nome from nao_ha");
  conn().CloseConn();
  conn().LastSQL("antes");
  EXPECT_THAT(raised([&] { read("select oid, nome from item"); }),
              Raised(error_number::kInvalidConnection, kRunSql));
  EXPECT_EQ(conn().LastSQL(), "antes");
  conn().Conex(nullptr);
  EXPECT_THAT(raised([&] { read("select oid, nome from item"); }),
              Raised(error_number::kInvalidConnection, kRunSql));
  EXPECT_EQ(conn().LastSQL(), "select oid, nome from item");
}

TEST_P(FirstRowOf, FailsAsTheFieldsOfARecordSetFail) {
  base().cadastrar_item(1, "Ana", 20, 8);
  EXPECT_THAT(raised([&] { read("select oid from item where oid = 8"); }),
              Raised(error_number::kItemNotFound, kRunSql, testing::HasSubstr("(nome)")));
  EXPECT_THAT(raised([&] { read("update item set nome = 'Eva' where oid = 8"); }),
              Raised(error_number::kObjectClosed, kRunSql));
  EXPECT_EQ(base().fObterNomeItem(8), "Eva");
}

class AllRowsOf : public test::ComponentFixture {
 protected:
  void SetUp() override {
    ComponentFixture::SetUp();
    if (IsSkipped()) return;
    base().cadastrar_item(1, "Ana", 20, 8);
    base().cadastrar_item(1, "Bia", 20, 9);
  }
  AllRows read(std::string sql) { return {conn(), sql, "oid", "nome"}; }
};
PELM_ON_EVERY_ENGINE(AllRowsOf);

TEST_P(AllRowsOf, HasTheValuesOfTheColumnsByNameRowByRow) {
  std::string sql = "select nome, rescopo, oid from item where oid > 7 order by oid desc";
  const AllRows rows(conn(), sql, "Nome", "OID");
  EXPECT_EQ(conn().LastSQL(), sql);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_THAT(rows[0], testing::ElementsAre(Variant("Bia"), Variant(std::int32_t{9})));
  EXPECT_THAT(rows[1], testing::ElementsAre(Variant("Ana"), Variant(std::int32_t{8})));
}

TEST_P(AllRowsOf, TellsWhenThereIsNone) {
  EXPECT_EQ(read("select oid, nome from item where oid = -5").size(), 0U);
}

TEST_P(AllRowsOf, HasAsManyAsThereAre) {
  run_together(
      {"insert into item (OID, CID, NOME) select OID + 10, CID, NOME from item where OID > 7",
       "insert into item (OID, CID, NOME) select OID + 20, CID, NOME from item where OID > 7",
       "insert into item (OID, CID, NOME) select OID + 40, CID, NOME from item where OID > 7",
       "insert into item (OID, CID, NOME) select OID + 80, CID, NOME from item where OID > 7"});
  const AllRows rows = read("select oid, nome from item where oid > 7 order by oid");
  ASSERT_EQ(rows.size(), 32U);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(rows[i][1], Variant(i % 2 == 0 ? "Ana" : "Bia")) << i;
  }
}

TEST_P(AllRowsOf, KeepsNobodyFromWriting) {
  const AllRows rows = read("select oid, nome from item where oid > 7 order by oid");
  run("update item set nome = 'Outra'");
  EXPECT_EQ(rows[1][1], Variant("Bia"));
  EXPECT_EQ(base().fObterNomeItem(9), "Outra");
}

TEST_P(AllRowsOf, FailsAsRunSQLFails) {
  EXPECT_THAT(raised([&] { read("select oid, nome from nao_ha"); }),
              Raised(error_number::kNoTable, kRunSql, testing::HasSubstr("nao_ha")));
  EXPECT_EQ(conn().LastSQL(), "select oid, nome from nao_ha");
  conn().Conex(nullptr);
  EXPECT_THAT(raised([&] { read("select oid, nome from item"); }),
              Raised(error_number::kInvalidConnection, kRunSql));
}

TEST_P(AllRowsOf, FailsAsTheFieldsOfARecordSetFail) {
  EXPECT_THAT(raised([&] { read("select oid from item where oid = 8"); }),
              Raised(error_number::kItemNotFound, kRunSql, testing::HasSubstr("(nome)")));
  EXPECT_EQ(read("select oid from item where oid = -5").size(), 0U) << "nobody asks for a field";
}

}  // namespace
}  // namespace pelm::data
