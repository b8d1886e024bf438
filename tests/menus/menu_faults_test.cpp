// Every call of the database fails in turn: the source of the error, and what stays.
#include <cstddef>

#include "menus/menu_test.h"

namespace pelm {
namespace {

using test::of_menu;
using testing::ElementsAre;

constexpr auto kNull = std::nullopt;
constexpr Oid kEmployee = 300;  // user 100, granted by group 200

/// The states seen after the failures, in order, each once.
class States {
 public:
  void see(std::string state) {
    if (seen_.empty() || seen_.back() != state) seen_.push_back(std::move(state));
  }
  const std::vector<std::string>& seen() const { return seen_; }

 private:
  std::vector<std::string> seen_;
};

class MenuFaults : public test::MenuTest {
 protected:
  void SetUp() override {
    MenuTest::SetUp();
    if (IsSkipped()) return;
    run("insert into item (OID, CID, NOME) values (100, 1, 'x'), (200, 1, 'g')");
    run("insert into comunicacao (OID, RTIPO, RITEM, RENDERECO) values (5000, 1121, 300, 100)");
    run("insert into agrupamento (OID, RPAPEL, RITEM, RGRUPO) values (5001, 1, 100, 200)");
    run("insert into permissao (OID, RUSUARIO, RESCOPO, ACESSO) values (5002, 200, 900, 1)");
    run("insert into listadeobjetos (OID, RDOMINIO) values (900, 950)");
  }
  auto with_siblings(const std::vector<std::optional<std::int32_t>>& places) {
    return [this, places] {
      clear_options();
      add_siblings(100, 50, places);
    };
  }
};
PELM_ON_EVERY_ENGINE(MenuFaults);

TEST_P(MenuFaults, CadastrarOpcaoLeavesTheRowOnceItIsStored) {
  States states;
  for_each_fault(
      of_menu("Cadastrar_Opcao"), with_siblings({1, 2}),
      [&] { menu().Cadastrar_Opcao("N", "", 50, Null{}, 1); },
      [&](std::size_t) { states.see(siblings(50)); });
  EXPECT_THAT(states.seen(), ElementsAre("A1 B2",       // not stored
                                         "A1 N1 B2",    // stored, not placed
                                         "A1 B1 N1",    // the gap closed
                                         "N1 A2 B2"));  // done but for its own place, and done
}

TEST_P(MenuFaults, AlterarOpcaoLeavesTheChangesOnceTheyAreStored) {
  States states;
  for_each_fault(
      of_menu("Alterar_Opcao"), with_siblings({1, 2, 3}),
      [&] { menu().Alterar_Opcao(101, "N", "", 50, Null{}, 3); },
      [&](std::size_t) { states.see(siblings(50)); });
  EXPECT_THAT(states.seen(), ElementsAre("A1 B2 C3", "A1 N2 C3", "A1 N2 C2", "A1 C2 N3"));
}

TEST_P(MenuFaults, ExcluirOpcaoLeavesWhatItHasNotDeletedYet) {
  States states;
  for_each_fault(
      of_menu("Excluir_Opcao"),
      [&] {
        clear_options();
        add({{20, "A", kNull, 50, 1},
             {21, "B", kNull, 50, 2},
             {30, "C", kNull, 20, 1},
             {31, "D", kNull, 20, 2}});
      },
      [&] { menu().Excluir_Opcao(20); },
      [&](std::size_t) { states.see(siblings(50) + " / " + siblings(20)); });
  EXPECT_THAT(states.seen(), ElementsAre("A1 B2 / C1 D2",  // asked only
                                         "A1 B1 / C1 D2",  // the gap closed
                                         "B1 A2 / C1 D2",  // A behind its siblings
                                         "B1 A2 / C1 D1",  // the same below, for C
                                         "B1 A2 / D1 C2",  //
                                         "B1 A2 / D1",     // C gone
                                         "B1 A2 / D2",     // D behind itself
                                         "B1 A2 / ",       // D gone
                                         "B1 / "));
}

TEST_P(MenuFaults, OrdenaOpcoesLeavesTheCallersPlaceAdjusted) {
  std::int16_t ordem = 0;
  States states;
  for_each_fault(
      of_menu("Ordena_Opcoes"),
      [&] {
        ordem = 1;
        with_siblings({1, 2, 3})();
      },
      [&] { menu().Ordena_Opcoes(101, ordem, true); },
      [&](std::size_t) { states.see(std::to_string(ordem) + ": " + siblings(50)); });
  EXPECT_THAT(states.seen(), ElementsAre("1: A1 B2 C3", "4: A1 B2 C3", "4: A1 B2 C2", "3: A1 B2 C2",
                                         "3: A1 C2 B3"));
}

TEST_P(MenuFaults, AccessIsNeverGrantedByAFailure) {
  with_siblings({1})();
  run("update Pelm_Menu set rListadeObjetos = 900, rEscopo = 7 where id = 100");
  add({{110, "Abaixo", kNull, 100, 1, 900}});
  Variant result;
  const auto reset = [&] { result = Variant(); };
  for_each_fault(
      of_menu("AcessoOpcao"), reset, [&] { result = menu().AcessoOpcao(kEmployee, 110); },
      [&](std::size_t n) { EXPECT_EQ(result, n == 0 ? Variant(std::int16_t{1}) : Variant()); });
  for_each_fault(
      of_menu("AcessoTotalOpcao"), reset, [&] { result = menu().AcessoTotalOpcao(kEmployee, 110); },
      [&](std::size_t n) { EXPECT_EQ(result, n == 0 ? Variant(std::int16_t{1}) : Variant()); });
  for_each_fault(
      of_menu("AcessoListaDeObjetos"), [] {}, [&] { probe().AcessoListaDeObjetos(kEmployee, 900); },
      [](std::size_t) {});
  for_each_fault(
      of_menu("AcessoTotalrListadeObjetos"), [] {},
      [&] { probe().AcessoTotalrListadeObjetos(kEmployee, 900); }, [](std::size_t) {});
}

TEST_P(MenuFaults, MontarMenuLeavesTheBeginningOfItsScript) {
  add({{20, "Cadastros", kNull, 5, 1, 900},
       {21, "Sair", "sair.asp", 5, 2},
       {30, "Clientes", "cli.asp", 20, 1},
       {31, "Produtos", "prod.asp", 20, 2, 900}});
  menu().Montar_Menu(5, 1);
  const std::string whole = written();

  menu().OIDFuncionario = kEmployee;
  std::size_t before = 0;
  std::size_t runs = 0;
  for_each_fault(
      of_menu("Montar_Menu"), [&] { new_page(); }, [&] { menu().Montar_Menu(5, 1); },
      [&](std::size_t n) {
        const std::size_t length = written().size();
        EXPECT_EQ(written(), whole.substr(0, length)) << "call " << n;
        EXPECT_GE(length, before) << "call " << n;
        if (n == 0) {
          EXPECT_EQ(written(), whole);
        }
        before = length;
        ++runs;
      });
  EXPECT_GT(runs, 50U);

  for_each_fault(
      of_menu("Montar_Menu_Opcao"), [&] { new_page(); },
      [&] {
        frame::thread_slots().response = page::GetObjectContext()->Response;
        probe().Montar_Menu_Opcao(20, "HM_Array1_1");
      },
      [](std::size_t) {});
}

}  // namespace
}  // namespace pelm
