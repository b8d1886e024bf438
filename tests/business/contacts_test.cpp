// Contacts: a person with a position at a company.
#include <string>
#include <string_view>
#include <vector>

#include "business/base_test.h"

namespace pelm {
namespace {

using test::kNow;
using test::of_base;
using test::raised;
using test::Raised;
using testing::ElementsAre;

constexpr Oid kGerente = 701;
constexpr Oid kDiretor = 702;
constexpr Oid kAmigo = 703;  // a role that is no position
constexpr Oid kEmpresa = 500;
constexpr Oid kOutraEmpresa = 501;

class Contacts : public test::BaseTest {
 protected:
  void SetUp() override {
    BaseTest::SetUp();
    if (IsSkipped()) return;
    run("insert into item (OID, CID, NOME) values (701, 46, 'Gerente'), (702, 46, 'Diretor')");
    run("insert into cargo (OID) values (701), (702)");
    oids_from(1000);
  }
  std::vector<std::string> groupings() {
    return rows("select RPAPEL, RGRUPO, RITEM from agrupamento order by OID");
  }
  std::string name_of(Oid oid) {
    return row("select NOME from item where OID = " + std::to_string(oid));
  }
};

class CadastrarContato : public Contacts {};
PELM_ON_EVERY_ENGINE(CadastrarContato);

TEST_P(CadastrarContato, StoresTheItemThePersonTheClassificationAndThePosition) {
  const ScopedClock clock(kNow);
  EXPECT_EQ(base().cadastrar_contato("João", kGerente, kEmpresa, 3), 1000);
  EXPECT_THAT(rows("select OID, CID, NOME, CODIGO, RESCOPO, CRIADOPOR, CRIADOEM, ATUALIZADOPOR, "
                   "ATUALIZADOEM, OBSERVACAO, EXCLUIDO from item where OID >= 1000"),
              ElementsAre("1000|45|João||7|3|05/03/2008 14:07:09|3|05/03/2008 14:07:09||0"));
  EXPECT_THAT(rows("select OID, RAZAOSOCIAL, IDENTIFICADOR from pessoa"),
              ElementsAre("1000||null"));
  EXPECT_THAT(rows("select OID from pessoafisica"), ElementsAre("1000"));
  EXPECT_THAT(rows("select OID, RITEM, RCATEGORIA from classificacao"),
              ElementsAre("1001|1000|1000"));
  EXPECT_THAT(rows("select OID, RPAPEL, RGRUPO, RITEM from agrupamento"),
              ElementsAre("1002|701|500|1000"));
  EXPECT_TRUE(is_idle());
}

TEST_P(CadastrarContato, TheCreatorIsUserOneUnlessGiven) {
  base().cadastrar_contato("João", kGerente, kEmpresa);
  EXPECT_EQ(row("select CRIADOPOR, ATUALIZADOPOR from item where OID = 1000"), "1|1");
}

TEST_P(CadastrarContato, MakesItsCallsInTheirOrder) {
  reserve_oids(1000);
  mark_sSQL();
  const ScopedClock clock(kNow);
  EXPECT_THAT(
      calls_of([&] { return base().cadastrar_contato("João", kGerente, kEmpresa); }),
      ElementsAre(
          "describe item", testing::StartsWith("execute insert into item "), "describe pessoa",
          "execute insert into pessoa (RAZAOSOCIAL,OID,IDENTIFICADOR) values (?,?,?) ['', 1000, "
          "null]",
          "describe pessoafisica", "execute insert into pessoafisica (OID) values (?) [1000]",
          "describe classificacao",
          "execute insert into classificacao (RITEM,RCATEGORIA,OID) values (?,?,?) [1000, 1000, "
          "1001]",
          "describe agrupamento",
          "execute insert into agrupamento (RPAPEL,RGRUPO,RITEM,OID) values (?,?,?,?) [701, 500, "
          "1000, 1002]"));
  EXPECT_EQ(sSQL(), kMarkedSql);
}

TEST_P(CadastrarContato, WhatWasWrittenBeforeAFailureStays) {
  run("drop table agrupamento");
  EXPECT_THAT(raised([&] { base().cadastrar_contato("João", kGerente, kEmpresa); }),
              Raised(error_number::kNoTable, of_base("cadastrar_contato"), testing::_));
  run("create table agrupamento (OID integer)");  // for the counting
  EXPECT_EQ(row_counts(), "item 3, classificacao 1, pessoa 1, pessoafisica 1");
  EXPECT_TRUE(is_idle());
}

TEST_P(CadastrarContato, AnAllocatorThatHandsOutMinusOneRaisesTheSharedText) {
  oids_from(-1, 1);
  run("update controlaoid set UltimoOID = -2");
  thread().forget_oids();
  MensagemErro() = "Aditivo inexistente.";
  EXPECT_THAT(
      raised([&] { base().cadastrar_contato("João", kGerente, kEmpresa); }),
      Raised(error_number::kComponent, of_base("cadastrar_contato"), "Aditivo inexistente."));
  EXPECT_EQ(name_of(-1), "João");
  EXPECT_EQ(row_counts(), "item 3");
}

class AlterarContato : public Contacts {
 protected:
  void SetUp() override {
    Contacts::SetUp();
    if (IsSkipped()) return;
    base().cadastrar_contato("João", kGerente, kEmpresa);
    ASSERT_THAT(groupings(), ElementsAre("701|500|1000"));
  }
  static constexpr std::string_view kDelete =
      "DELETE FROM agrupamento WHERE rpapel IN (SELECT oid FROM cargo_r) AND ritem IN (SELECT oid "
      "FROM item_r) AND rgrupo = 500 AND ritem = 1000";
};
PELM_ON_EVERY_ENGINE(AlterarContato);

TEST_P(AlterarContato, RenamesAndReplacesThePosition) {
  const ScopedClock clock(kNow);
  EXPECT_EQ(base().alterar_contato("1000", "João Paulo", kDiretor, kEmpresa, 4), 1000);
  EXPECT_EQ(row("select NOME, ATUALIZADOPOR, ATUALIZADOEM, CRIADOPOR from item where OID = 1000"),
            "João Paulo|4|05/03/2008 14:07:09|1");
  EXPECT_THAT(groupings(), ElementsAre("702|500|1000"));
  EXPECT_TRUE(is_idle());
}

TEST_P(AlterarContato, TheUpdaterIsUserOneUnlessGiven) {
  run("update item set ATUALIZADOPOR = 9");
  base().alterar_contato("1000", "João", kDiretor, kEmpresa);
  EXPECT_EQ(row("select ATUALIZADOPOR from item where OID = 1000"), "1");
}

TEST_P(AlterarContato, EveryPositionInThatCompanyGoesAndNothingElse) {
  base().cadastrar_agrupamento(kDiretor, kEmpresa, 1000);
  base().cadastrar_agrupamento(kAmigo, kEmpresa, 1000);
  base().cadastrar_agrupamento(kGerente, kOutraEmpresa, 1000);
  base().cadastrar_agrupamento(kGerente, kEmpresa, 1001);
  base().alterar_contato("1000", "João", kDiretor, kEmpresa);
  EXPECT_THAT(groupings(),
              ElementsAre("703|500|1000", "701|501|1000", "701|500|1001", "702|500|1000"));
}

TEST_P(AlterarContato, ANewCompanyLeavesThePositionAtTheOldOne) {
  base().alterar_contato("1000", "João", kDiretor, kOutraEmpresa);
  EXPECT_THAT(groupings(), ElementsAre("701|500|1000", "702|501|1000"));
}

TEST_P(AlterarContato, MakesItsCallsInTheirOrder) {
  const std::vector<std::string> calls =
      calls_of([&] { return base().alterar_contato("1000", "Paulo", kDiretor, kEmpresa); });
  EXPECT_THAT(
      calls,
      ElementsAre("execute SELECT * FROM item WHERE oid = 1000", "describe item",
                  testing::StartsWith(
                      "execute update item set ATUALIZADOPOR = ?, ATUALIZADOEM = ?, NOME = ? "),
                  "execute " + std::string(kDelete), "describe agrupamento",
                  "execute insert into agrupamento (RPAPEL,RGRUPO,RITEM,OID) values (?,?,?,?) "
                  "[702, 500, 1000, 1003]"));
  EXPECT_EQ(sSQL(), kDelete);
  EXPECT_EQ(conn().LastSQL(), "select * from agrupamento");
}

TEST_P(AlterarContato, TheRemovalIsNotTranslated) {
  conn().Database(2);
  EXPECT_THAT(calls_of([&] { return base().alterar_contato("1000", "Paulo", kDiretor, kEmpresa); }),
              testing::Contains("execute " + std::string(kDelete)));
}

TEST_P(AlterarContato, AnOidThatIsNoNumberWritesNothing) {
  for (const std::string_view oid : {"abc", "", "1000 or 1=1", "1000;"}) {
    EXPECT_THAT(raised([&] { base().alterar_contato(oid, "Paulo", kDiretor, kEmpresa); }),
                Raised(error_number::kTypeMismatch, of_base("alterar_contato")))
        << oid;
  }
  EXPECT_THAT(raised([&] { base().alterar_contato("99999999999", "Paulo", kDiretor, kEmpresa); }),
              Raised(error_number::kOverflow, of_base("alterar_contato")));
  EXPECT_EQ(name_of(1000), "João");
  EXPECT_THAT(groupings(), ElementsAre("701|500|1000"));
}

TEST_P(AlterarContato, TheOidGoesIntoTheStatementExactlyAsGiven) {
  EXPECT_EQ(base().alterar_contato(" 1000 ", "Paulo", kDiretor, kEmpresa), 1000);
  EXPECT_THAT(sSQL(), testing::EndsWith("AND rgrupo = 500 AND ritem =  1000 "));
  EXPECT_THAT(groupings(), ElementsAre("702|500|1000"));

  // kept: one number to the component, another to the database
  EXPECT_EQ(base().alterar_contato("1.000", "Maria", kGerente, kEmpresa), 1000);
  EXPECT_EQ(name_of(1000), "Maria");
  EXPECT_THAT(groupings(), ElementsAre("702|500|1000", "701|500|1000"));
}

TEST_P(AlterarContato, AStatementThatCannotRunLeavesTheContactRenamed) {
  EXPECT_THAT(raised([&] { base().alterar_contato("1000,2", "Paulo", kDiretor, kEmpresa); }),
              Raised(error_number::kErrorsInCommand, of_base("alterar_contato"), testing::_));
  EXPECT_EQ(name_of(1000), "Paulo");
  EXPECT_THAT(groupings(), ElementsAre("701|500|1000"));
  EXPECT_TRUE(is_idle());
}

// kept: -1 is what a failed step would return, so an item of that OID counts as one
TEST_P(AlterarContato, TheContactMinusOneIsRenamedBeforeTheSharedTextIsRaised) {
  run("insert into item (OID, CID, NOME) values (-1, 45, 'João')");
  MensagemErro() = "Aditivo inexistente.";
  EXPECT_THAT(raised([&] { base().alterar_contato("-1", "Paulo", kDiretor, kEmpresa); }),
              Raised(error_number::kComponent, of_base("alterar_contato"), "Aditivo inexistente."));
  EXPECT_EQ(name_of(-1), "Paulo");
  EXPECT_EQ(sSQL(), "SELECT * FROM item WHERE oid = -1");
  EXPECT_THAT(groupings(), ElementsAre("701|500|1000"));
}

TEST_P(AlterarContato, TheExtremesOf32BitsAreOidsLikeAnyOther) {
  for (const std::string oid : {"-2147483648", "2147483647"}) {
    run("insert into item (OID, CID, NOME) values (" + oid + ", 45, 'João')");
    const Oid contact = base().alterar_contato(oid, "Paulo", -2147483647 - 1, 2147483647);
    EXPECT_EQ(std::to_string(contact), oid);
    EXPECT_EQ(name_of(contact), "Paulo");
    EXPECT_THAT(sSQL(), testing::EndsWith("AND rgrupo = 2147483647 AND ritem = " + oid));
    EXPECT_THAT(groupings(), testing::Contains("-2147483648|2147483647|" + oid));
  }
  EXPECT_THAT(raised([&] { base().alterar_contato("2147483648", "Paulo", kDiretor, kEmpresa); }),
              Raised(error_number::kOverflow, of_base("alterar_contato")));
}

TEST_P(AlterarContato, AnUnknownContactRaises3021AndWritesNothing) {
  EXPECT_THAT(raised([&] { base().alterar_contato("99", "Paulo", kDiretor, kEmpresa); }),
              Raised(error_number::kNoCurrentRecord, of_base("alterar_contato")));
  EXPECT_THAT(groupings(), ElementsAre("701|500|1000"));
}

}  // namespace
}  // namespace pelm
