// Accounting look-ups.
#include <string>
#include <string_view>

#include "business/base_test.h"

namespace pelm {
namespace {

using test::of_base;
using test::raised;
using test::Raised;
using testing::ElementsAre;

/// Accounts 501 to 506; 509 has no item. Item 80 is associated in chart 40.
class Accounts : public test::BaseTest {
 protected:
  void SetUp() override {
    BaseTest::SetUp();
    if (IsSkipped()) return;
    for (int account = 501; account <= 506; ++account) {
      add_item(account, 7);
      run("insert into contacontabil (OID, HIERARQUIANUMERO) values (" + std::to_string(account) +
          ", '1.1." + std::to_string(account) + "')");
    }
    run("insert into contacontabil (OID, HIERARQUIANUMERO) values (509, null)");
  }
  void add_item(int oid, int scope) {
    run("insert into item (OID, CID, NOME, RESCOPO) values (" + std::to_string(oid) + ", 1, 'x', " +
        std::to_string(scope) + ")");
  }
  /// An association of item 80 in chart 40 with its item, whose scope is `scope`.
  void associate(int account, int value_source, int category, int scope = 7) {
    const std::string oid = std::to_string(++association_);
    add_item(association_, scope);
    run("insert into contaassociada (OID, RCONTACONTABIL, RPLANODECONTAS, RITEM, RFONTEDOVALOR, "
        "RCATEGORIA) values (" +
        oid + ", " + std::to_string(account) + ", 40, 80, " + std::to_string(value_source) + ", " +
        std::to_string(category) + ")");
  }

 private:
  int association_ = 600;
};

class FBuscarContaAssociada : public Accounts {};
PELM_ON_EVERY_ENGINE(FBuscarContaAssociada);

TEST_P(FBuscarContaAssociada, TheOwnAssociationWinsOverTheGeneralOne) {
  associate(501, 7, 7);
  associate(502, 20, 30);
  EXPECT_EQ(base().fBuscarContaAssociada(40, 80, 20, 30), 502);
  EXPECT_EQ(base().fBuscarContaAssociada(40, 80, 20, 31), 501);
  EXPECT_EQ(base().fBuscarContaAssociada(40, 80, 7, 7), 501);
  EXPECT_TRUE(is_idle());
}

TEST_P(FBuscarContaAssociada, TheCategoryCountsBeforeTheValueSource) {
  associate(501, 7, 7);
  associate(502, 20, 7);
  associate(503, 7, 30);
  EXPECT_EQ(base().fBuscarContaAssociada(40, 80, 20, 30), 503);
  EXPECT_EQ(base().fBuscarContaAssociada(40, 80, 20, 31), 502);
  associate(504, 20, 30);
  EXPECT_EQ(base().fBuscarContaAssociada(40, 80, 20, 30), 504);
}

TEST_P(FBuscarContaAssociada, BelowSevenTheGeneralOneWins) {
  associate(501, 7, 7);
  associate(502, 7, 5);
  EXPECT_EQ(base().fBuscarContaAssociada(40, 80, 7, 5), 501);
}

TEST_P(FBuscarContaAssociada, WithoutAnAssociationItIsZero) {
  EXPECT_EQ(base().fBuscarContaAssociada(40, 80, 20, 30), 0);
  associate(501, 20, 30);
  EXPECT_EQ(base().fBuscarContaAssociada(41, 80, 20, 30), 0);
  EXPECT_EQ(base().fBuscarContaAssociada(40, 81, 20, 30), 0);
  EXPECT_EQ(base().fBuscarContaAssociada(40, 80, 21, 30), 0);
  EXPECT_EQ(base().fBuscarContaAssociada(40, 80, 20, 31), 0);
  EXPECT_TRUE(is_idle());
}

TEST_P(FBuscarContaAssociada, AnAccountWithoutAnItemIsNotFound) {
  associate(509, 20, 30);
  EXPECT_EQ(base().fBuscarContaAssociada(40, 80, 20, 30), 0);
}

TEST_P(FBuscarContaAssociada, AsksOnce) {
  constexpr std::string_view kQuery =
      "SELECT RCONTACONTABIL FROM CONTAASSOCIADA, CONTACONTABIL_R WHERE RPLANODECONTAS = 40 AND "
      "RITEM = -80 AND RFONTEDOVALOR IN (7,20) AND RCATEGORIA  IN (7,30) AND CONTACONTABIL_R.OID = "
      "RCONTACONTABIL ORDER BY RCATEGORIA DESC, RFONTEDOVALOR DESC";
  EXPECT_THAT(calls_of([&] { return base().fBuscarContaAssociada(40, -80, 20, 30); }),
              ElementsAre("execute " + std::string(kQuery)));
  EXPECT_EQ(sSQL(), kQuery);
}

class FBuscarContaAnalitica : public Accounts {};
PELM_ON_EVERY_ENGINE(FBuscarContaAnalitica);

TEST_P(FBuscarContaAnalitica, FindsTheAnalyticAccountUnderASyntheticOne) {
  associate(501, 7, 12493, 506);
  associate(502, 7, 12493, 505);
  associate(503, 7, 12492, 504);
  EXPECT_EQ(base().fBuscarContaAnalitica(80, 506), 501);
  EXPECT_EQ(base().fBuscarContaAnalitica(80, 505), 502);
  EXPECT_EQ(base().fBuscarContaAnalitica(80, 504), 0);  // of another category
  EXPECT_EQ(base().fBuscarContaAnalitica(81, 506), 0);
  EXPECT_EQ(base().fBuscarContaAnalitica(80, 7), 0);
  EXPECT_TRUE(is_idle());
}

TEST_P(FBuscarContaAnalitica, AsksOnce) {
  constexpr std::string_view kQuery =
      "SELECT CONTACONTABIL_R.OID FROM CONTAASSOCIADA_R, CONTACONTABIL_R WHERE RCONTACONTABIL = "
      "CONTACONTABIL_R.OID AND RITEM = 80 AND RESCOPO = 506 AND RCATEGORIA = 12493";
  EXPECT_THAT(calls_of([&] { return base().fBuscarContaAnalitica(80, 506); }),
              ElementsAre("execute " + std::string(kQuery)));
  EXPECT_EQ(sSQL(), kQuery);
}

class FObterCodContaContabil : public Accounts {};
PELM_ON_EVERY_ENGINE(FObterCodContaContabil);

TEST_P(FObterCodContaContabil, ReturnsTheCodeInTheHierarchy) {
  EXPECT_EQ(base().fObterCodContaContabil(503), "1.1.503");
  EXPECT_TRUE(is_idle());
}

TEST_P(FObterCodContaContabil, AnUnknownAccountHasAnEmptyCode) {
  EXPECT_EQ(base().fObterCodContaContabil(999), "");
}

TEST_P(FObterCodContaContabil, ANullCodeRaises94) {
  EXPECT_THAT(raised([&] { base().fObterCodContaContabil(509); }),
              Raised(error_number::kInvalidUseOfNull, of_base("fObterCodContaContabil")));
  EXPECT_TRUE(is_idle());
}

TEST_P(FObterCodContaContabil, AsksOnce) {
  constexpr std::string_view kQuery = "SELECT hierarquianumero FROM contacontabil WHERE oid = -503";
  EXPECT_THAT(calls_of([&] { return base().fObterCodContaContabil(-503); }),
              ElementsAre("execute " + std::string(kQuery)));
  EXPECT_EQ(sSQL(), kQuery);
}

}  // namespace
}  // namespace pelm
