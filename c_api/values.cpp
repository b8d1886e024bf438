// Copying values across the C interface.
#include "c_api/values.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <utility>

#include "c_api/handles.h"
#include "pelm/error.h"

namespace pelm::c_api {
namespace {

template <class Whole>
Variant whole(std::int32_t v) {
  if (v < std::numeric_limits<Whole>::min() || v > std::numeric_limits<Whole>::max()) {
    raise_error(error_number::kOverflow);
  }
  return static_cast<Whole>(v);
}

Variant text(const pelm_value& v) {
  if (v.as.text.size == 0) return Variant(std::string());
  if (v.as.text.data == nullptr) raise_error(error_number::kInvalidCall);
  return Variant(std::string(v.as.text.data, v.as.text.size));
}

Variant array(const pelm_value& v) {
  if (v.as.array.count > 0 && v.as.array.items == nullptr) raise_error(error_number::kInvalidCall);
  Variant::Elements elements;
  elements.reserve(v.as.array.count);
  for (std::size_t i = 0; i < v.as.array.count; ++i) {
    OptionalArg element = from_c(v.as.array.items[i]);
    elements.push_back(element ? std::move(*element) : Variant());
  }
  return Variant(std::move(elements));
}

Variant object(const pelm_value& v) {
  if (v.as.object == 0) return Variant(ObjectRef());
  return Variant(Handles::instance().find(v.as.object));
}

template <class T>
T* allocated(std::size_t count) {
  auto* memory = static_cast<T*>(std::malloc(count * sizeof(T)));
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void set_text(pelm_value& result, const std::string& text) {
  char* data = allocated<char>(text.size() + 1);
  std::memcpy(data, text.c_str(), text.size() + 1);
  result.as.text.data = data;
  result.as.text.size = text.size();
}

void set_array(pelm_value& result, const Variant::Elements& elements) {
  result.as.array.items = nullptr;
  result.as.array.count = 0;
  if (elements.empty()) return;
  result.as.array.items = allocated<pelm_value>(elements.size());
  try {
    for (const Variant& element : elements) {
      result.as.array.items[result.as.array.count] = to_c(element);
      ++result.as.array.count;
    }
  } catch (...) {
    clear(result);
    throw;
  }
}

}  // namespace

OptionalArg from_c(const pelm_value& v) {
  switch (v.type) {
    case PELM_EMPTY:
      return Variant();
    case PELM_NULL:
      return Variant(Null{});
    case PELM_INTEGER:
      return whole<std::int16_t>(v.as.integer);
    case PELM_LONG:
      return whole<std::int32_t>(v.as.integer);
    case PELM_DOUBLE:
      return Variant(v.as.number);
    case PELM_BOOLEAN:
      return Variant(v.as.integer != 0);
    case PELM_DATE:
      return Variant(Date::from_serial(v.as.number));
    case PELM_TEXT:
      return text(v);
    case PELM_ARRAY:
      return array(v);
    case PELM_OBJECT:
      return object(v);
    case PELM_ABSENT:
      return kAbsent;
    default:
      raise_error(error_number::kTypeMismatch);
  }
}

void from_c(const pelm_value* values, std::size_t count, std::pmr::vector<OptionalArg>& result,
            std::size_t more) {
  if (count == 0) return;
  if (values == nullptr) raise_error(error_number::kInvalidCall);
  result.reserve(count + more);
  for (std::size_t i = 0; i < count; ++i) result.push_back(from_c(values[i]));
}

pelm_value to_c(const Variant& v) {
  pelm_value result = PELM_EMPTY_VALUE;
  switch (v.type()) {
    case Variant::Type::Empty:
      break;
    case Variant::Type::Null:
      result.type = PELM_NULL;
      break;
    case Variant::Type::Integer:
      result.type = PELM_INTEGER;
      result.as.integer = v.integer();
      break;
    case Variant::Type::Long:
      result.type = PELM_LONG;
      result.as.integer = v.long_value();
      break;
    case Variant::Type::Double:
      result.type = PELM_DOUBLE;
      result.as.number = v.double_value();
      break;
    case Variant::Type::Boolean:
      result.type = PELM_BOOLEAN;
      result.as.integer = v.boolean() ? 1 : 0;
      break;
    case Variant::Type::Date:
      result.type = PELM_DATE;
      result.as.number = v.date().serial();
      break;
    case Variant::Type::Text:
      set_text(result, v.text());
      result.type = PELM_TEXT;
      break;
    case Variant::Type::Array:
      result.type = PELM_ARRAY;
      set_array(result, v.array());
      break;
    case Variant::Type::Object:
      if (v.object()) result.as.object = Handles::instance().add(v.object());
      result.type = PELM_OBJECT;
      break;
  }
  return result;
}

void clear(pelm_value& value) noexcept {
  switch (value.type) {
    case PELM_TEXT:
      std::free(const_cast<char*>(value.as.text.data));
      break;
    case PELM_ARRAY:
      for (std::size_t i = 0; i < value.as.array.count; ++i) clear(value.as.array.items[i]);
      std::free(value.as.array.items);
      break;
    case PELM_OBJECT:
      try {
        if (value.as.object != 0) Handles::instance().release(value.as.object);
      } catch (const Error&) {
        // Released by its holder already.
      }
      break;
    default:
      break;
  }
  value = PELM_EMPTY_VALUE;
}

}  // namespace pelm::c_api
