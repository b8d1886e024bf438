/// Whether two names of columns, providers or parameters are the same, without case.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/value/text.h"

namespace pelm::ado {

/// As `text::equal_case_blind`, fast for the unaccented names that nearly all columns have.
inline bool same_name(std::string_view a, std::string_view b) noexcept {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const auto x = static_cast<unsigned char>(a[i]);
    const auto y = static_cast<unsigned char>(b[i]);
    if (x == y) continue;
    if (x >= 0x80 || y >= 0x80) return text::equal_case_blind(a, b);
    const auto folded = static_cast<unsigned char>(x | 0x20U);
    if (folded != (y | 0x20U) || folded < 'a' || folded > 'z') return false;
  }
  return true;
}

}  // namespace pelm::ado
