// The script: approved texts for every shape of menu, and what is asked to write it.
#include <algorithm>
#include <utility>

#include "menus/menu_test.h"
#include "support/approved.h"

namespace pelm {
namespace {

using test::of_menu;
using test::raised;
using test::Raised;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kNull = std::nullopt;
constexpr Oid kUser = 100;
constexpr Oid kDeniedList = 900;
constexpr Oid kOpenList = 901;

class MontarMenu : public test::MenuTest {
 protected:
  void SetUp() override {
    MenuTest::SetUp();
    if (IsSkipped()) return;
    run("insert into item (OID, CID, NOME) values (100, 1, 'x')");
    run("insert into usuario (OID) values (100)");
    run("insert into permissao (OID, RUSUARIO, RESCOPO, ACESSO) values (5000, 100, 900, 0)");
    Menus& m = menu();
    m.MENU_TARGET = "main";
    m.MENU_width = 150;
    m.MENU_left_position = 10;
    m.MENU_top_position = 80;
    m.MENU_font_color = "black";
    m.MENU_mouseover_font_color = "white";
    m.MENU_background_color = "silver";
    m.MENU_mouseover_background_color = "navy";
    m.MENU_border_color = "black";
    m.MENU_separator_color = "gray";
    m.MENU_top_is_permanent = 1;
    m.MENU_top_is_horizontal = 1;
    m.MENU_tree_is_horizontal = 0;
    m.MENU_position_under = 1;
    m.MENU_top_more_images_visible = 1;
    m.MENU_tree_more_images_visible = 1;
    m.MENU_right_to_left = std::int16_t{0};
    m.MENU_display_on_click = std::int16_t{0};
    m.MENU_top_is_variable_width = "1";
    m.MENU_tree_is_variable_width = "1";
  }

  void add_worked_example() const {
    add({{20, "Cadastros", kNull, 5, 1},
         {21, "Sair", "sair.asp", 5, 2},
         {30, "Clientes", "cli.asp", 20, 1},
         {31, "Produtos", "prod.asp", 20, 2}});
  }
  void add_three(std::optional<Oid> first, std::optional<Oid> second,
                 std::optional<Oid> third) const {
    add({{20, "Cadastros", "cadastros.asp", 5, 1, first},
         {21, "Relatórios", "relatórios.asp", 5, 2, second},
         {22, "Sair", "sair.asp", 5, 3, third}});
  }
  testing::AssertionResult as_approved(std::string_view name) const {
    return test::matches_approved(written(), "menus/approved/" + std::string(name) + ".js");
  }
};
PELM_ON_EVERY_ENGINE(MontarMenu);

TEST_P(MontarMenu, WritesAMenuWithALevelBelow) {
  add_worked_example();
  menu().Montar_Menu(5, 1);
  EXPECT_TRUE(as_approved("worked_example"));
}

TEST_P(MontarMenu, SeveralMenusOnOnePageFollowEachOther) {
  add_worked_example();
  add({{40, "Ajuda", "ajuda.asp", 6, 1}});
  menu().Montar_Menu(5, 1);
  menu().Montar_Menu(6, 2);
  menu().Montar_Menu(5, 1);
  EXPECT_TRUE(as_approved("several_menus_on_one_page"));
}

TEST_P(MontarMenu, FieldsLeftAloneAreEmptyOrZero) {
  add_worked_example();
  Menus fresh;
  fresh.Montar_Menu(5, 1);
  EXPECT_TRUE(as_approved("fields_left_alone"));
}

TEST_P(MontarMenu, FieldsOfEveryTypeAreWrittenAsTheirTexts) {
  add_worked_example();
  menu().MENU_width = -1;
  menu().MENU_left_position = -32768;
  menu().MENU_top_position = 32767;
  menu().MENU_evaluate_upon_tree_show = "abrir()";
  menu().MENU_evaluate_upon_tree_hide = 0.5;
  menu().MENU_right_to_left = true;
  menu().MENU_display_on_click = false;
  menu().Montar_Menu(5, 1);
  EXPECT_TRUE(as_approved("fields_of_every_type"));
}

TEST_P(MontarMenu, ANullFieldIsWrittenAsNothing) {
  add_worked_example();
  menu().MENU_evaluate_upon_tree_show = Null{};
  menu().Montar_Menu(5, 1);
  EXPECT_TRUE(as_approved("worked_example"));
}

// kept: where commas and line breaks fall when options are hidden.
TEST_P(MontarMenu, HiddenOptionsLeaveTheirCommasAndLines) {
  const struct {
    std::string_view approved;
    std::optional<Oid> first, second, third;
  } kCases[] = {
      {"first_hidden", kDeniedList, kOpenList, kNull},
      {"middle_hidden", kNull, kDeniedList, kNull},
      {"last_hidden", kNull, kOpenList, kDeniedList},
      {"first_two_hidden", kDeniedList, kDeniedList, kNull},
      {"last_two_hidden", kNull, kDeniedList, kDeniedList},
      {"first_and_last_hidden", kDeniedList, kOpenList, kDeniedList},
      {"all_hidden", kDeniedList, kDeniedList, kDeniedList},
  };
  menu().OIDFuncionario = kUser;
  for (const auto& c : kCases) {
    clear_options();
    add_three(c.first, c.second, c.third);
    new_page();
    menu().Montar_Menu(5, 1);
    EXPECT_TRUE(as_approved(c.approved));
  }
}

TEST_P(MontarMenu, WithoutAnEmployeeEveryOptionIsShown) {
  add_three(kDeniedList, kDeniedList, kDeniedList);
  menu().Montar_Menu(5, 1);
  EXPECT_TRUE(as_approved("nothing_filtered"));
}

TEST_P(MontarMenu, AnOptionWhoseChildrenAreAllHiddenIsMarkedAndHasNoArray) {
  add({{20, "Cadastros", "", 5, 1},
       {21, "Oculto", kNull, 5, 2, kDeniedList},
       {22, "Relatórios", kNull, 5, 3, kOpenList},
       {23, "Sair", "sair.asp", 5, 4},
       {30, "Clientes", "cli.asp", 20, 1, kDeniedList},
       {31, "Produtos", "prod.asp", 20, 2, kDeniedList},
       {35, "Nunca", "nunca.asp", 21, 1},
       {40, "Oculto", "o.asp", 22, 1, kDeniedList},
       {41, "Vendas", "v.asp", 22, 2},
       {42, "Oculto", "o2.asp", 22, 3, kDeniedList},
       {43, "Compras", kNull, 22, 4},
       {44, "Oculto", "o3.asp", 22, 5, kDeniedList},
       {50, "Por mês", "m.asp", 43, 1},
       {51, "Por ano", "a.asp", 43, 2}});
  menu().OIDFuncionario = kUser;
  menu().Montar_Menu(5, 1);
  EXPECT_TRUE(as_approved("children_all_hidden"));
}

TEST_P(MontarMenu, OptionsComeByPlaceThenByKeyAndTextsStandAsTheyAre) {
  add({{20, "Terceiro", "3.asp", 5, 2},
       {21, "Segundo \"<b>\\", "x.asp?a=1&b=''2''", 5, 1},
       {22, kNull, "nulo.asp", 5, kNull},
       {23, "Quarto", "4.asp", 5, 2},
       {24, "", "", 5, -1}});
  menu().Montar_Menu(5, -3);
  EXPECT_TRUE(as_approved("order_and_raw_texts"));
}

TEST_P(MontarMenu, WithoutOptionsNothingIsWritten) {
  add_worked_example();
  menu().Montar_Menu(6, 1);
  EXPECT_EQ(written(), "");
  menu().OIDFuncionario = kUser;
  menu().Montar_Menu(6, 1);
  EXPECT_EQ(written(), "");
}

TEST_P(MontarMenu, RegisteredFragmentsChangeNothing) {
  add_worked_example();
  menu().AddRestricaoItemMenu("cli");
  menu().AddRestricaoItemMenu("prod");
  menu().Montar_Menu(5, 1);
  EXPECT_TRUE(as_approved("worked_example"));
}

TEST_P(MontarMenu, AsksForEveryLevelAndForEveryOptionsChildren) {
  add_worked_example();
  EXPECT_THAT(
      calls_of([&] {
        menu().Montar_Menu(5, 1);
        return 0;
      }),
      ElementsAre("execute select id, Nome, Link, rListadeObjetos from Pelm_Menu where rEscopo = 5 "
                  "order by Ordem, id",
                  "execute select id from Pelm_Menu where rEscopo = 20",
                  "execute select id from Pelm_Menu where rEscopo = 21",
                  "execute select id,nome,link,rListadeObjetos from Pelm_Menu where rEscopo=20 "
                  "order by Ordem,id",
                  "execute select id from Pelm_Menu where rEscopo = 30",
                  "execute select id from Pelm_Menu where rEscopo = 31",
                  "execute select id,nome,link,rListadeObjetos from Pelm_Menu where rEscopo=30 "
                  "order by Ordem,id",
                  "execute select id,nome,link,rListadeObjetos from Pelm_Menu where rEscopo=31 "
                  "order by Ordem,id",
                  "execute select id,nome,link,rListadeObjetos from Pelm_Menu where rEscopo=21 "
                  "order by Ordem,id"));
  EXPECT_EQ(probe().sSQL(),
            "select id,nome,link,rListadeObjetos from Pelm_Menu where rEscopo=21 order by "
            "Ordem,id");
}

// Nothing is remembered: a restricted option is checked for itself, for the comma before it and
// for its level below; the first option of a level has no comma before it.
TEST_P(MontarMenu, AsksForAccessAnewEachTime) {
  const struct {
    std::optional<Oid> first, second, third;
    std::int64_t checks;
  } kCases[] = {
      {kNull, kNull, kNull, 0},
      {kOpenList, kNull, kNull, 2},
      {kNull, kOpenList, kNull, 3},
      {kNull, kNull, kOpenList, 3},
      {kOpenList, kOpenList, kOpenList, 8},
      {kDeniedList, kDeniedList, kDeniedList, 5},
      {kDeniedList, kNull, kNull, 2},
      {kNull, kDeniedList, kDeniedList, 6},
  };
  menu().OIDFuncionario = kUser;
  for (const auto& c : kCases) {
    clear_options();
    add_three(c.first, c.second, c.third);
    const std::vector<std::string> calls = calls_of([&] {
      menu().Montar_Menu(5, 1);
      return 0;
    });
    EXPECT_EQ(
        std::count(calls.begin(), calls.end(), "execute SELECT oid FROM usuario WHERE oid=100"),
        c.checks);
  }
}

// Somebody else adds an option below the first one while the menu is being built.
TEST_P(MontarMenu, ABufferedPageMayShowOptionsAsTheyStoodWhenItBegan) {
  const struct {
    bool buffered;
    bool shows_the_new_option;
  } kCases[] = {{true, !GetParam().reads_under_one_view}, {false, true}};
  for (const auto& c : kCases) {
    clear_options();
    add_worked_example();
    new_page();
    response().Buffer(c.buffered);
    bool added = false;
    {
      const test::ObservedProvider observed(
          GetParam().provider, std::make_shared<test::Meddler>("select id from Pelm_Menu", [&] {
            if (!std::exchange(added, true)) add({{32, "Nova", kNull, 20, 3}});
          }));
      thread().reopen();
      menu().Montar_Menu(5, 1);
    }
    thread().reopen();
    EXPECT_TRUE(added);
    EXPECT_EQ(written().find("[\"Nova\"") != std::string::npos, c.shows_the_new_option)
        << (c.buffered ? "buffered" : "not buffered");
  }
}

TEST_P(MontarMenu, AFailureLeavesNoViewOfTheDatabaseBehind) {
  add({{20, "A", kNull, 21, 1}, {21, "B", kNull, 20, 1}});
  EXPECT_NE(raised([&] { menu().Montar_Menu(20, 1); }), std::nullopt);
  run("update item set NOME = 'y' where OID = 100");
  EXPECT_EQ(base().fObterNomeItem(100), "y");
}

TEST_P(MontarMenu, AnOptionWithinItselfFailsAfterWhatWasWritten) {
  add({{20, "A", kNull, 21, 1}, {21, "B", kNull, 20, 1}});
  EXPECT_THAT(raised([&] { menu().Montar_Menu(20, 1); }),
              Raised(error_number::kOutOfStackSpace, of_menu("Montar_Menu")));
  EXPECT_NE(written().find("HM_Array1_1_1_1 = [\r\n[],\r\n[\"A\",\"\",1,0,1]\r\n]\r\n"),
            std::string::npos);
  EXPECT_EQ(probe().depth(), 0);
}

TEST_P(MontarMenu, ADeepTreeIsWrittenToItsEnd) {
  constexpr int kLevels = 900;
  std::string array = "HM_Array1";
  std::vector<test::Option> chain;
  for (int i = 0; i < kLevels; ++i) {
    chain.push_back({1000 + i, "N", kNull, i == 0 ? 5 : 1000 + i - 1, 1});
    if (i > 0) array += "_1";
  }
  add(chain);
  menu().Montar_Menu(5, 1);
  EXPECT_THAT(written(), testing::EndsWith("\r\n\r\n" + array +
                                           " = [\r\n[],\r\n[\"N\",\"\",1,0,0]\r\n]\r\n\r\n"));
}

TEST_P(MontarMenu, AFieldWithoutATextFailsAfterTheLinesBeforeIt) {
  add_worked_example();
  menu().MENU_right_to_left = Variant(Variant::Elements{});
  EXPECT_THAT(raised([&] { menu().Montar_Menu(5, 1); }),
              Raised(error_number::kTypeMismatch, of_menu("Montar_Menu")));
  EXPECT_THAT(written(), testing::EndsWith("// evaluate_upon_tree_hide\r\n"));
}

TEST_P(MontarMenu, OutsideAPageItFails) {
  leave_page();
  EXPECT_THAT(raised([&] { menu().Montar_Menu(5, 1); }),
              Raised(error_number::kObjectNotSet, of_menu("Montar_Menu")));
}

TEST_P(MontarMenu, WithoutAConnectionItFails) {
  frame::thread_slots().conn.reset();
  EXPECT_THAT(raised([&] { menu().Montar_Menu(5, 1); }),
              Raised(error_number::kObjectNotSet, of_menu("Montar_Menu")));
  EXPECT_THAT(raised([&] { probe().Montar_Menu_Opcao(5, "HM_Array1_1"); }),
              Raised(error_number::kObjectNotSet, of_menu("Montar_Menu_Opcao")));
}

class Restricoes : public test::MenuTest {};
PELM_ON_EVERY_ENGINE(Restricoes);

// kept: the list grows and holds the last fragment alone.
TEST_P(Restricoes, OnlyTheLastFragmentIsHeld) {
  EXPECT_THAT(probe().restrictions(), ElementsAre(Variant()));
  EXPECT_EQ(menu().AddRestricaoItemMenu("a"), Variant());
  EXPECT_THAT(probe().restrictions(), ElementsAre(Variant(), Variant("a")));
  EXPECT_EQ(menu().AddRestricaoItemMenu("b"), Variant());
  EXPECT_THAT(probe().restrictions(), ElementsAre(Variant(), Variant(), Variant("b")));
}

TEST_P(Restricoes, ALinkThatContainsTheFragmentIsRestricted) {
  EXPECT_EQ(probe().GetRestricaoItemMenu("cli.asp"), 1);
  menu().AddRestricaoItemMenu("cli");
  EXPECT_EQ(probe().GetRestricaoItemMenu("/crm/cli.asp"), 0);
  EXPECT_EQ(probe().GetRestricaoItemMenu("CLI.asp"), 1) << "case counts";
  EXPECT_EQ(probe().GetRestricaoItemMenu("prod.asp"), 1);
  EXPECT_EQ(probe().GetRestricaoItemMenu(""), 1);
}

// kept: a forgotten fragment is the empty text, which every link but the empty one contains.
TEST_P(Restricoes, AfterTwoFragmentsEveryLinkButTheEmptyOneIsRestricted) {
  menu().AddRestricaoItemMenu("cli");
  menu().AddRestricaoItemMenu("prod");
  EXPECT_EQ(probe().GetRestricaoItemMenu("sair.asp"), 0);
  EXPECT_EQ(probe().GetRestricaoItemMenu("prod.asp"), 0);
  EXPECT_EQ(probe().GetRestricaoItemMenu(""), 1);
}

TEST_P(Restricoes, AnEmptyFragmentIsInEveryLinkButTheEmptyOne) {
  menu().AddRestricaoItemMenu("");
  EXPECT_EQ(probe().GetRestricaoItemMenu("sair.asp"), 0);
  EXPECT_EQ(probe().GetRestricaoItemMenu(""), 1);
}

}  // namespace
}  // namespace pelm
