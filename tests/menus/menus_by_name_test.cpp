// Menus by name, as pages call it.
#include <array>

#include "automation/dispatch.h"
#include "menus/menu_test.h"

namespace pelm {
namespace {

using automation::CreateObject;
using testing::ElementsAre;

class MenusByName : public test::MenuTest {};
PELM_ON_EVERY_ENGINE(MenusByName);

TEST_P(MenusByName, TheFacadeHandsOutOneForTheThread) {
  EXPECT_EQ(main().Menu(), CMain().Menu());
  EXPECT_EQ(automation::get(main(), "Menu").object(), main().Menu());
  EXPECT_NE(CreateObject("PelmComum2008.Menus"), main().Menu());
}

TEST_P(MenusByName, EveryFieldIsReadAndWritten) {
  const ObjectRef menus = CreateObject("pelmcomum2008.menus");
  const automation::ClassInfo& cls = automation::class_of(*menus);
  const Variant empty_text = "";
  const Variant zero = std::int16_t{0};
  const struct {
    std::string_view name;
    Variant at_first;
    Variant written;
    Variant read;
  } kFields[] = {
      {"MENU_TARGET", empty_text, "main", "main"},
      {"MENU_width", zero, "150", std::int16_t{150}},
      {"MENU_left_position", zero, 10.5, std::int16_t{10}},
      {"MENU_top_position", zero, true, std::int16_t{-1}},
      {"MENU_font_color", empty_text, "black", "black"},
      {"MENU_mouseover_font_color", empty_text, "white", "white"},
      {"MENU_background_color", empty_text, std::int16_t{7}, "7"},
      {"MENU_mouseover_background_color", empty_text, "navy", "navy"},
      {"MENU_border_color", empty_text, "red", "red"},
      {"MENU_separator_color", empty_text, "gray", "gray"},
      {"MENU_top_is_permanent", zero, std::int16_t{1}, std::int16_t{1}},
      {"MENU_top_is_horizontal", zero, std::int16_t{2}, std::int16_t{2}},
      {"MENU_tree_is_horizontal", zero, std::int16_t{3}, std::int16_t{3}},
      {"MENU_position_under", zero, std::int16_t{4}, std::int16_t{4}},
      {"MENU_top_more_images_visible", zero, std::int16_t{5}, std::int16_t{5}},
      {"MENU_tree_more_images_visible", zero, std::int16_t{6}, std::int16_t{6}},
      {"MENU_evaluate_upon_tree_show", Variant(), "abrir()", "abrir()"},
      {"MENU_evaluate_upon_tree_hide", Variant(), Null{}, Null{}},
      {"MENU_right_to_left", Variant(), 0.5, 0.5},
      {"MENU_display_on_click", Variant(), false, false},
      {"MENU_top_is_variable_width", empty_text, "1", "1"},
      {"MENU_tree_is_variable_width", empty_text, "0", "0"},
      {"OIDFuncionario", std::int32_t{0}, "70000", std::int32_t{70000}},
  };
  std::size_t i = 0;
  for (const auto& field : kFields) {
    SCOPED_TRACE(field.name);
    EXPECT_EQ(cls.members.at(i++).name, field.name) << "in the order of the interface";
    EXPECT_EQ(automation::get(*menus, field.name), field.at_first);
    automation::put(*menus, field.name, field.written);
    EXPECT_EQ(automation::get(*menus, field.name), field.read);
  }
  EXPECT_EQ(test::number_raised([&] { automation::put(*menus, "MENU_width", "largo"); }),
            error_number::kTypeMismatch);
  EXPECT_EQ(automation::get(*menus, "MENU_width"), Variant(std::int16_t{150}));
}

TEST_P(MenusByName, OperationsStandInTheOrderOfTheInterfaceAndThePrivateOnesDoNot) {
  const automation::ClassInfo& cls = automation::class_of(menu());
  std::vector<std::string_view> methods;
  for (const automation::MemberInfo& member : cls.members) {
    if (member.kind == automation::MemberKind::Method) methods.push_back(member.name);
  }
  EXPECT_THAT(methods, ElementsAre("Cadastrar_Opcao", "Alterar_Opcao", "Excluir_Opcao",
                                   "Ordena_Opcoes", "AcessoOpcao", "AcessoTotalOpcao",
                                   "Montar_Menu", "AddRestricaoItemMenu"));
  for (const std::string_view hidden : {"AcessoListaDeObjetos", "AcessoTotalrListadeObjetos",
                                        "Montar_Menu_Opcao", "GetRestricaoItemMenu"}) {
    EXPECT_EQ(test::number_raised([&] { automation::call(menu(), hidden); }),
              error_number::kMemberNotFound);
  }
}

TEST_P(MenusByName, AnAdjustedPlaceComesBackToTheCaller) {
  add_siblings(100, 50, {1, 2, 3});
  std::array<OptionalArg, 2> end{Variant("100"), Variant(std::int16_t{9})};
  EXPECT_EQ(automation::call(menu(), "ordena_opcoes", end), Variant(std::int16_t{1}));
  EXPECT_EQ(end[1], Variant(std::int16_t{3}));
  EXPECT_EQ(siblings(50), "B1 C2 A3");

  std::array<OptionalArg, 3> out{Variant(std::int32_t{101}), Variant(std::int16_t{1}),
                                 Variant(true)};
  automation::call(menu(), "Ordena_Opcoes", out);
  EXPECT_EQ(out[1], Variant(std::int16_t{3}));
  EXPECT_EQ(siblings(50), "C1 A2 B3");
}

TEST_P(MenusByName, APageKeepsItsMenu) {
  std::array<OptionalArg, 5> option{Variant("Clientes"), Variant("cli.asp"), Variant("50"),
                                    Variant(Null{}), Variant(std::int16_t{1})};
  EXPECT_EQ(automation::call(menu(), "Cadastrar_Opcao", option), Variant("0"));
  const std::string id = row("select id from Pelm_Menu");

  std::array<OptionalArg, 2> access{Variant(std::int32_t{1}), Variant(id)};
  EXPECT_EQ(automation::call(menu(), "AcessoOpcao", access), Variant(std::int16_t{1}));
  std::array<OptionalArg, 2> script{Variant(std::int32_t{50}), Variant(std::int16_t{1})};
  EXPECT_EQ(automation::call(menu(), "Montar_Menu", script), Variant());
  EXPECT_NE(written().find("[\"&nbsp; Clientes &nbsp;|\",\"cli.asp\",1,0,0]"), std::string::npos);

  std::array<OptionalArg, 6> change{Variant(id),   Variant("Outros"),        Variant(""),
                                    Variant("50"), Variant(std::int16_t{9}), Variant("1")};
  EXPECT_EQ(automation::call(menu(), "Alterar_Opcao", change), Variant("0"));
  EXPECT_EQ(row("select Nome, rListadeObjetos from Pelm_Menu"), "Outros|9");
  std::array<OptionalArg, 1> removed{Variant(id)};
  EXPECT_EQ(automation::call(menu(), "Excluir_Opcao", removed), Variant("0"));
  EXPECT_EQ(row("select count(*) from Pelm_Menu"), "0");
}

}  // namespace
}  // namespace pelm
