// Conversions between values.
#include "pelm/conversions.h"

#include <cmath>
#include <limits>
#include <optional>
#include <type_traits>
#include <utility>

#include "pelm/error.h"
#include "platform/value/date_text.h"
#include "platform/value/number_text.h"
#include "platform/value/text.h"

namespace pelm {
namespace {

using Type = Variant::Type;

[[noreturn]] void raise_no_number(Type type) {
  raise_error(type == Type::Null ? error_number::kInvalidUseOfNull : error_number::kTypeMismatch);
}

NumberReading checked_number(const std::string& text) {
  const NumberReading reading = read_number(text);
  if (reading.kind == NumberReading::Kind::NotANumber) raise_error(error_number::kTypeMismatch);
  if (reading.kind == NumberReading::Kind::TooLarge) raise_error(error_number::kOverflow);
  return reading;
}

template <class Whole>
Whole whole_of_number(double v) {
  const double rounded = std::nearbyint(v);  // halves to even, the mode that nobody changes
  const bool in_range =
      rounded >= std::numeric_limits<Whole>::min() && rounded <= std::numeric_limits<Whole>::max();
  if (!in_range) raise_error(error_number::kOverflow);
  return static_cast<Whole>(rounded);
}

template <class Whole>
Whole whole_of_text(const std::string& text) {
  using Pattern = std::make_unsigned_t<Whole>;
  const NumberReading reading = checked_number(text);
  if (reading.kind == NumberReading::Kind::Decimal) return whole_of_number<Whole>(reading.value);
  if (reading.bits > std::numeric_limits<Pattern>::max()) raise_error(error_number::kOverflow);
  return static_cast<Whole>(static_cast<Pattern>(reading.bits));  // kept: "&HFFFF" to 16 bits is -1
}

// The value of what is a number without reading: everything but texts, null, arrays and objects.
std::optional<double> plain_number(const Variant& v) {
  switch (v.type()) {
    case Type::Empty:
      return 0.0;
    case Type::Integer:
      return v.integer();
    case Type::Long:
      return v.long_value();
    case Type::Double:
      return v.double_value();
    case Type::Boolean:
      return v.boolean() ? -1.0 : 0.0;  // kept: True is -1
    case Type::Date:
      return v.date().serial();
    default:
      return std::nullopt;
  }
}

template <class Whole>
Whole to_whole(const Variant& v) {
  if (const auto number = plain_number(v)) return whole_of_number<Whole>(*number);
  if (v.is_text()) return whole_of_text<Whole>(v.text());
  raise_no_number(v.type());
}

double double_of_text(const std::string& text) {
  const NumberReading reading = checked_number(text);
  return reading.kind == NumberReading::Kind::BitPattern ? static_cast<double>(reading.bits)
                                                         : reading.value;
}

Date date_of_text(const std::string& text) {
  if (const auto date = read_date(text)) return *date;
  try {
    return Date::from_serial(double_of_text(text));
  } catch (const Error&) {
    raise_error(error_number::kTypeMismatch);  // kept: no overflow from a text
  }
}

}  // namespace

std::int16_t to_integer(const Variant& v) {
  return v.type() == Type::Integer ? v.integer() : to_whole<std::int16_t>(v);
}

std::int32_t to_long(const Variant& v) {
  return v.type() == Type::Long ? v.long_value() : to_whole<std::int32_t>(v);
}

double to_double(const Variant& v) {
  if (const auto number = plain_number(v)) return *number;
  if (v.is_text()) return double_of_text(v.text());
  raise_no_number(v.type());
}

bool to_boolean(const Variant& v) {
  if (v.is_text()) {
    if (text::equal_case_blind(v.text(), "True")) return true;
    if (text::equal_case_blind(v.text(), "False")) return false;
  }
  return to_double(v) != 0.0;
}

Date to_date(const Variant& v) {
  if (v.type() == Type::Date) return v.date();
  if (v.is_text()) return date_of_text(v.text());
  return Date::from_serial(to_double(v));
}

std::string to_text(const Variant& v) {
  switch (v.type()) {
    case Type::Empty:
      return {};
    case Type::Integer:
      return std::to_string(v.integer());
    case Type::Long:
      return std::to_string(v.long_value());
    case Type::Double:
      return number_text(v.double_value());
    case Type::Boolean:
      return v.boolean() ? "True" : "False";
    case Type::Date:
      return date_text(v.date());
    case Type::Text:
      return v.text();
    default:
      raise_no_number(v.type());
  }
}

std::string to_text(Variant&& v) {
  return v.is_text() ? std::move(v).text() : to_text(std::as_const(v));
}

bool is_date(const Variant& v) noexcept {
  return v.type() == Type::Date || (v.is_text() && read_date(v.text()).has_value());
}

bool is_numeric(const Variant& v) noexcept {
  if (v.is_text()) {
    const NumberReading::Kind kind = read_number(v.text()).kind;
    return kind == NumberReading::Kind::Decimal || kind == NumberReading::Kind::BitPattern;
  }
  return v.type() != Type::Date && plain_number(v).has_value();
}

}  // namespace pelm
