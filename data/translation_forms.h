/// Finds the forms of translation_rules.h in a text, all of them in one pass.
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <string_view>

#include "data/translation_rules.h"

namespace pelm::data {

/// Which forms occur in a text, wherever they stand.
struct Forms {
  bool right_join = false;
  bool left_join = false;
  bool left = false;
  std::bitset<kConcatenations.size()> concatenations;
  std::bitset<kFunctionRules.size()> functions;

  bool any() const noexcept {
    return right_join || left_join || left || concatenations.any() || functions.any();
  }
};

Forms forms_in(std::string_view text) noexcept;

}  // namespace pelm::data
