// One switch each way; dates through the engine's own clock fields, so that both ways agree.
#include "host/script_values.h"

#include <js/Array.h>
#include <js/BigInt.h>
#include <js/CallAndConstruct.h>
#include <js/CharacterEncoding.h>
#include <js/Conversions.h>
#include <js/Date.h>
#include <js/Object.h>
#include <js/PropertyAndElement.h>
#include <js/String.h>
#include <js/ValueArray.h>
#include <jsapi.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>

#include "host/script_object.h"
#include "host/script_state.h"
#include "pelm/error.h"
#include "platform/value/utf8.h"

namespace pelm::host::script {
namespace {

using automation::ValueKind;

constexpr int kDeepestArray = 32;

[[noreturn]] void refuse(std::string_view what) {
  raise_error(error_number::kTypeMismatch, "Script", what);
}

Variant from_number(double number) {
  constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
  if (number >= kLowest && number <= kHighest && number == std::trunc(number)) {
    return static_cast<std::int32_t>(number);
  }
  return number;
}

/// Bytes to convert a text into: on the stack, if they are few.
class Room {
 public:
  explicit Room(std::size_t size) {
    if (size > few_.size()) many_ = std::make_unique_for_overwrite<char[]>(size);
  }
  char* data() noexcept { return many_ ? many_.get() : few_.data(); }

 private:
  std::array<char, 1024> few_;
  std::unique_ptr<char[]> many_;
};

/// In one byte a character, as the engine keeps most texts of these pages; null when one of the
/// characters is beyond U+00FF or the text is not well formed. The first `ascii` bytes are ASCII.
JSString* narrow_text(JSContext* cx, std::string_view utf8, std::size_t ascii) {
  Room room(utf8.size());
  char* to = room.data();
  for (;;) {
    to = std::copy_n(utf8.data(), ascii, to);
    utf8.remove_prefix(ascii);
    if (utf8.empty()) break;
    const text::Character high = text::character_at(utf8, 0);
    if (!high.valid || high.code > 0xFF) return nullptr;
    *to++ = static_cast<char>(high.code);
    utf8.remove_prefix(high.size);
    ascii = text::ascii_prefix(utf8);
  }
  return require(JS_NewStringCopyN(cx, room.data(), static_cast<std::size_t>(to - room.data())));
}

std::string from_latin1(std::string_view narrow) {
  std::size_t ascii = text::ascii_prefix(narrow);
  if (ascii == narrow.size()) return std::string(narrow);
  Room room(2 * narrow.size());
  char* to = room.data();
  for (;;) {
    to = std::copy_n(narrow.data(), ascii, to);
    narrow.remove_prefix(ascii);
    if (narrow.empty()) return {room.data(), to};
    const auto high = static_cast<unsigned char>(narrow.front());
    *to++ = static_cast<char>(0xC0U | (high >> 6U));
    *to++ = static_cast<char>(0x80U | (high & 0x3FU));
    narrow.remove_prefix(1);
    ascii = text::ascii_prefix(narrow);
  }
}

JSObject* to_script_date(JSContext* cx, Date date) {
  const CivilTime t = date.civil();
  return require(JS::NewDateObject(cx, t.year, t.month - 1, t.day, t.hour, t.minute, t.second));
}

int date_field(JSContext* cx, JS::HandleObject date, const char* getter) {
  JS::RootedValue field(cx);
  require(JS_CallFunctionName(cx, date, getter, JS::HandleValueArray::empty(), &field));
  if (!field.isNumber() || !std::isfinite(field.toNumber())) refuse("Data inválida.");
  return JS::ToInt32(field.toNumber());
}

Variant from_script_date(JSContext* cx, JS::HandleObject date) {
  CivilTime t;
  t.year = date_field(cx, date, "getFullYear");
  t.month = date_field(cx, date, "getMonth") + 1;
  t.day = date_field(cx, date, "getDate");
  t.hour = date_field(cx, date, "getHours");
  t.minute = date_field(cx, date, "getMinutes");
  t.second = date_field(cx, date, "getSeconds");
  if (!is_valid(t)) {
    raise_error(error_number::kOverflow, "Script", "Data fora dos anos 100 a 9999.");
  }
  return Date::from_civil(t);
}

void to_script_array(JSContext* cx, const Variant::Elements& elements,
                     JS::MutableHandleValue result) {
  JS::RootedObject array(cx, require(JS::NewArrayObject(cx, elements.size())));
  JS::RootedValue element(cx);
  for (std::size_t i = 0; i < elements.size(); ++i) {
    to_script(cx, elements[i], &element);
    require(JS_DefineElement(cx, array, static_cast<std::uint32_t>(i), element, JSPROP_ENUMERATE));
  }
  result.setObject(*array);
}

Variant from_value(JSContext* cx, JS::HandleValue value, ValueKind wanted, int depth);

Variant from_script_array(JSContext* cx, JS::HandleObject array, int depth) {
  if (depth >= kDeepestArray) refuse("Matriz dentro de matriz fundo demais.");
  std::uint32_t length = 0;
  require(JS::GetArrayLength(cx, array, &length));
  Variant::Elements elements;
  JS::RootedValue element(cx);
  for (std::uint32_t i = 0; i < length; ++i) {
    require(JS_GetElement(cx, array, i, &element));
    elements.push_back(from_value(cx, element, ValueKind::Variant, depth + 1));
  }
  return elements;
}

Variant from_wrapper(JSContext* cx, const ObjectRef& object, ValueKind wanted) {
  if (wanted == ValueKind::Object) return object;
  if (auto value = default_value(cx, object)) return *std::move(value);
  return object;
}

Variant from_object(JSContext* cx, JS::HandleObject object, ValueKind wanted, int depth) {
  if (is_wrapper(object)) return from_wrapper(cx, wrapped_object(object), wanted);
  js::ESClass kind = js::ESClass::Other;
  require(JS::GetBuiltinClass(cx, object, &kind));
  switch (kind) {
    case js::ESClass::Date:
      return from_script_date(cx, object);
    case js::ESClass::Array:
      return from_script_array(cx, object, depth);
    case js::ESClass::Number:
    case js::ESClass::String:
    case js::ESClass::Boolean: {
      JS::RootedValue primitive(cx);
      require(
          JS_CallFunctionName(cx, object, "valueOf", JS::HandleValueArray::empty(), &primitive));
      if (primitive.isObject()) refuse("Um objeto do script não tem valor para o componente.");
      return from_value(cx, primitive, wanted, depth);
    }
    default:
      refuse("Um objeto do script não tem valor para o componente.");
  }
}

Variant from_value(JSContext* cx, JS::HandleValue value, ValueKind wanted, int depth) {
  if (value.isString()) {
    const JS::RootedString text(cx, value.toString());
    return from_script_text(cx, text);
  }
  if (value.isInt32()) return value.toInt32();
  if (value.isDouble()) return from_number(value.toDouble());
  if (value.isBoolean()) return value.toBoolean();
  if (value.isUndefined()) return {};
  if (value.isNull()) return wanted == ValueKind::Object ? Variant(ObjectRef()) : Variant(Null{});
  if (value.isObject()) {
    const JS::RootedObject object(cx, &value.toObject());
    return from_object(cx, object, wanted, depth);
  }
  if (value.isBigInt()) return from_number(JS::BigIntToNumber(value.toBigInt()));
  refuse("Um símbolo não tem valor para o componente.");
}

}  // namespace

JSString* to_script_text(JSContext* cx, std::string_view text) {
  const std::size_t ascii = text::ascii_prefix(text);
  if (ascii == text.size()) return require(JS_NewStringCopyN(cx, text.data(), text.size()));
  if (JSString* const narrow = narrow_text(cx, text, ascii)) return narrow;
  std::size_t length = 0;
  JS::UniqueTwoByteChars chars(
      JS::LossyUTF8CharsToNewTwoByteCharsZ(cx, JS::UTF8Chars(text.data(), text.size()), &length,
                                           js::StringBufferArena)
          .get());
  require(chars.get());
  return require(JS_NewUCString(cx, std::move(chars), length));
}

std::string from_script_text(JSContext* cx, JS::HandleString text) {
  JSLinearString* const linear = require(JS_EnsureLinearString(cx, text));
  if (JS::LinearStringHasLatin1Chars(linear)) {
    const JS::AutoCheckCannotGC chars_stay;
    return from_latin1(
        {reinterpret_cast<const char*>(JS::GetLatin1LinearStringChars(chars_stay, linear)),
         JS::GetLinearStringLength(linear)});
  }
  std::string utf8(JS::GetDeflatedUTF8StringLength(linear), '\0');
  const std::size_t written =
      JS::DeflateStringToUTF8Buffer(linear, mozilla::Span<char>(utf8.data(), utf8.size()));
  utf8.resize(written);
  return utf8;
}

void to_script(JSContext* cx, const Variant& value, JS::MutableHandleValue result) {
  switch (value.type()) {
    case Variant::Type::Empty:
      return result.setUndefined();
    case Variant::Type::Null:
      return result.setNull();
    case Variant::Type::Integer:
      return result.setInt32(value.integer());
    case Variant::Type::Long:
      return result.setInt32(value.long_value());
    case Variant::Type::Double:
      return result.setNumber(value.double_value());
    case Variant::Type::Boolean:
      return result.setBoolean(value.boolean());
    case Variant::Type::Date:
      return result.setObject(*to_script_date(cx, value.date()));
    case Variant::Type::Text:
      return result.setString(to_script_text(cx, value.text()));
    case Variant::Type::Array:
      return to_script_array(cx, value.array(), result);
    case Variant::Type::Object:
      return result.setObjectOrNull(value.object() ? wrap(cx, value.object()) : nullptr);
  }
}

Variant from_script(JSContext* cx, JS::HandleValue value, ValueKind wanted) {
  return from_value(cx, value, wanted, 0);
}

}  // namespace pelm::host::script
