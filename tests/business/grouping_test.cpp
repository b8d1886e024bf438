// Grouping, classification and categories.
#include <string>
#include <string_view>
#include <vector>

#include "business/base_test.h"
#include "support/atualoid.h"

namespace pelm {
namespace {

using test::of_base;
using test::raised;
using test::Raised;
using testing::ElementsAre;

class CadastrarAgrupamento : public test::BaseTest {};
PELM_ON_EVERY_ENGINE(CadastrarAgrupamento);

TEST_P(CadastrarAgrupamento, AddsARowEachTime) {
  oids_from(1000);
  EXPECT_TRUE(base().cadastrar_agrupamento(11, 12, 13));
  EXPECT_TRUE(base().cadastrar_agrupamento(11, 12, 13));
  EXPECT_THAT(rows("select OID, RPAPEL, RGRUPO, RITEM from agrupamento order by OID"),
              ElementsAre("1000|11|12|13", "1001|11|12|13"));
  EXPECT_TRUE(is_idle());
}

TEST_P(CadastrarAgrupamento, MakesItsCallsInTheirOrder) {
  oids_from(1000);
  mark_sSQL();
  EXPECT_THAT(calls_of([&] { return base().cadastrar_agrupamento(11, 12, 13); }),
              ElementsAre("begin", "call atualoid [null]", "commit",
                          "execute Select Delta from controlaoid", "describe agrupamento",
                          "execute insert into agrupamento (RPAPEL,RGRUPO,RITEM,OID) values "
                          "(?,?,?,?) [11, 12, 13, 1000]"));
  EXPECT_EQ(sSQL(), kMarkedSql);
  EXPECT_EQ(conn().LastSQL(), "select * from agrupamento");
}

TEST_P(CadastrarAgrupamento, ATableThatIsMissingHasTheOperationsSourceAndUsesUpAnOid) {
  oids_from(1000);
  run("drop table agrupamento");
  EXPECT_THAT(raised([&] { base().cadastrar_agrupamento(11, 12, 13); }),
              Raised(error_number::kNoTable, of_base("cadastrar_agrupamento"), testing::_));
  EXPECT_EQ(base().Gerar_Oid(), 1001);
  EXPECT_TRUE(is_idle());
}

TEST_P(CadastrarAgrupamento, AnErrorOfTheAllocatorHasTheOperationsSource) {
  run(test::drop_atualoid(GetParam()));
  thread().forget_oids();
  EXPECT_THAT(raised([&] { base().cadastrar_agrupamento(11, 12, 13); }),
              Raised(error_number::kErrorsInCommand, of_base("cadastrar_agrupamento"), testing::_));
}

class CadastrarClassificacao : public test::BaseTest {};
PELM_ON_EVERY_ENGINE(CadastrarClassificacao);

TEST_P(CadastrarClassificacao, AddsARowEachTime) {
  oids_from(1000);
  EXPECT_TRUE(base().cadastrar_classificacao(13, 1000));
  EXPECT_TRUE(base().cadastrar_classificacao(13, 1000));
  EXPECT_THAT(rows("select OID, RITEM, RCATEGORIA from classificacao order by OID"),
              ElementsAre("1000|13|1000", "1001|13|1000"));
  EXPECT_TRUE(is_idle());
}

TEST_P(CadastrarClassificacao, MakesItsCallsInTheirOrder) {
  oids_from(1000);
  EXPECT_THAT(calls_of([&] { return base().cadastrar_classificacao(13, 14); }),
              ElementsAre("begin", "call atualoid [null]", "commit",
                          "execute Select Delta from controlaoid", "describe classificacao",
                          "execute insert into classificacao (RITEM,RCATEGORIA,OID) values (?,?,?) "
                          "[13, 14, 1000]"));
  EXPECT_EQ(conn().LastSQL(), "select * from classificacao");
}

class CadastrarCategoria : public test::BaseTest {};
PELM_ON_EVERY_ENGINE(CadastrarCategoria);

TEST_P(CadastrarCategoria, WithOnlyAParentIsCalledAfterItsNewOid) {
  oids_from(1234);
  EXPECT_EQ(base().cadastrar_categoria(7), 1234);
  EXPECT_THAT(rows("select OID, RSUPER, NOMEINTERNO from categoria"),
              ElementsAre("1234|7|CAT1234"));
  EXPECT_TRUE(is_idle());
}

TEST_P(CadastrarCategoria, AnEmptyNameCountsAsNone) {
  EXPECT_EQ(base().cadastrar_categoria(7, "", 500), 500);
  EXPECT_EQ(base().cadastrar_categoria(7, "", -5), -5);
  EXPECT_THAT(rows("select NOMEINTERNO from categoria order by OID"),
              ElementsAre("CAT-5", "CAT500"));
}

TEST_P(CadastrarCategoria, AGivenNameIsStoredAsGiven) {
  EXPECT_EQ(base().cadastrar_categoria(7, "cor preferida", 500), 500);
  EXPECT_EQ(base().cadastrar_categoria(7, " ", 501), 501);
  EXPECT_THAT(rows("select OID, NOMEINTERNO from categoria order by OID"),
              ElementsAre("500|cor preferida", "501| "));
}

TEST_P(CadastrarCategoria, OidSevenAsksForANewOne) {
  oids_from(1000);
  EXPECT_EQ(base().cadastrar_categoria(7, "COR", 7), 1000);
  EXPECT_EQ(base().cadastrar_categoria(7, "COR"), 1001);
  EXPECT_EQ(base().cadastrar_categoria(7, "COR", 0), 0);
  EXPECT_EQ(base().Gerar_Oid(), 1002);
}

TEST_P(CadastrarCategoria, AnOidThatExistsRaises) {
  base().cadastrar_categoria(7, "COR", 500);
  EXPECT_THAT(
      raised([&] { base().cadastrar_categoria(7, "TOM", 500); }),
      Raised(error_number::kIntegrityViolation, of_base("cadastrar_categoria"), testing::_));
  EXPECT_THAT(rows("select NOMEINTERNO from categoria"), ElementsAre("COR"));
  EXPECT_TRUE(is_idle());
}

TEST_P(CadastrarCategoria, MakesItsCallsInTheirOrder) {
  EXPECT_THAT(calls_of([&] { return base().cadastrar_categoria(7, "cor", 500); }),
              ElementsAre("describe categoria",
                          "execute insert into categoria (RSUPER,NOMEINTERNO,OID) values (?,?,?) "
                          "[7, 'cor', 500]"));
  EXPECT_EQ(conn().LastSQL(), "select * from categoria");
}

}  // namespace
}  // namespace pelm
