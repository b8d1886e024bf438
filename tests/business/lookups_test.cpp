// Read-only look-ups: parameters, labels and names.
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "automation/dispatch.h"
#include "business/base_test.h"

namespace pelm {
namespace {

using test::of_base;
using test::raised;
using test::Raised;
using testing::ElementsAre;

/// Parameter COR, of text: "  azul " for item 1, "verde" for item 57. Parameter INICIO, of a date,
/// for item 1. Parameter LIMITE, of a number, for item 1. Parameter VAZIO, for no item.
class FObterValorParametro : public test::BaseTest {
 protected:
  void SetUp() override {
    BaseTest::SetUp();
    if (IsSkipped()) return;
    run("insert into categoria (OID, RSUPER, NOMEINTERNO) values (201, 7, 'COR'), (202, 7, "
        "'INICIO'), (203, 7, 'LIMITE'), (204, 7, 'VAZIO'), (205, 7, 'AÇÃO')");
    run("insert into dadoadicional (OID, RTIPO) values (301, 201), (302, 202), (303, 203), (304, "
        "204), (305, 205)");
    run("insert into aditivo (OID, RITEM, RDEFINICAO, SVALOR) values (401, 1, 301, '  azul '), "
        "(402, 57, 301, 'verde'), (403, 1, 305, 'abrir')");
    run("insert into aditivo (OID, RITEM, RDEFINICAO, DTVALOR) values (404, 1, 302, '2008-03-05 "
        "14:07:09')");
    run("insert into aditivo (OID, RITEM, RDEFINICAO, NVALOR) values (405, 1, 303, 12)");
  }
};
PELM_ON_EVERY_ENGINE(FObterValorParametro);

TEST_P(FObterValorParametro, AnItemWithoutAValueHasThatOfItemOne) {
  EXPECT_EQ(base().fObterValorParametro("COR", 58), "azul");
  EXPECT_EQ(base().fObterValorParametro("COR"), "azul");
  EXPECT_EQ(base().fObterValorParametro("COR", 1), "azul");
  EXPECT_TRUE(is_idle());
}

TEST_P(FObterValorParametro, AnItemsOwnValueWins) {
  EXPECT_EQ(base().fObterValorParametro("COR", 57), "verde");
}

TEST_P(FObterValorParametro, TheNameIsAskedForInCapitals) {
  EXPECT_EQ(base().fObterValorParametro("cor"), "azul");
  EXPECT_EQ(base().fObterValorParametro("ação"), "abrir");
  EXPECT_NE(sSQL().find("nomeinterno = 'AÇÃO'"), std::string::npos);
}

TEST_P(FObterValorParametro, BlanksAroundAValueAreLeftOut) {
  run("update aditivo set SVALOR = '   abc   ' where OID = 401");
  EXPECT_EQ(base().fObterValorParametro("COR"), "abc");
  run("update aditivo set SVALOR = ' a  b ' where OID = 401");
  EXPECT_EQ(base().fObterValorParametro("COR"), "a  b");
  run("update aditivo set SVALOR = '   ' where OID = 401");
  EXPECT_EQ(base().fObterValorParametro("COR"), "");
}

TEST_P(FObterValorParametro, ExactlyDReadsTheDate) {
  EXPECT_EQ(base().fObterValorParametro("INICIO", 1, "D"), "05/03/2008 14:07:09");
  run("update aditivo set DTVALOR = '2008-03-05 00:00:00' where OID = 404");
  EXPECT_EQ(base().fObterValorParametro("INICIO", 57, "D"), "05/03/2008");
}

TEST_P(FObterValorParametro, AnyOtherTypeReadsTheText) {
  for (const std::string_view type : {"S", "d", "DT", "N", "", " D"}) {
    EXPECT_EQ(base().fObterValorParametro("COR", 1, type), "azul") << type;
  }
}

TEST_P(FObterValorParametro, OneThatNoItemHasIsEmpty) {
  EXPECT_EQ(base().fObterValorParametro("VAZIO", 57), "");
  EXPECT_EQ(base().fObterValorParametro("DESCONHECIDO"), "");
  EXPECT_EQ(base().fObterValorParametro(""), "");
  EXPECT_TRUE(is_idle());
}

TEST_P(FObterValorParametro, ANullInTheColumnReadRaises94) {
  // A number is kept in a column that is never read.
  EXPECT_THAT(raised([&] { base().fObterValorParametro("LIMITE"); }),
              Raised(error_number::kInvalidUseOfNull, of_base("fObterValorParametro")));
  EXPECT_THAT(raised([&] { base().fObterValorParametro("COR", 1, "D"); }),
              Raised(error_number::kInvalidUseOfNull, of_base("fObterValorParametro")));
  EXPECT_THAT(raised([&] { base().fObterValorParametro("INICIO"); }),
              Raised(error_number::kInvalidUseOfNull, of_base("fObterValorParametro")));
  EXPECT_TRUE(is_idle());
}

TEST_P(FObterValorParametro, AnOwnNullDoesNotFallBackToItemOne) {
  run("update aditivo set SVALOR = null where OID = 402");
  EXPECT_THAT(raised([&] { base().fObterValorParametro("COR", 57); }),
              Raised(error_number::kInvalidUseOfNull, of_base("fObterValorParametro")));
}

constexpr std::string_view kColorQuery =
    "SELECT * FROM aditivo WHERE rdefinicao = (SELECT oid FROM dadoadicional WHERE rtipo = (SELECT "
    "oid FROM categoria WHERE nomeinterno = 'COR')) AND ritem = ";

TEST_P(FObterValorParametro, AsksOnceWhereTheItemHasAValue) {
  EXPECT_THAT(calls_of([&] { return base().fObterValorParametro("cor", 57); }),
              ElementsAre("execute " + std::string(kColorQuery) + "57"));
  EXPECT_EQ(sSQL(), std::string(kColorQuery) + "57");
}

TEST_P(FObterValorParametro, AsksForItemOneNext) {
  EXPECT_THAT(calls_of([&] { return base().fObterValorParametro("cor", -58); }),
              ElementsAre("execute " + std::string(kColorQuery) + "-58",
                          "execute " + std::string(kColorQuery) + "1"));
  EXPECT_EQ(sSQL(), std::string(kColorQuery) + "1");
}

TEST_P(FObterValorParametro, AsksForItemOneAgainThoughItWasItemOne) {
  run("delete from aditivo");
  EXPECT_THAT(calls_of([&] { return base().fObterValorParametro("COR"); }),
              ElementsAre("execute " + std::string(kColorQuery) + "1",
                          "execute " + std::string(kColorQuery) + "1"));
}

TEST_P(FObterValorParametro, TheNameIsNotEscaped) {
  EXPECT_THAT(raised([&] { base().fObterValorParametro("D'ÁGUA"); }),
              Raised(error_number::kErrorsInCommand, of_base("fObterValorParametro"), testing::_));
  EXPECT_TRUE(is_idle());
  EXPECT_EQ(base().fObterValorParametro("x' or nomeinterno = 'cor"), "azul");
}

class FObterRotuloCpo : public test::BaseTest {
 protected:
  void SetUp() override {
    BaseTest::SetUp();
    if (IsSkipped()) return;
    run("insert into rotulo (CONTROLE, VALOR, RAPLICATIVO) values ('txtNome', 'Nome', 30), "
        "('txtRua', null, 30), ('txtNome', 'Nombre', 31)");
  }
};
PELM_ON_EVERY_ENGINE(FObterRotuloCpo);

TEST_P(FObterRotuloCpo, ReturnsTheLabelsOfAnApplication) {
  const auto labels = base().fObterRotuloCpo(30);
  std::vector<std::string> read;
  for (; !labels->Eof(); labels->MoveNext()) {
    const Variant text = labels->Fields("valor").Value();
    read.push_back(to_text(labels->Fields("controle").Value()) + "|" +
                   (text.is_null() ? "null" : to_text(text)));
  }
  EXPECT_THAT(read, testing::UnorderedElementsAre("txtNome|Nome", "txtRua|null"));
  EXPECT_EQ(labels->FieldCount(), 2U);
  labels->Close();
}

TEST_P(FObterRotuloCpo, GivesAnOpenReadOnlyRecordSetThatIsTheCallers) {
  const auto labels = base().fObterRotuloCpo(30);
  EXPECT_TRUE(is_idle());
  EXPECT_EQ(labels->State(), ado::adStateOpen);
  EXPECT_EQ(labels->CursorType(), ado::adOpenStatic);
  EXPECT_EQ(labels->LockType(), ado::adLockReadOnly);
  EXPECT_EQ(base().fObterNomeItem(1), "(Indeterminado)");  // while it is read
  EXPECT_FALSE(labels->Eof());
  EXPECT_EQ(labels.use_count(), 1);
}

TEST_P(FObterRotuloCpo, WithoutLabelsItIsOpenAndEmpty) {
  const auto labels = base().fObterRotuloCpo(99);
  EXPECT_EQ(labels->State(), ado::adStateOpen);
  EXPECT_TRUE(labels->Eof());
}

TEST_P(FObterRotuloCpo, AsksOnce) {
  EXPECT_THAT(calls_of([&] { return base().fObterRotuloCpo(-30); }),
              ElementsAre("execute SELECT controle, valor FROM rotulo WHERE raplicativo = -30"));
  EXPECT_EQ(sSQL(), "SELECT controle, valor FROM rotulo WHERE raplicativo = -30");
}

TEST_P(FObterRotuloCpo, ByNameGivesARecordSet) {
  std::array<OptionalArg, 1> arguments{Variant("30")};
  const Variant labels = automation::call(base(), "fObterRotuloCpo", arguments);
  ASSERT_TRUE(labels.is_object());
  EXPECT_EQ(automation::get(*labels.object(), "RecordCount"), Variant(std::int32_t{2}));
}

class FObterNomeItem : public test::BaseTest {};
PELM_ON_EVERY_ENGINE(FObterNomeItem);

TEST_P(FObterNomeItem, ReturnsTheNameAsItIs) {
  base().cadastrar_item(1, " João ", 20, 8);
  base().cadastrar_item(1, "", 20, 9);
  EXPECT_EQ(base().fObterNomeItem(8), " João ");
  EXPECT_EQ(base().fObterNomeItem(9), "");
  EXPECT_TRUE(is_idle());
}

TEST_P(FObterNomeItem, AnUnknownItemIsIndeterminate) {
  EXPECT_EQ(base().fObterNomeItem(8), "(Indeterminado)");
  EXPECT_TRUE(is_idle());
}

TEST_P(FObterNomeItem, ANullNameRaises94) {
  base().cadastrar_item(1, "Pasta", 20, 8);
  run("update item set NOME = null");
  EXPECT_THAT(raised([&] { base().fObterNomeItem(8); }),
              Raised(error_number::kInvalidUseOfNull, of_base("fObterNomeItem")));
  EXPECT_TRUE(is_idle());
}

TEST_P(FObterNomeItem, TheConnectionsOwnFailureHasTheOperationsSource) {
  run("alter table item rename to outra");
  const std::optional<Error> error = raised([&] { base().fObterNomeItem(8); });
  EXPECT_THAT(error, Raised(error_number::kNoTable, of_base("fObterNomeItem"), testing::_));
  // What the database says of it beyond the three goes along.
  ASSERT_NE(error->diagnostics(), nullptr);
  EXPECT_THAT(error->diagnostics()->sql, testing::StartsWith("SELECT nome FROM item"));
}

TEST_P(FObterNomeItem, AsksOnce) {
  EXPECT_THAT(calls_of([&] { return base().fObterNomeItem(-8); }),
              ElementsAre("execute SELECT nome FROM item WHERE oid = -8"));
  EXPECT_EQ(sSQL(), "SELECT nome FROM item WHERE oid = -8");
}

}  // namespace
}  // namespace pelm
