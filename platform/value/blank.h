/// What counts as a blank around numbers and dates in a text.
#pragma once

#include <string_view>

namespace pelm {

inline constexpr std::string_view kNonBreakingBlank = "\xC2\xA0";

/// `s` without the blanks at its start: blank, tab, line ends and the non-breaking blank (U+00A0).
constexpr std::string_view skip_blanks(std::string_view s) noexcept {
  constexpr auto is_blank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
  for (;;) {
    if (!s.empty() && is_blank(s.front())) {
      s.remove_prefix(1);
    } else if (s.starts_with(kNonBreakingBlank)) {
      s.remove_prefix(kNonBreakingBlank.size());
    } else {
      return s;
    }
  }
}

}  // namespace pelm
