// Additional data: typed values that hang off an item.
#include <limits>
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

constexpr std::string_view kUnknownDefinition = "Aditivo inexistente.";
constexpr std::string_view kNothingToChange =
    "O parêmetro CRIAR_SE_NAO_HOUVER foi configurado como FALSO e não foi encontrado o aditivo "
    "para "
    "edição.";

TEST(TipoAditivo, NamesTheColumnOfAType) {
  struct Type {
    std::int32_t type;
    std::string_view column;
  };
  constexpr Type kCases[] = {
      {1013, "SVALOR"},
      {1014, "NVALOR"},
      {1015, "DTVALOR"},
      {1016, "LSVALOR"},
      {1130, "NVALOR"},
      {27460, "NVALOR"},
      // any other
      {0, "SVALOR"},
      {1012, "SVALOR"},
      {1017, "SVALOR"},
      {-1, "SVALOR"},
      {1129, "SVALOR"},
      {1131, "SVALOR"},
      {27459, "SVALOR"},
      {27461, "SVALOR"},
      {-1014, "SVALOR"},
      {std::numeric_limits<std::int32_t>::min(), "SVALOR"},
      {std::numeric_limits<std::int32_t>::max(), "SVALOR"},
  };
  const Base base;
  for (const Type& c : kCases) EXPECT_EQ(base.tipo_aditivo(c.type), c.column) << c.type;
}

/// Definitions by the type of their values: 101 text, 102 number, 103 date, 104 long text, 105 and
/// 106 the other numbers, 107 of no known type, 108 with a null type.
class AdditionalData : public test::BaseTest {
 protected:
  void SetUp() override {
    BaseTest::SetUp();
    if (IsSkipped()) return;
    run("insert into dadoadicional (OID, RTIPO) values (101, 1013), (102, 1014), (103, 1015), "
        "(104, 1016), (105, 1130), (106, 27460), (107, 12), (108, null)");
    oids_from(1000);
  }
  std::vector<std::string> values() {
    return rows(
        "select OID, RITEM, RDEFINICAO, SVALOR, NVALOR, DTVALOR, LSVALOR from aditivo order by "
        "OID");
  }
};

class CadastrarAditivo : public AdditionalData {};
PELM_ON_EVERY_ENGINE(CadastrarAditivo);

TEST_P(CadastrarAditivo, StoresTheValueInTheColumnOfItsTypeAndNullInTheOthers) {
  EXPECT_TRUE(base().cadastrar_aditivo(8, 101, "texto"));
  EXPECT_TRUE(base().cadastrar_aditivo(8, 102, 1.5));
  EXPECT_TRUE(base().cadastrar_aditivo(8, 103, kNow));
  EXPECT_TRUE(base().cadastrar_aditivo(8, 104, std::string(3000, 'x')));
  EXPECT_TRUE(base().cadastrar_aditivo(8, 105, 2.0));
  EXPECT_TRUE(base().cadastrar_aditivo(8, 106, std::int16_t{3}));
  EXPECT_TRUE(base().cadastrar_aditivo(8, 107, "outro"));
  EXPECT_THAT(values(),
              ElementsAre("1000|8|101|texto|null|null|null", "1001|8|102|null|1,5|null|null",
                          "1002|8|103|null|null|05/03/2008 14:07:09|null",
                          "1003|8|104|null|null|null|" + std::string(3000, 'x'),
                          "1004|8|105|null|2|null|null", "1005|8|106|null|3|null|null",
                          "1006|8|107|outro|null|null|null"));
  EXPECT_TRUE(is_idle());
}

TEST_P(CadastrarAditivo, AnEmptyTextAndANullAreStoredAsGiven) {
  base().cadastrar_aditivo(8, 101, "");
  base().cadastrar_aditivo(8, 101, Null{});
  EXPECT_THAT(values(),
              ElementsAre("1000|8|101||null|null|null", "1001|8|101|null|null|null|null"));
}

TEST_P(CadastrarAditivo, TwiceLeavesTwoRows) {
  base().cadastrar_aditivo(8, 101, "a");
  base().cadastrar_aditivo(8, 101, "a");
  EXPECT_EQ(row_counts(), "aditivo 2");
}

TEST_P(CadastrarAditivo, AnUnknownDefinitionRaises1001AndUsesUpAnOid) {
  EXPECT_THAT(raised([&] { base().cadastrar_aditivo(8, 999, "x"); }),
              Raised(error_number::kComponent, of_base("cadastrar_aditivo"),
                     std::string(kUnknownDefinition)));
  EXPECT_EQ(MensagemErro(), kUnknownDefinition);
  EXPECT_EQ(row_counts(), "");
  EXPECT_EQ(base().Gerar_Oid(), 1001);
  EXPECT_TRUE(is_idle());
}

TEST_P(CadastrarAditivo, ANullTypeRaises94) {
  EXPECT_THAT(raised([&] { base().cadastrar_aditivo(8, 108, "x"); }),
              Raised(error_number::kInvalidUseOfNull, of_base("cadastrar_aditivo")));
  EXPECT_EQ(row_counts(), "");
  EXPECT_TRUE(is_idle());
}

TEST_P(CadastrarAditivo, AValueThatTheColumnCannotTakeIsTheDatabasesError) {
  EXPECT_THAT(raised([&] { base().cadastrar_aditivo(8, 102, "abc"); }),
              Raised(error_number::kCantConvertValue, of_base("cadastrar_aditivo"), testing::_));
  EXPECT_THAT(raised([&] { base().cadastrar_aditivo(8, 103, "abc"); }),
              Raised(error_number::kCantConvertValue, of_base("cadastrar_aditivo"), testing::_));
  EXPECT_THAT(raised([&] { base().cadastrar_aditivo(8, 101, std::string(256, 'x')); }),
              Raised(error_number::kDataOverflow, of_base("cadastrar_aditivo"), testing::_));
  EXPECT_EQ(row_counts(), "");
  EXPECT_TRUE(is_idle());
}

TEST_P(CadastrarAditivo, MakesItsCallsInTheirOrder) {
  reserve_oids(1000);
  EXPECT_THAT(
      calls_of([&] { return base().cadastrar_aditivo(8, 102, 1.5); }),
      ElementsAre("execute SELECT rtipo FROM dadoadicional WHERE oid = 102", "describe aditivo",
                  "execute insert into aditivo (RITEM,RDEFINICAO,SVALOR,NVALOR,DTVALOR,"
                  "LSVALOR,OID) values (?,?,?,?,?,?,?) [8, 102, null, 1,5, null, null, "
                  "1000]"));
  EXPECT_EQ(sSQL(), "SELECT rtipo FROM dadoadicional WHERE oid = 102");
}

TEST_P(CadastrarAditivo, DrawsItsOidFirst) {
  const std::vector<std::string> calls =
      calls_of([&] { return base().cadastrar_aditivo(8, 101, "x"); });
  ASSERT_GE(calls.size(), 5U);
  EXPECT_EQ(calls[1], "call atualoid [null]");
  EXPECT_EQ(calls[4], "execute SELECT rtipo FROM dadoadicional WHERE oid = 101");
}

class AlterarAditivo : public AdditionalData {};
PELM_ON_EVERY_ENGINE(AlterarAditivo);

TEST_P(AlterarAditivo, ChangesTheRowThatIsThere) {
  base().cadastrar_aditivo(8, 101, "velho");
  base().cadastrar_aditivo(9, 101, "de outro item");
  base().cadastrar_aditivo(8, 102, 1.5);
  EXPECT_TRUE(base().alterar_aditivo(8, 101, "novo"));
  EXPECT_THAT(values(), ElementsAre("1000|8|101|novo|null|null|null",
                                    "1001|9|101|de outro item|null|null|null",
                                    "1002|8|102|null|1,5|null|null"));
  EXPECT_EQ(base().Gerar_Oid(), 1003);
  EXPECT_TRUE(is_idle());
}

TEST_P(AlterarAditivo, AddsARowWithANewOidWhereThereIsNone) {
  EXPECT_TRUE(base().alterar_aditivo(8, 103, kNow));
  EXPECT_THAT(values(), ElementsAre("1000|8|103|null|null|05/03/2008 14:07:09|null"));
  EXPECT_TRUE(base().alterar_aditivo(8, 101, "x", true));
  EXPECT_EQ(row_counts(), "aditivo 2");
}

TEST_P(AlterarAditivo, RaisesWhereThereIsNoneAndNoneMayBeAdded) {
  EXPECT_THAT(
      raised([&] { base().alterar_aditivo(8, 101, "x", false); }),
      Raised(error_number::kComponent, of_base("alterar_aditivo"), std::string(kNothingToChange)));
  EXPECT_EQ(MensagemErro(), kNothingToChange);
  EXPECT_EQ(row_counts(), "");
  EXPECT_EQ(base().Gerar_Oid(), 1000);
  EXPECT_TRUE(is_idle());
}

TEST_P(AlterarAditivo, ChangesAnExistingRowThoughNoneMayBeAdded) {
  base().cadastrar_aditivo(8, 101, "velho");
  EXPECT_TRUE(base().alterar_aditivo(8, 101, "novo", false));
  EXPECT_THAT(values(), ElementsAre("1000|8|101|novo|null|null|null"));
}

TEST_P(AlterarAditivo, ChangesOnlyTheFirstOfSeveral) {
  base().cadastrar_aditivo(8, 101, "a");
  base().cadastrar_aditivo(8, 101, "b");
  const std::string first = rows("SELECT * FROM aditivo WHERE ritem = 8 AND rdefinicao = 101")[0];
  base().alterar_aditivo(8, 101, "novo");
  EXPECT_THAT(rows("select SVALOR from aditivo order by SVALOR"),
              ElementsAre(first.find("|a|") != std::string::npos ? "b" : "a", "novo"));
}

TEST_P(AlterarAditivo, AChangedTypeMovesTheValueToItsColumn) {
  base().cadastrar_aditivo(8, 103, kNow);
  run("update dadoadicional set RTIPO = 1013 where OID = 103");
  EXPECT_TRUE(base().alterar_aditivo(8, 103, "texto"));
  EXPECT_THAT(values(), ElementsAre("1000|8|103|texto|null|null|null"));
}

TEST_P(AlterarAditivo, AnUnknownDefinitionRaises1001AndDrawsNoOid) {
  EXPECT_THAT(raised([&] { base().alterar_aditivo(8, 999, "x"); }),
              Raised(error_number::kComponent, of_base("alterar_aditivo"),
                     std::string(kUnknownDefinition)));
  EXPECT_EQ(base().Gerar_Oid(), 1000);
  EXPECT_TRUE(is_idle());
}

TEST_P(AlterarAditivo, AValueThatTheColumnCannotTakeLeavesTheOldOne) {
  base().cadastrar_aditivo(8, 102, 1.5);
  EXPECT_THAT(raised([&] { base().alterar_aditivo(8, 102, "abc"); }),
              Raised(error_number::kCantConvertValue, of_base("alterar_aditivo"), testing::_));
  EXPECT_THAT(values(), ElementsAre("1000|8|102|null|1,5|null|null"));
  EXPECT_TRUE(is_idle());
}

TEST_P(AlterarAditivo, AnAddedRowThatCannotBeStoredUsesUpItsOid) {
  EXPECT_THAT(raised([&] { base().alterar_aditivo(8, 102, "abc"); }),
              Raised(error_number::kCantConvertValue, of_base("alterar_aditivo"), testing::_));
  EXPECT_EQ(row_counts(), "");
  EXPECT_EQ(base().Gerar_Oid(), 1001);
}

TEST_P(AlterarAditivo, ChangingMakesItsCallsInTheirOrder) {
  base().cadastrar_aditivo(8, 102, 1.5);
  const std::vector<std::string> calls =
      calls_of([&] { return base().alterar_aditivo(8, 102, 2.5); });
  ASSERT_EQ(calls.size(), 4U);
  EXPECT_EQ(calls[0], "execute SELECT rtipo FROM dadoadicional WHERE oid = 102");
  EXPECT_EQ(calls[1], "execute SELECT * FROM aditivo WHERE ritem = 8 AND rdefinicao = 102");
  EXPECT_EQ(calls[2], "describe aditivo");
  EXPECT_THAT(calls[3], testing::StartsWith("execute update aditivo set LSVALOR = ?, SVALOR = ?, "
                                            "DTVALOR = ?, NVALOR = ?, RITEM = ?, RDEFINICAO = ? "
                                            "where OID = ?"));
  EXPECT_EQ(sSQL(), "SELECT * FROM aditivo WHERE ritem = 8 AND rdefinicao = 102");
}

TEST_P(AlterarAditivo, AddingMakesItsCallsInTheirOrder) {
  reserve_oids(1000);
  EXPECT_THAT(calls_of([&] { return base().alterar_aditivo(8, 101, "x"); }),
              ElementsAre("execute SELECT rtipo FROM dadoadicional WHERE oid = 101",
                          "execute SELECT * FROM aditivo WHERE ritem = 8 AND rdefinicao = 101",
                          "describe aditivo",
                          "execute insert into aditivo (OID,LSVALOR,SVALOR,DTVALOR,NVALOR,RITEM,"
                          "RDEFINICAO) values (?,?,?,?,?,?,?) [1000, null, 'x', null, null, 8, "
                          "101]"));
}

TEST_P(AlterarAditivo, ReadsTheTypeBeforeItDrawsAnOid) {
  const std::vector<std::string> calls =
      calls_of([&] { return base().alterar_aditivo(8, 101, "x"); });
  ASSERT_GE(calls.size(), 4U);
  EXPECT_EQ(calls[0], "execute SELECT rtipo FROM dadoadicional WHERE oid = 101");
  EXPECT_EQ(calls[3], "call atualoid [null]");
}

}  // namespace
}  // namespace pelm
