/// The rules for functions and conversions: one round as they are told, and all rounds at once.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "data/translation_rules.h"

namespace pelm::data {

/// One round of `rule` for a text that holds its opening form; any other text comes back as it
/// is. The argument ends with the first character of the closing form; then the text in capitals
/// has every "opening, argument, closing" replaced. A text that comes back as it was and still
/// holds the opening form is one for which the rounds never end.
std::string rule_round(const FunctionRule& rule, std::string_view sql);

/// What the rounds of `rule` make of a text that holds its opening form; nothing when they never
/// end. In time linear in the text.
std::optional<std::string> all_rounds(const FunctionRule& rule, std::string_view sql);

}  // namespace pelm::data
