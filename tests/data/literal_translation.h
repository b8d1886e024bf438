/// The translation written down as its steps are told, one text operation a line: slow, and plain
/// enough to be compared with the words. What data/sql_translation.h must equal for every text.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pelm::data::literal {

enum class Outcome { Ends, Fails, NeverEnds };

struct Translation {
  Outcome outcome;
  std::string text;                 ///< As far as it was rewritten.
  std::string_view endless_form{};  ///< The opening form that stays, for NeverEnds.

  friend bool operator==(const Translation&, const Translation&) = default;
};

/// The rewriting for Oracle. A round of a function rule depends on the text alone, so a round that
/// changes nothing proves that the rounds never end. Throws std::logic_error after 10,000 rounds
/// of one rule that all changed something: then nothing is proved.
Translation translate(std::string_view sql);

}  // namespace pelm::data::literal
