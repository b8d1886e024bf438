/// The lines that come before the options of a level: the display parameters of a menu, and the
/// two lines of a level below.
#pragma once

#include <string_view>

namespace pelm {

class Menus;

namespace page {
class Response;
}

namespace menus {

/// How the two kinds of level differ: their first lines, and what stands around a caption.
struct LevelForm {
  void (*write_header)(page::Response& response, const Menus& menu, std::string_view array);
  std::string_view before_caption;
  std::string_view after_caption;
};

/// The options that a menu opens with.
extern const LevelForm kFirstLevel;
/// The options below an option.
extern const LevelForm kLevelBelow;

}  // namespace menus
}  // namespace pelm
