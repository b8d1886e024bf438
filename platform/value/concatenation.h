/// A value on its way into a longer text.
#pragma once

#include <string>
#include <utility>

#include "pelm/conversions.h"
#include "pelm/variant.h"

namespace pelm {

/// What joining texts makes of a value: null is nothing, any other is its text. Raises type
/// mismatch (13) for arrays and objects.
inline std::string joined_text(const Variant& v) {
  return v.is_null() ? std::string() : to_text(v);
}
inline std::string joined_text(Variant&& v) {
  return v.is_null() ? std::string() : to_text(std::move(v));
}

/// The same, put behind what is there.
inline void join_to(std::string& text, const Variant& v) {
  if (v.is_text()) {
    text += v.text();
  } else {
    text += joined_text(v);
  }
}

}  // namespace pelm
