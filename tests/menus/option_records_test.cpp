// Options: adding, changing, deleting with all that is below them.
#include "menus/menu_test.h"

namespace pelm {
namespace {

using test::of_menu;
using test::raised;
using test::Raised;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kNull = std::nullopt;
const std::string kRefusedPlace = "O número de ordem não pode ser menor ou igual a 0!";
const std::string kReserved = "Você não selecionou uma opção do menu válida para exclusão.";

constexpr std::string_view kAllColumns =
    "select Nome, Link, rEscopo, rListadeObjetos, Ordem from Pelm_Menu order by id";

class CadastrarOpcao : public test::MenuTest {};
PELM_ON_EVERY_ENGINE(CadastrarOpcao);

TEST_P(CadastrarOpcao, StoresWhatItIsGivenAndTellsNoKey) {
  EXPECT_EQ(menu().Cadastrar_Opcao("Clientes <b>\"d'água\"</b>", "cli.asp?a=1&b='2'", 50,
                                   std::int32_t{900}, 1),
            "0");
  EXPECT_THAT(rows(kAllColumns),
              ElementsAre("Clientes <b>\"d'água\"</b>|cli.asp?a=1&b='2'|50|900|1"));
}

TEST_P(CadastrarOpcao, InANewDatabaseTheFirstKeyIsTheFirstThatMayBeDeleted) {
  menu().Cadastrar_Opcao("Primeira", "", 50, Null{}, 1);
  EXPECT_EQ(row("select id from Pelm_Menu"), "8");
  EXPECT_EQ(menu().Excluir_Opcao(8), "0");
  menu().Cadastrar_Opcao("Segunda", "", 50, Null{}, 1);
  EXPECT_EQ(row("select id from Pelm_Menu"), "9") << "a key is never given twice";
}

TEST_P(CadastrarOpcao, ANullListStaysNullAndEmptyTextsStayTexts) {
  EXPECT_EQ(menu().Cadastrar_Opcao("", "", 50, Null{}, 1), "0");
  EXPECT_THAT(rows(kAllColumns), ElementsAre("||50|null|1"));
}

TEST_P(CadastrarOpcao, TheListConvertsAsAFieldDoes) {
  menu().Cadastrar_Opcao("a", "", 50, "900", 1);
  menu().Cadastrar_Opcao("b", "", 51, std::int16_t{901}, 1);
  EXPECT_THAT(rows("select rListadeObjetos from Pelm_Menu order by id"), ElementsAre("900", "901"));
  EXPECT_THAT(raised([&] { menu().Cadastrar_Opcao("c", "", 52, "lista", 1); }),
              Raised(error_number::kCantConvertValue, of_menu("Cadastrar_Opcao"), testing::_));
  EXPECT_THAT(rows("select id from Pelm_Menu where rEscopo = 52"), IsEmpty());
}

TEST_P(CadastrarOpcao, AtTheEndThePlacesStayDense) {
  add_siblings(100, 50, {1, 2});
  EXPECT_EQ(menu().Cadastrar_Opcao("N", "", 50, Null{}, 3), "0");
  EXPECT_EQ(siblings(50), "A1 B2 N3");
}

TEST_P(CadastrarOpcao, PastTheEndItGoesToTheEnd) {
  add_siblings(100, 50, {1, 2});
  EXPECT_EQ(menu().Cadastrar_Opcao("N", "", 50, Null{}, 99), "0");
  EXPECT_EQ(siblings(50), "A1 B2 N3");
}

TEST_P(CadastrarOpcao, TheFirstOptionKeepsWhateverPlaceItAsksFor) {
  EXPECT_EQ(menu().Cadastrar_Opcao("N", "", 50, Null{}, 9), "0");
  EXPECT_EQ(siblings(50), "N9");
}

// kept: the new row has its place before ordering begins, so the options behind it lose a step.
TEST_P(CadastrarOpcao, InTheMiddleTheOptionsBehindFallTogether) {
  add_siblings(100, 50, {1, 2, 3});
  EXPECT_EQ(menu().Cadastrar_Opcao("N", "", 50, Null{}, 2), "0");
  EXPECT_EQ(siblings(50), "A1 N2 B3 C3");
}

TEST_P(CadastrarOpcao, AtTheFrontTheFirstTwoFallTogether) {
  add_siblings(100, 50, {1, 2, 3});
  EXPECT_EQ(menu().Cadastrar_Opcao("N", "", 50, Null{}, 1), "0");
  EXPECT_EQ(siblings(50), "N1 A2 B2 C3");
}

TEST_P(CadastrarOpcao, ARefusedPlaceIsToldAndTheRowStays) {
  EXPECT_EQ(menu().Cadastrar_Opcao("N", "", 50, Null{}, 0), kRefusedPlace);
  EXPECT_EQ(menu().Cadastrar_Opcao("M", "", 50, Null{}, -1), kRefusedPlace);
  EXPECT_EQ(siblings(50), "M-1 N0");
}

TEST_P(CadastrarOpcao, APlaceBeyondSixteenBitsFailsWithTheRowStored) {
  for (const std::int32_t place : {32768, -32769}) {
    EXPECT_THAT(raised([&] { menu().Cadastrar_Opcao("N", "", 50, Null{}, place); }),
                Raised(error_number::kOverflow, of_menu("Cadastrar_Opcao")));
  }
  EXPECT_EQ(siblings(50), "N-32769 N32768");
}

TEST_P(CadastrarOpcao, OutsideAPageItFailsWithTheRowStored) {
  leave_page();
  EXPECT_THAT(raised([&] { menu().Cadastrar_Opcao("N", "", 50, Null{}, 1); }),
              Raised(error_number::kObjectNotSet, of_menu("Cadastrar_Opcao")));
  EXPECT_EQ(siblings(50), "N1");
}

TEST_P(CadastrarOpcao, RunsItsStatementsInOrder) {
  std::vector<std::string> calls =
      calls_of([&] { return menu().Cadastrar_Opcao("N", "n.asp", 50, Null{}, 1); });
  ASSERT_EQ(calls.size(), 8U);
  EXPECT_EQ(calls[0], "describe Pelm_Menu");
  EXPECT_EQ(calls[1],
            "execute insert into Pelm_Menu (Nome,Link,rEscopo,rListadeObjetos,Ordem) values "
            "(?,?,?,?,?) ['N', 'n.asp', 50, null, 1]");
  EXPECT_EQ(calls[2], "execute select @@identity ID_OP");
  EXPECT_EQ(calls[3], "execute select rEscopo,ORDEM from pelm_menu where id = " +
                          row("select id from Pelm_Menu"));
}

TEST_P(CadastrarOpcao, WithoutAConnectionItFails) {
  frame::thread_slots().conn.reset();
  EXPECT_THAT(raised([&] { menu().Cadastrar_Opcao("N", "", 50, Null{}, 1); }),
              Raised(error_number::kObjectNotSet, of_menu("Cadastrar_Opcao")));
}

class AlterarOpcao : public test::MenuTest {};
PELM_ON_EVERY_ENGINE(AlterarOpcao);

TEST_P(AlterarOpcao, ChangesEveryColumnAndMovesTheOption) {
  add_siblings(100, 50, {1, 2, 3});
  EXPECT_EQ(menu().Alterar_Opcao(102, "N", "n.asp", 50, std::int32_t{900}, 1), "0");
  EXPECT_EQ(siblings(50), "N1 A2 B3");
  EXPECT_EQ(row("select Nome, Link, rEscopo, rListadeObjetos from Pelm_Menu where id = 102"),
            "N|n.asp|50|900");
  EXPECT_EQ(menu().Alterar_Opcao(102, "N", "", 50, Null{}, 1), "0");
  EXPECT_EQ(row("select Link, rListadeObjetos from Pelm_Menu where id = 102"), "|null");
}

TEST_P(AlterarOpcao, TheSameValuesAgainAreNoFailure) {
  add_siblings(100, 50, {1});
  EXPECT_EQ(menu().Alterar_Opcao(100, "A", "", 50, Null{}, 1), "0");
  EXPECT_EQ(menu().Alterar_Opcao(100, "A", "", 50, Null{}, 1), "0");
  EXPECT_EQ(siblings(50), "A1");
}

// kept: the gap under the old parent stays, and the old place counts among the new siblings.
TEST_P(AlterarOpcao, MovingToAnotherParentLeavesAGapAndPullsTheNewSiblings) {
  add_siblings(100, 50, {1, 2, 3});
  add_siblings(200, 60, {1, 2, 3, 4});
  EXPECT_EQ(menu().Alterar_Opcao(101, "N", "", 60, Null{}, 1), "0");
  EXPECT_EQ(siblings(50), "A1 C3");
  EXPECT_EQ(siblings(60), "N1 A2 B3 C3 D4");
}

TEST_P(AlterarOpcao, ARefusedPlaceIsToldAndTheChangesStay) {
  add_siblings(100, 50, {1, 2});
  EXPECT_EQ(menu().Alterar_Opcao(101, "N", "n.asp", 60, std::int32_t{900}, 0), kRefusedPlace);
  EXPECT_EQ(row("select Nome, Link, rEscopo, rListadeObjetos, Ordem from Pelm_Menu where id = 101"),
            "N|n.asp|60|900|2");
}

TEST_P(AlterarOpcao, AnUnknownOptionFailsAtItsFirstField) {
  EXPECT_THAT(raised([&] { menu().Alterar_Opcao(999, "N", "", 50, Null{}, 1); }),
              Raised(error_number::kNoCurrentRecord, of_menu("Alterar_Opcao")));
}

TEST_P(AlterarOpcao, APlaceBeyondSixteenBitsFailsWithTheChangesStored) {
  add_siblings(100, 50, {1});
  EXPECT_THAT(raised([&] { menu().Alterar_Opcao(100, "N", "", 50, Null{}, 40000); }),
              Raised(error_number::kOverflow, of_menu("Alterar_Opcao")));
  EXPECT_EQ(siblings(50), "N1");
}

TEST_P(AlterarOpcao, RunsItsStatementsInOrder) {
  add_siblings(100, 50, {1});
  std::vector<std::string> calls =
      calls_of([&] { return menu().Alterar_Opcao(100, "N", "n.asp", 50, std::int32_t{9}, 1); });
  ASSERT_EQ(calls.size(), 8U);
  EXPECT_EQ(calls[0], "execute select * from Pelm_Menu where id = 100");
  EXPECT_EQ(calls[1], "describe Pelm_Menu");
  EXPECT_THAT(calls[2], testing::StartsWith("execute update Pelm_Menu set Nome = ?, Link = ?, "
                                            "rEscopo = ?, rListadeObjetos = ? where id = ?"));
  EXPECT_EQ(calls[3], "execute select rEscopo,ORDEM from pelm_menu where id = 100");
}

class ExcluirOpcao : public test::MenuTest {
 protected:
  std::vector<std::string> keys() const { return rows("select id from Pelm_Menu order by id"); }
  static const std::string& MensagemErro() { return frame::thread_slots().MensagemErro; }
};
PELM_ON_EVERY_ENGINE(ExcluirOpcao);

TEST_P(ExcluirOpcao, TheSiblingsCloseUp) {
  add_siblings(100, 50, {1, 2, 3});
  EXPECT_EQ(menu().Excluir_Opcao(101), "0");
  EXPECT_EQ(siblings(50), "A1 C2");
}

TEST_P(ExcluirOpcao, ReservedKeysAreRefusedWithoutAQuestion) {
  add({{7, "Raiz", kNull, 0, 1}, {8, "Oito", kNull, 0, 2}});
  for (const std::int32_t id : {7, 6, 1, 0, -1, -2147483647}) {
    std::optional<Error> error;
    EXPECT_THAT(calls_of([&] { error = raised([&] { menu().Excluir_Opcao(id); }); }), IsEmpty());
    EXPECT_THAT(error,
                Raised(error_number::kComponent, of_menu("Excluir_Opcao"), testing::Eq(kReserved)));
    EXPECT_EQ(MensagemErro(), kReserved);
  }
  EXPECT_THAT(keys(), ElementsAre("7", "8"));
  EXPECT_EQ(menu().Excluir_Opcao(8), "0");
  EXPECT_THAT(keys(), ElementsAre("7"));
}

TEST_P(ExcluirOpcao, EverythingBelowGoesChildrenFirst) {
  add({{20, "A", kNull, 50, 1},
       {21, "B", kNull, 50, 2},
       {30, "AA", kNull, 20, 1},
       {31, "AB", kNull, 20, 2},
       {40, "AAA", kNull, 30, 1},
       {60, "X", kNull, 21, 1}});
  const std::vector<std::string> calls = calls_of([&] { return menu().Excluir_Opcao(20); });
  std::vector<std::string> deletions;
  for (const std::string& call : calls) {
    if (call.find("delete") != std::string::npos) deletions.push_back(call);
  }
  EXPECT_THAT(deletions, ElementsAre("execute delete from Pelm_Menu where id = 40",
                                     "execute delete from Pelm_Menu where id = 30",
                                     "execute delete from Pelm_Menu where id = 31",
                                     "execute delete from Pelm_Menu where id = 20"));
  EXPECT_THAT(keys(), ElementsAre("21", "60"));
  EXPECT_EQ(siblings(50), "B1");
}

TEST_P(ExcluirOpcao, RunsItsStatementsInOrder) {
  add_siblings(100, 50, {1, 2});
  const std::vector<std::string> calls = calls_of([&] { return menu().Excluir_Opcao(100); });
  ASSERT_EQ(calls.size(), 8U);  // six of the ordering
  EXPECT_EQ(calls[0], "execute select rEscopo,ORDEM from pelm_menu where id = 100");
  EXPECT_EQ(calls[5], "execute update pelm_menu set ORDEM = 2 where id = 100");
  EXPECT_EQ(calls[6], "execute select id from Pelm_Menu where rEscopo = 100");
  EXPECT_EQ(calls[7], "execute delete from Pelm_Menu where id = 100");
}

TEST_P(ExcluirOpcao, TheDeletionIsNotSeenInLastSQL) {
  add_siblings(100, 50, {1});
  menu().Excluir_Opcao(100);
  EXPECT_EQ(conn().LastSQL(), "select id from Pelm_Menu where rEscopo = 100");
  EXPECT_EQ(probe().sSQL(), "delete from Pelm_Menu where id = 100");
}

TEST_P(ExcluirOpcao, AnUnknownOptionFailsWithTheRefusal) {
  EXPECT_THAT(raised([&] { menu().Excluir_Opcao(999); }),
              Raised(error_number::kComponent, of_menu("Excluir_Opcao"),
                     testing::Eq("Opção de MENU: 999 inválida!")));
  EXPECT_EQ(MensagemErro(), "Opção de MENU: 999 inválida!");
}

TEST_P(ExcluirOpcao, AReservedOptionBelowStopsItAndTheRestStays) {
  add({{20, "A", kNull, 50, 1},
       {3, "AA", kNull, 20, 2},
       {30, "AB", kNull, 20, 1},
       {31, "AC", kNull, 20, 3}});
  EXPECT_THAT(raised([&] { menu().Excluir_Opcao(20); }),
              Raised(error_number::kComponent, of_menu("Excluir_Opcao"), testing::Eq(kReserved)));
  EXPECT_THAT(keys(), ElementsAre("3", "20", "31")) << "30 was visited before 3, and is gone";
  EXPECT_EQ(siblings(20), "AA1 AC2");
}

TEST_P(ExcluirOpcao, WhereNobodyHasAPlaceItFails) {
  add({{20, "A", kNull, 50, kNull}});
  EXPECT_THAT(raised([&] { menu().Excluir_Opcao(20); }),
              Raised(error_number::kInvalidUseOfNull, of_menu("Excluir_Opcao")));
  EXPECT_THAT(keys(), ElementsAre("20"));
}

TEST_P(ExcluirOpcao, AnOptionWithinItselfFailsWithNothingDeleted) {
  add({{20, "A", kNull, 21, 1}, {21, "B", kNull, 20, 1}});
  EXPECT_THAT(raised([&] { menu().Excluir_Opcao(20); }),
              Raised(error_number::kOutOfStackSpace, of_menu("Excluir_Opcao")));
  EXPECT_THAT(keys(), ElementsAre("20", "21"));
  EXPECT_EQ(probe().depth(), 0);
}

TEST_P(ExcluirOpcao, OutsideAPageItFailsWithNothingDeleted) {
  add_siblings(100, 50, {1, 2});
  leave_page();
  EXPECT_THAT(raised([&] { menu().Excluir_Opcao(100); }),
              Raised(error_number::kObjectNotSet, of_menu("Excluir_Opcao")));
  EXPECT_EQ(siblings(50), "A1 B2");
}

}  // namespace
}  // namespace pelm
