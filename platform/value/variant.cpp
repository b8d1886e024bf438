// Comparison and names of values; the root object's home.
#include "pelm/variant.h"

#include <array>

namespace pelm {

Object::~Object() = default;

bool operator==(const Variant& a, const Variant& b) {
  if (a.type() != b.type()) return false;
  if (a.type() == Variant::Type::Array) return a.array() == b.array();
  return a.value_ == b.value_;
}

std::string_view type_name(Variant::Type type) noexcept {
  static constexpr std::array<std::string_view, 10> kNames = {
      "Empty", "Null", "Integer", "Long", "Double", "Boolean", "Date", "Text", "Array", "Object"};
  return kNames.at(static_cast<std::size_t>(type));
}

}  // namespace pelm
