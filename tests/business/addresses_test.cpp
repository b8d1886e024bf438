// Addresses: items with a row of their own.
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

class Addresses : public test::BaseTest {
 protected:
  void SetUp() override {
    BaseTest::SetUp();
    if (IsSkipped()) return;
    oids_from(1000);
  }
  std::vector<std::string> addresses() {
    return rows(
        "select OID, RITEM, RCIDADE, CEP, BAIRRO, COMPLEMENTO, NUMERO, RUA, REFERENCIA "
        "from endereco order by OID");
  }
  std::string name_of(Oid oid) {
    return row("select NOME from item where OID = " + std::to_string(oid));
  }
};

class CadastrarEndereco : public Addresses {};
PELM_ON_EVERY_ENGINE(CadastrarEndereco);

TEST_P(CadastrarEndereco, StoresTheItemItsRowAndItsClassification) {
  const ScopedClock clock(kNow);
  EXPECT_EQ(base().cadastrar_endereco(8, 60, "01310-100", "Centro", "ap 3", "10", "Rua A",
                                      "perto da praça", 5),
            1000);
  EXPECT_THAT(
      rows("select OID, CID, NOME, CODIGO, RESCOPO, CRIADOPOR, CRIADOEM, ATUALIZADOPOR, "
           "ATUALIZADOEM, OBSERVACAO, EXCLUIDO from item"),
      ElementsAre("1000|26|Rua A ap 3 10||7|5|05/03/2008 14:07:09|5|05/03/2008 14:07:09||0"));
  EXPECT_THAT(addresses(), ElementsAre("1000|8|60|01310-100|Centro|ap 3|10|Rua A|perto da praça"));
  EXPECT_THAT(rows("select OID, RITEM, RCATEGORIA from classificacao"),
              ElementsAre("1001|1000|1066"));
  EXPECT_TRUE(is_idle());
}

struct Named {
  std::string_view street, complement, number, name;
};

TEST_P(CadastrarEndereco, TheNameHasOneBlankBetweenThePartsEvenWhereOneIsEmpty) {
  constexpr Named kCases[] = {
      {"Rua A", "", "10", "Rua A  10"},
      {"", "", "", "  "},
      {"Rua A", "fundos", "", "Rua A fundos "},
      {" Rua A ", "b", "1", " Rua A  b 1"},
  };
  for (const Named& c : kCases) {
    const Oid oid = base().cadastrar_endereco(8, 60, "", "", c.complement, c.number, c.street);
    EXPECT_EQ(name_of(oid), c.name);
  }
}

TEST_P(CadastrarEndereco, AReferenceLeftOutIsStoredAsTheEmptyText) {
  base().cadastrar_endereco(8, 60, "", "", "", "10", "Rua A");
  EXPECT_EQ(row("select count(*) from endereco where REFERENCIA = ''"), "1");
  EXPECT_EQ(row("select CRIADOPOR from item"), "1");
}

TEST_P(CadastrarEndereco, MakesItsCallsInTheirOrder) {
  reserve_oids(1000);
  mark_sSQL();
  EXPECT_THAT(calls_of([&] {
                return base().cadastrar_endereco(8, 60, "cep", "bairro", "compl", "10", "Rua A",
                                                 "ref");
              }),
              ElementsAre("describe item", testing::StartsWith("execute insert into item "),
                          "describe endereco",
                          "execute insert into endereco (RITEM,RCIDADE,CEP,BAIRRO,COMPLEMENTO,"
                          "NUMERO,RUA,OID,REFERENCIA) values (?,?,?,?,?,?,?,?,?) [8, 60, 'cep', "
                          "'bairro', 'compl', '10', 'Rua A', 1000, 'ref']",
                          "describe classificacao",
                          "execute insert into classificacao (RITEM,RCATEGORIA,OID) values "
                          "(?,?,?) [1000, 1066, 1001]"));
  EXPECT_EQ(sSQL(), kMarkedSql);
}

TEST_P(CadastrarEndereco, ATextTooLongLeavesTheItemBehind) {
  EXPECT_THAT(raised([&] {
                base().cadastrar_endereco(8, 60, std::string(21, '0'), "", "", "10", "Rua A");
              }),
              Raised(error_number::kDataOverflow, of_base("cadastrar_endereco"), testing::_));
  EXPECT_EQ(row_counts(), "item 1");
  EXPECT_TRUE(is_idle());
}

TEST_P(CadastrarEndereco, AnAllocatorThatHandsOutMinusOneRaisesTheSharedText) {
  oids_from(-1, 1);
  EXPECT_THAT(raised([&] { base().cadastrar_endereco(8, 60, "", "", "", "10", "Rua A"); }),
              Raised(error_number::kComponent, of_base("cadastrar_endereco"), ""));
  EXPECT_EQ(row_counts(), "item 1");
}

class AlterarEndereco : public Addresses {
 protected:
  void SetUp() override {
    Addresses::SetUp();
    if (IsSkipped()) return;
    base().cadastrar_endereco(8, 60, "01310-100", "Centro", "ap 3", "10", "Rua A", "praça", 5);
  }
};
PELM_ON_EVERY_ENGINE(AlterarEndereco);

TEST_P(AlterarEndereco, RewritesTheRowAndRenamesTheItem) {
  const ScopedClock clock(kNow);
  EXPECT_EQ(base().alterar_endereco(1000, 9, 61, "2", "Sul", "casa", "11", "Rua B", "ponte", 6),
            1000);
  EXPECT_THAT(addresses(), ElementsAre("1000|9|61|2|Sul|casa|11|Rua B|ponte"));
  EXPECT_EQ(row("select NOME, ATUALIZADOPOR, ATUALIZADOEM, CRIADOPOR from item"),
            "Rua B casa 11|6|05/03/2008 14:07:09|5");
  EXPECT_EQ(row_counts(), "item 1, classificacao 1, endereco 1");
  EXPECT_TRUE(is_idle());
}

TEST_P(AlterarEndereco, OnlyAnEmptyReferenceLeavesTheStoredOne) {
  base().alterar_endereco(1000, 9, 61, "", "", "", "", "");
  EXPECT_THAT(addresses(), ElementsAre("1000|9|61||||||praça"));
  EXPECT_EQ(row("select NOME, ATUALIZADOPOR from item"), "  |1");
  base().alterar_endereco(1000, 9, 61, "", "", "", "", "", " ");
  EXPECT_EQ(row("select REFERENCIA from endereco"), " ");
}

TEST_P(AlterarEndereco, WithoutARowTheItemIsRenamedBeforeItFails) {
  run("delete from endereco");
  EXPECT_THAT(raised([&] { base().alterar_endereco(1000, 9, 61, "", "", "", "11", "Rua B"); }),
              Raised(error_number::kNoCurrentRecord, of_base("alterar_endereco")));
  EXPECT_EQ(name_of(1000), "Rua B  11");
  EXPECT_TRUE(is_idle());
}

TEST_P(AlterarEndereco, WithoutAnItemNothingIsRewritten) {
  run("delete from item");
  EXPECT_THAT(raised([&] { base().alterar_endereco(1000, 9, 61, "", "", "", "11", "Rua B"); }),
              Raised(error_number::kNoCurrentRecord, of_base("alterar_endereco")));
  EXPECT_THAT(addresses(), ElementsAre("1000|8|60|01310-100|Centro|ap 3|10|Rua A|praça"));
}

// kept: -1 is what a failed step would return, so an item of that OID counts as one
TEST_P(AlterarEndereco, TheAddressMinusOneIsRenamedBeforeTheSharedTextIsRaised) {
  run("insert into item (OID, CID, NOME) values (-1, 26, 'Rua A')");
  run("insert into endereco (OID, RUA) values (-1, 'Rua A')");
  MensagemErro() = "Aditivo inexistente.";
  EXPECT_THAT(
      raised([&] { base().alterar_endereco(-1, 9, 61, "", "", "casa", "11", "Rua B"); }),
      Raised(error_number::kComponent, of_base("alterar_endereco"), "Aditivo inexistente."));
  EXPECT_EQ(name_of(-1), "Rua B casa 11");
  EXPECT_EQ(row("select RUA from endereco where OID = -1"), "Rua A");
  EXPECT_EQ(sSQL(), "SELECT * FROM item WHERE oid = -1");
}

TEST_P(AlterarEndereco, MakesItsCallsInTheirOrder) {
  const std::vector<std::string> calls = calls_of([&] {
    return base().alterar_endereco(1000, 9, 61, "2", "Sul", "casa", "11", "Rua B", "ponte");
  });
  ASSERT_EQ(calls.size(), 6U);
  EXPECT_EQ(calls[0], "execute SELECT * FROM item WHERE oid = 1000");
  EXPECT_THAT(
      calls[2],
      testing::StartsWith("execute update item set ATUALIZADOPOR = ?, ATUALIZADOEM = ?, NOME = "));
  EXPECT_EQ(calls[3], "execute SELECT * FROM endereco WHERE oid = 1000");
  EXPECT_THAT(calls[5],
              testing::StartsWith("execute update endereco set RITEM = ?, RCIDADE = ?, CEP = ?, "
                                  "BAIRRO = ?, COMPLEMENTO = ?, NUMERO = ?, RUA = ?, REFERENCIA = "
                                  "? where OID = ?"));
  EXPECT_EQ(sSQL(), "SELECT * FROM endereco WHERE oid = 1000");
}

TEST_P(AlterarEndereco, AnEmptyReferenceIsNoPartOfTheChange) {
  const std::vector<std::string> calls = calls_of(
      [&] { return base().alterar_endereco(1000, 9, 61, "2", "Sul", "casa", "11", "Rua B"); });
  EXPECT_THAT(calls.back(), testing::HasSubstr("NUMERO = ?, RUA = ? where "));
}

}  // namespace
}  // namespace pelm
