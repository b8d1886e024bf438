/// Text by characters: UTF-8 in, UTF-8 out, every length and position counted in characters.
///
/// Positions are 1-based, as pages count them. A byte that is not part of valid UTF-8 counts as
/// one character and passes through unchanged. Not for collation: comparisons are by character.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace pelm::text {

std::size_t length(std::string_view s) noexcept;

/// Raise invalid call (5) for a negative count; a count past the end takes what is there.
std::string left(std::string_view s, std::int64_t count);
std::string right(std::string_view s, std::int64_t count);
/// Raise invalid call (5) for a start below 1 or a negative count; "" past the end.
std::string mid(std::string_view s, std::int64_t start);
std::string mid(std::string_view s, std::int64_t start, std::int64_t count);

enum class Compare { Exact, CaseBlind };
/// Position of the first `pattern` at or after `start`; 0 when there is none or `s` is empty;
/// `start` for an empty pattern. Raises invalid call (5) for a start below 1.
std::int64_t instr(std::int64_t start, std::string_view s, std::string_view pattern,
                   Compare compare = Compare::Exact);

/// Accented letters included; one character maps to one, so "ß" stays.
std::string upper(std::string_view s);
std::string lower(std::string_view s);
namespace detail {
bool equal_case_blind(std::string_view a, std::string_view b) noexcept;
}
inline bool equal_case_blind(std::string_view a, std::string_view b) noexcept {
  if (a.empty() || b.empty()) return a.empty() == b.empty();
  // Names are looked up among dozens, and most differ in their first letter.
  const auto x = static_cast<unsigned char>(a.front());
  const auto y = static_cast<unsigned char>(b.front());
  const bool may_be_equal = x >= 0x80 || y >= 0x80 || (x | 0x20U) == (y | 0x20U);
  return may_be_equal && (a == b || detail::equal_case_blind(a, b));
}

/// Blanks (U+0020) at both ends, nothing else.
std::string_view trim(std::string_view s) noexcept;

/// Every occurrence, left to right, exact; an empty pattern replaces nothing.
std::string replace_all(std::string_view s, std::string_view pattern, std::string_view with);

}  // namespace pelm::text
