// The type library's table of Menus.
#include "pelm/menus.h"
#include "automation/binding.h"
#include "automation/class_list.h"

namespace pelm::automation {
namespace {

using OrdenaOpcoes = Variant (Menus::*)(std::int32_t, std::int16_t&, bool);

}  // namespace

ClassEntry menus_table() {
  return class_table<Menus>(
      kClassName<Menus>, "PelmComum2008.Menus",
      "Menu options, their order, who may use them, and the script that shows them.",
      {
          field("MENU_TARGET", "The frame that options open in.", &Menus::MENU_TARGET),
          field("MENU_width", "The width of a level.", &Menus::MENU_width),
          field("MENU_left_position", "Where the menu stands, from the left.",
                &Menus::MENU_left_position),
          field("MENU_top_position", "Where the menu stands, from the top.",
                &Menus::MENU_top_position),
          field("MENU_font_color", "The colour of captions.", &Menus::MENU_font_color),
          field("MENU_mouseover_font_color", "The colour of the caption pointed at.",
                &Menus::MENU_mouseover_font_color),
          field("MENU_background_color", "The colour of options.", &Menus::MENU_background_color),
          field("MENU_mouseover_background_color", "The colour of the option pointed at.",
                &Menus::MENU_mouseover_background_color),
          field("MENU_border_color", "The colour of borders.", &Menus::MENU_border_color),
          field("MENU_separator_color", "The colour between options.",
                &Menus::MENU_separator_color),
          field("MENU_top_is_permanent", "Whether the first level is always there.",
                &Menus::MENU_top_is_permanent),
          field("MENU_top_is_horizontal", "Whether the first level lies flat.",
                &Menus::MENU_top_is_horizontal),
          field("MENU_tree_is_horizontal", "Whether the levels below lie flat.",
                &Menus::MENU_tree_is_horizontal),
          field("MENU_position_under", "Whether a level opens under its option.",
                &Menus::MENU_position_under),
          field("MENU_top_more_images_visible",
                "Whether the first level marks options that open a level.",
                &Menus::MENU_top_more_images_visible),
          field("MENU_tree_more_images_visible",
                "Whether the levels below mark options that open a level.",
                &Menus::MENU_tree_more_images_visible),
          field("MENU_evaluate_upon_tree_show", "Script run when a level opens.",
                &Menus::MENU_evaluate_upon_tree_show),
          field("MENU_evaluate_upon_tree_hide", "Script run when a level closes.",
                &Menus::MENU_evaluate_upon_tree_hide),
          field("MENU_right_to_left", "Whether levels open to the left.",
                &Menus::MENU_right_to_left),
          field("MENU_display_on_click", "Whether levels open on a click.",
                &Menus::MENU_display_on_click),
          field("MENU_top_is_variable_width", "Whether the first level fits its captions.",
                &Menus::MENU_top_is_variable_width),
          field("MENU_tree_is_variable_width", "Whether the levels below fit their captions.",
                &Menus::MENU_tree_is_variable_width),
          field("OIDFuncionario", "Whose permissions filter the menu; 0 shows every option.",
                &Menus::OIDFuncionario),
          method<&Menus::Cadastrar_Opcao>("Cadastrar_Opcao",
                                          "Adds an option; \"0\", or why its place was refused.",
                                          {by_ref("Nome"), by_ref("Link"), by_ref("rEscopo"),
                                           by_ref("rListadeObjetos"), by_ref("Ordem")}),
          method<&Menus::Alterar_Opcao>(
              "Alterar_Opcao", "Changes and moves an option; \"0\", or why its place was refused.",
              {by_ref("IDOpcao"), by_ref("Nome"), by_ref("Link"), by_ref("rEscopo"),
               by_ref("rListadeObjetos"), by_ref("Ordem")}),
          method<&Menus::Excluir_Opcao>(
              "Excluir_Opcao", "Deletes an option with all that is below it.", {by_ref("IDOpcao")}),
          method<static_cast<OrdenaOpcoes>(&Menus::Ordena_Opcoes)>(
              "Ordena_Opcoes",
              "Puts an option at a place among those of its parent; 1, or why it was refused.",
              {by_ref("ID"), "Ordem", by_ref({"Excluir", false})}),
          method<&Menus::AcessoOpcao>("AcessoOpcao", "Whether a person may use an option: 1 or 0.",
                                      {by_ref("OIDFuncionario"), by_ref("IDOpcao")}),
          method<&Menus::AcessoTotalOpcao>(
              "AcessoTotalOpcao",
              "Whether a person may use an option and every one above it: 1 or 0.",
              {by_ref("OIDFuncionario"), by_ref("IDOpcao")}),
          method<&Menus::Montar_Menu>("Montar_Menu", "Writes the script of a menu to the page.",
                                      {by_ref("IDMenu"), by_ref("Numero")}),
          method<&Menus::AddRestricaoItemMenu>(
              "AddRestricaoItemMenu", "Registers a fragment of addresses; no menu looks at it.",
              {"Link"}),
      });
}

}  // namespace pelm::automation
