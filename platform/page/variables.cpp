// Named values, looked up without case by a linear scan: a site has a handful of them.
#include "platform/page/variables.h"

#include <algorithm>

#include "pelm/error.h"
#include "platform/value/text.h"

namespace pelm::page {
namespace {

bool holds_object(const Variant& value) {
  switch (value.type()) {
    case Variant::Type::Object:
      return value.object() != nullptr;
    case Variant::Type::Array:
      return std::any_of(value.array().begin(), value.array().end(), holds_object);
    default:
      return false;
  }
}

template <class Values>
auto find(Values& values, std::string_view name) {
  return std::find_if(values.begin(), values.end(), [name](const auto& pair) {
    return text::equal_case_blind(pair.first, name);
  });
}

}  // namespace

Variant Variables::get(std::string_view name) const {
  const auto found = find(values_, name);
  return found == values_.end() ? Variant() : found->second;
}

void Variables::set(std::string_view name, Variant value, std::string_view source) {
  if (holds_object(value)) {
    raise_error(error_number::kInvalidCall, source,
                "Um objeto pertence à página que o criou e não pode ser guardado em \"" +
                    std::string(name) + "\".");
  }
  const auto found = find(values_, name);
  if (found == values_.end()) {
    values_.emplace_back(name, std::move(value));
  } else {
    found->second = std::move(value);
  }
}

void Variables::remove(std::string_view name) {
  const auto found = find(values_, name);
  if (found != values_.end()) values_.erase(found);
}

std::vector<std::string> Variables::names() const {
  std::vector<std::string> names;
  names.reserve(values_.size());
  for (const auto& [name, value] : values_) names.push_back(name);
  return names;
}

}  // namespace pelm::page
