// The header of a menu, line by line as the menu library has always been given it.
#include "menus/header_template.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>

#include "pelm/menus.h"
#include "platform/page/response.h"
#include "platform/value/concatenation.h"

namespace pelm::menus {
namespace {

struct NoValue {};
struct ArrayName {};
using LineValue =
    std::variant<NoValue, ArrayName, std::string Menus::*, std::int16_t Menus::*, Variant Menus::*>;

/// before, value, after, blanks, comment, line end.
struct HeaderLine {
  std::string_view before;
  LineValue value;
  std::string_view after;
  std::size_t blanks = 0;
  std::string_view comment = {};
};

// kept: every width, the single blank of left_position, and the comment that comes twice.
constexpr HeaderLine kMenuHeader[] = {
    {"HM_NovaPagina=\"", &Menus::MENU_TARGET, "\";"},
    {"", ArrayName{}, " = ["},
    {"[", &Menus::MENU_width, ",", 26, "// menu_width"},
    {"", &Menus::MENU_left_position, ",", 1, "// left_position"},
    {"", &Menus::MENU_top_position, ",", 28, "// top_position"},
    {"\"", &Menus::MENU_font_color, "\",", 25, "// font_color"},
    {"\"", &Menus::MENU_mouseover_font_color, "\",", 22, "// mouseover_font_color"},
    {"\"", &Menus::MENU_background_color, "\",", 22, "// background_color"},
    {"\"", &Menus::MENU_mouseover_background_color, "\",", 23, "// mouseover_background_color"},
    {"\"", &Menus::MENU_border_color, "\",", 24, "// border_color"},
    {"\"", &Menus::MENU_separator_color, "\",", 23, "// separator_color"},
    {"", &Menus::MENU_top_is_permanent, ",", 29, "// top_is_permanent"},
    {"", &Menus::MENU_top_is_horizontal, ",", 29, "// top_is_horizontal"},
    {"", &Menus::MENU_tree_is_horizontal, ",", 29, "// tree_is_horizontal"},
    {"", &Menus::MENU_position_under, ",", 29, "// position_under"},
    {"", &Menus::MENU_top_more_images_visible, ",", 29, "// top_more_images_visible"},
    {"", &Menus::MENU_tree_more_images_visible, ",", 29, "// tree_more_images_visible"},
    {"\"", &Menus::MENU_evaluate_upon_tree_show, "\",", 24, "// evaluate_upon_tree_show"},
    {"\"", &Menus::MENU_evaluate_upon_tree_hide, "\",", 24, "// evaluate_upon_tree_hide"},
    {"", &Menus::MENU_right_to_left, ",", 30, "// right_to_left"},
    {"", &Menus::MENU_display_on_click, ",", 26, "// display_on_click"},
    {"", &Menus::MENU_top_is_variable_width, ",", 26, "// top_is_variable_width"},
    {"", &Menus::MENU_tree_is_variable_width, ",", 30, "// tree_is_variable_width"},
    {"", NoValue{}, "],", 25, "// display_on_click"},
};

constexpr HeaderLine kHeaderBelow[] = {
    {"", ArrayName{}, " = ["},
    {"", NoValue{}, "[],"},
};

/// The text of a line's value.
struct ValueText {
  const Menus& menu;
  std::string_view array;

  std::string operator()(NoValue) const { return {}; }
  std::string operator()(ArrayName) const { return std::string(array); }
  std::string operator()(std::string Menus::*field) const { return menu.*field; }
  std::string operator()(std::int16_t Menus::*field) const { return std::to_string(menu.*field); }
  std::string operator()(Variant Menus::*field) const { return joined_text(menu.*field); }
};

template <std::size_t Lines>
void write_lines(const HeaderLine (&lines)[Lines], page::Response& response, const Menus& menu,
                 std::string_view array) {
  for (const HeaderLine& line : lines) {
    std::string text(line.before);
    text += std::visit(ValueText{menu, array}, line.value);
    text += line.after;
    text.append(line.blanks, ' ');
    text += line.comment;
    text += "\r\n";
    response.Write(text);
  }
}

void write_menu_header(page::Response& response, const Menus& menu, std::string_view array) {
  write_lines(kMenuHeader, response, menu, array);
}

void write_header_below(page::Response& response, const Menus& menu, std::string_view array) {
  write_lines(kHeaderBelow, response, menu, array);
}

}  // namespace

const LevelForm kFirstLevel = {write_menu_header, "&nbsp; ", " &nbsp;|"};
const LevelForm kLevelBelow = {write_header_below, "", ""};

}  // namespace pelm::menus
