// Communications: telephone numbers, e-mail addresses and the like.
#include <string>
#include <string_view>
#include <vector>

#include "business/base_test.h"

namespace pelm {
namespace {

using test::of_base;
using test::raised;
using test::Raised;
using testing::ElementsAre;

constexpr std::string_view kUnknown = "A comunicação que está sendo alterada não existe!";

class Communications : public test::BaseTest {
 protected:
  void SetUp() override {
    BaseTest::SetUp();
    if (IsSkipped()) return;
    oids_from(1000);
  }
  std::vector<std::string> communications() {
    return rows("select OID, RITEM, RTIPO, RENDERECO, VALOR from comunicacao order by OID");
  }
};

class CadastrarComunicacao : public Communications {};
PELM_ON_EVERY_ENGINE(CadastrarComunicacao);

TEST_P(CadastrarComunicacao, AddsARowEachTime) {
  EXPECT_TRUE(base().cadastrar_comunicacao(8, 20, 30, "3555-0101"));
  EXPECT_TRUE(base().cadastrar_comunicacao(8, 20, 30, "3555-0101"));
  EXPECT_THAT(communications(), ElementsAre("1000|8|20|30|3555-0101", "1001|8|20|30|3555-0101"));
  EXPECT_EQ(row_counts(), "comunicacao 2");
  EXPECT_TRUE(is_idle());
}

TEST_P(CadastrarComunicacao, AValueLeftOutIsStoredAsTheEmptyText) {
  base().cadastrar_comunicacao(8, 20, 30);
  EXPECT_EQ(row("select count(*) from comunicacao where VALOR = ''"), "1");
}

TEST_P(CadastrarComunicacao, MakesItsCallsInTheirOrder) {
  mark_sSQL();
  EXPECT_THAT(calls_of([&] { return base().cadastrar_comunicacao(8, 20, 30, "x"); }),
              ElementsAre("begin", "call atualoid [null]", "commit",
                          "execute Select Delta from controlaoid", "describe comunicacao",
                          "execute insert into comunicacao (RITEM,RTIPO,RENDERECO,VALOR,OID) "
                          "values (?,?,?,?,?) [8, 20, 30, 'x', 1000]"));
  EXPECT_EQ(sSQL(), kMarkedSql);
}

class AlterarComunicacao : public Communications {
 protected:
  void SetUp() override {
    Communications::SetUp();
    if (IsSkipped()) return;
    base().cadastrar_comunicacao(8, 20, 30, "3555-0101");
    base().cadastrar_comunicacao(8, 21, 30, "ana@example.org");
  }
};
PELM_ON_EVERY_ENGINE(AlterarComunicacao);

TEST_P(AlterarComunicacao, RewritesAllFourColumnsOfThatRow) {
  EXPECT_TRUE(base().alterar_comunicacao(1000, 9, 22, 31, "3555-0199"));
  EXPECT_THAT(communications(),
              ElementsAre("1000|9|22|31|3555-0199", "1001|8|21|30|ana@example.org"));
  EXPECT_TRUE(base().alterar_comunicacao(1000, 9, 22, 31, ""));
  EXPECT_THAT(communications(), ElementsAre("1000|9|22|31|", "1001|8|21|30|ana@example.org"));
  EXPECT_TRUE(is_idle());
}

TEST_P(AlterarComunicacao, AnUnknownOneRaises1001AndChangesNothing) {
  EXPECT_THAT(
      raised([&] { base().alterar_comunicacao(99, 9, 22, 31, "x"); }),
      Raised(error_number::kComponent, of_base("alterar_comunicacao"), std::string(kUnknown)));
  EXPECT_EQ(MensagemErro(), kUnknown);
  EXPECT_THAT(communications(),
              ElementsAre("1000|8|20|30|3555-0101", "1001|8|21|30|ana@example.org"));
  EXPECT_TRUE(is_idle());
}

TEST_P(AlterarComunicacao, MakesItsCallsInTheirOrder) {
  const std::vector<std::string> calls =
      calls_of([&] { return base().alterar_comunicacao(1000, 9, 22, 31, "x"); });
  ASSERT_EQ(calls.size(), 3U);
  EXPECT_EQ(calls[0], "execute SELECT * FROM comunicacao WHERE oid = 1000");
  EXPECT_THAT(calls[2],
              testing::StartsWith("execute update comunicacao set RITEM = ?, RTIPO = ?, RENDERECO "
                                  "= ?, VALOR = ? where OID = ?"));
  EXPECT_EQ(sSQL(), "SELECT * FROM comunicacao WHERE oid = 1000");
}

}  // namespace
}  // namespace pelm
