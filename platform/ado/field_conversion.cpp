// Converting a value to a column's type.
#include "platform/ado/field_conversion.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/ado/error_source.h"
#include "platform/value/text.h"

namespace pelm::ado {
namespace {

using Type = Variant::Type;

[[noreturn]] void cannot_convert(const Column& column, const Variant& value) {
  const std::string found(type_name(value.type()));
  raise_error(error_number::kCantConvertValue, kFieldSource,
              in_language("(campo " + column.name + ", valor de tipo " + found + ")",
                          "(field " + column.name + ", value of type " + found + ")"));
}

[[noreturn]] void number_overflows(const Column& column) {
  raise_error(error_number::kDataOverflow, kFieldSource,
              in_language("(campo " + column.name + ")", "(field " + column.name + ")"));
}

void check_fits(const Column& column, std::string_view text) {
  const auto limit = static_cast<std::size_t>(column.size);
  if (limit == 0 || text.size() <= limit) return;
  const std::size_t length = text::length(text);
  if (length <= limit) return;
  const std::string given = std::to_string(length);
  const std::string room = std::to_string(limit);
  raise_error(
      error_number::kDataOverflow, kFieldSource,
      in_language("(campo " + column.name + ": " + given + " caracteres, cabem " + room + ")",
                  "(field " + column.name + ": " + given + " characters, room for " + room + ")"));
}

/// A whole number of up to 64 bits: Long where it fits, Double beyond.
Variant big_integer(const Column& column, const Variant& value) {
  const double rounded = std::nearbyint(to_double(value));
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  if (rounded < -kLimit || rounded >= kLimit) number_overflows(column);
  using Long = std::numeric_limits<std::int32_t>;
  if (rounded < Long::min() || rounded > Long::max()) return rounded;
  return static_cast<std::int32_t>(rounded);
}

void convert(const Column& column, Variant& value) {
  switch (column.type) {
    case adSmallInt:
      if (value.type() != Type::Integer) value = to_integer(value);
      break;
    case adInteger:
      if (value.type() != Type::Long) value = to_long(value);
      break;
    case adBigInt:
      if (value.type() != Type::Long) value = big_integer(column, value);
      break;
    case adDouble:
      if (value.type() != Type::Double) value = to_double(value);
      break;
    case adDate:
      if (value.type() != Type::Date) value = to_date(value);
      break;
    case adBoolean:
      if (value.type() != Type::Boolean) value = to_boolean(value);
      break;
    case adVarChar:
    case adLongVarChar:
    case adVarWChar:
    case adLongVarWChar:
    case adBinary:
      if (!value.is_text()) value = to_text(value);
      check_fits(column, value.text());
      break;
    case adVariant:
    case adEmpty:
      if (value.is_empty()) value = Null{};
      break;
  }
}

}  // namespace

void convert_for(const Column& column, Variant& value) {
  if (value.is_null()) return;
  if (value.type() == Type::Array || value.type() == Type::Object) cannot_convert(column, value);
  try {
    convert(column, value);
  } catch (const Error& e) {
    switch (e.number()) {
      case error_number::kTypeMismatch:
      case error_number::kInvalidCall:
        cannot_convert(column, value);
      case error_number::kOverflow:
        number_overflows(column);
      default:
        throw;
    }
  }
}

Variant converted_for(const Column& column, Variant value) {
  convert_for(column, value);
  return value;
}

}  // namespace pelm::ado
