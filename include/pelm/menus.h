/// The application's menus: options in a tree, their order, who may use them, and the script that
/// shows them.
///
///     auto menu = main.Menu();
///     menu->Cadastrar_Opcao("Clientes", "cli.asp", 20, pelm::Null{}, 1);  // "0"
///     menu->MENU_TARGET = "principal";
///     menu->OIDFuncionario = usuario;
///     menu->Montar_Menu(5, 1);  // HM_Array1 and the arrays below it
///
/// Every operation works on the connection that `CMain::CConn` hands out on this thread and
/// raises 91 where there is none. Failures leave with the operation's own source,
/// "PelmComum2008.Menu." and its name; nothing done before is undone. Nothing is remembered
/// between calls: each asks the database again. Options that lie within themselves, and trees
/// deeper than 1000 levels, raise 28. One operation at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pelm/object.h"
#include "pelm/oid.h"
#include "pelm/variant.h"

namespace pelm {

namespace data {
class AllRows;
}
namespace menus {
struct LevelForm;
}

class Menus : public Object {
 public:
  Menus();

  // What the page sets before `Montar_Menu`. Written into the script as they stand, unescaped;
  // the variants as their text, empty and null as none. They start empty, 0 or without value.

  std::string MENU_TARGET;  ///< the frame that options open their addresses in
  std::int16_t MENU_width = 0;
  std::int16_t MENU_left_position = 0;
  std::int16_t MENU_top_position = 0;
  std::string MENU_font_color;
  std::string MENU_mouseover_font_color;
  std::string MENU_background_color;
  std::string MENU_mouseover_background_color;
  std::string MENU_border_color;
  std::string MENU_separator_color;
  std::int16_t MENU_top_is_permanent = 0;
  std::int16_t MENU_top_is_horizontal = 0;
  std::int16_t MENU_tree_is_horizontal = 0;
  std::int16_t MENU_position_under = 0;
  std::int16_t MENU_top_more_images_visible = 0;
  std::int16_t MENU_tree_more_images_visible = 0;
  Variant MENU_evaluate_upon_tree_show;
  Variant MENU_evaluate_upon_tree_hide;
  Variant MENU_right_to_left;
  Variant MENU_display_on_click;
  std::string MENU_top_is_variable_width;
  std::string MENU_tree_is_variable_width;

  /// Whose permissions filter the menu; 0 shows every option.
  Oid OIDFuncionario = 0;

  // Options. Each returns "0", or the message with which `Ordena_Opcoes` refused.

  /// Adds an option; its new key is not told. `rEscopo` is the key of the option above it, or the
  /// menu's own number; a null `rListadeObjetos` opens it to everyone. The row stays stored when
  /// its place is refused. Raises 6 for an `Ordem` beyond 16 bits, with the row stored.
  std::string Cadastrar_Opcao(std::string_view Nome, std::string_view Link, std::int32_t rEscopo,
                              const Variant& rListadeObjetos, std::int32_t Ordem);
  /// Changes an option and moves it to its place among the options of its (new) parent; the gap
  /// under an old parent stays. Raises 3021 when there is no such option, 6 as above.
  std::string Alterar_Opcao(std::int32_t IDOpcao, std::string_view Nome, std::string_view Link,
                            std::int32_t rEscopo, const Variant& rListadeObjetos,
                            std::int32_t Ordem);
  /// Deletes an option with all that is below it. Raises 1001 for a key of 7 or less, also among
  /// the options below, and with the message when ordering refuses.
  std::string Excluir_Opcao(std::int32_t IDOpcao);

  // Order.

  /// Puts an option at place `Ordem` among those of its parent and returns 1 (Integer), or
  /// returns a message for a place of 0 or less and for an unknown option. A place past the end
  /// becomes the end, and with `Excluir` any place does; `Ordem` then comes back changed, also
  /// when a later step fails. Works within a page only: raises 91 outside.
  Variant Ordena_Opcoes(std::int32_t ID, std::int16_t& Ordem, bool Excluir = false);
  /// For a place that nobody needs back.
  Variant Ordena_Opcoes(std::int32_t ID, std::int16_t&& Ordem, bool Excluir = false) {
    return Ordena_Opcoes(ID, Ordem, Excluir);
  }

  // Access. 1 (Integer) is granted, 0 denied; a text says that there is no such option.

  /// Whether a person may use an option, by the option's own list of objects. The user, then the
  /// user's groups, then everyone (item 1): the first with a permission for the list decides.
  /// Without one, and for a person who is no user and has none, it is granted.
  Variant AcessoOpcao(Oid OIDFuncionario, std::int32_t IDOpcao);
  /// The same for the option and each one above it, up to the root 7, and for the domains of
  /// their lists.
  Variant AcessoTotalOpcao(Oid OIDFuncionario, std::int32_t IDOpcao);

  // Script.

  /// Writes the script of the menu whose options have `rEscopo` `IDMenu`; `Numero` tells the menus
  /// of a page apart. Captions and addresses are not escaped. What was written before a failure
  /// stays in the page. Over the embedded database a buffered page shows all options and
  /// permissions as they stood when the menu began; otherwise each statement sees what is stored
  /// by then. Raises 91 outside a page.
  void Montar_Menu(std::int32_t IDMenu, std::int16_t Numero);
  /// Registers a fragment of addresses, forgetting the one before; always returns empty. No menu
  /// looks at it.
  Variant AddRestricaoItemMenu(std::string_view Link);

 private:
  friend class MenusProbe;  // the tests look at the private operations and fields

  std::int16_t AcessoListaDeObjetos(Oid person, Oid list);
  std::int16_t AcessoTotalrListadeObjetos(Oid person, Oid list);
  void Montar_Menu_Opcao(std::int32_t parent, const std::string& array);
  std::int16_t GetRestricaoItemMenu(std::string_view Link);

  std::int16_t place_behind_all(std::int32_t parent);
  void close_gap(std::int32_t id, std::int32_t parent, std::int32_t old_place);
  void clamp_to_end(std::int32_t id, std::int32_t parent, std::int16_t& place);
  void open_place(std::int32_t id, std::int32_t parent, std::int16_t place);
  void run_directly(std::string sql);

  std::optional<Oid> user_of(Oid person);

  data::AllRows options_of_level();
  void write_level(const data::AllRows& options, const menus::LevelForm& form,
                   const std::string& array);
  bool write_entries(const data::AllRows& options, const menus::LevelForm& form,
                     const std::string& array);
  void write_levels_below(const data::AllRows& options, const std::string& array);
  bool visible(std::span<const Variant> option);
  bool has_options_below(std::span<const Variant> option);

  std::string sSQL;                  // the text last built; never cleared
  std::vector<Variant> restricoes_;  // slot 0 is never used
  int depth_ = 0;                    // of the tree walk in progress
};

}  // namespace pelm
