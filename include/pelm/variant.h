/// A value of any type that crosses the component's boundary.
///
/// Contents: `Variant`, `Null`, `OptionalArg`, `kAbsent`. Conversions: pelm/conversions.h.
///
///     pelm::Variant v = "João";          // text, UTF-8
///     v = pelm::Null{};                  // null is not empty
///     if (v.is_null()) …
///     base.alterar_item(8, 1, pelm::kAbsent, 7);  // an omitted optional argument
///
/// Not a container: an array is held whole and copied by reference count.
#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "pelm/date.h"
#include "pelm/object.h"

namespace pelm {

/// The database's "no value".
struct Null {
  friend constexpr bool operator==(Null, Null) = default;
};

class Variant {
 public:
  /// In the order of the alternatives below.
  enum class Type { Empty, Null, Integer, Long, Double, Boolean, Date, Text, Array, Object };
  using Elements = std::vector<Variant>;

  Variant() = default;  ///< empty
  Variant(Null) : value_(Null{}) {}
  Variant(Date v) : value_(v) {}
  Variant(std::string v) : value_(std::move(v)) {}
  Variant(std::string_view v) : value_(std::string(v)) {}
  Variant(const char* v) : value_(std::string(v)) {}
  /// Exactly these number types: any other converts at the call, visibly.
  template <class T>
  requires std::same_as<T, std::int16_t> || std::same_as<T, std::int32_t> ||
      std::same_as<T, double> || std::same_as<T, bool>
      Variant(T v) : value_(v) {}
  Variant(Elements v) : value_(std::make_shared<const Elements>(std::move(v))) {}
  Variant(ObjectRef v) : value_(std::move(v)) {}
  template <std::derived_from<pelm::Object> T>
  Variant(std::shared_ptr<T> v) : value_(ObjectRef(std::move(v))) {}

  Type type() const noexcept { return static_cast<Type>(value_.index()); }
  bool is_empty() const noexcept { return type() == Type::Empty; }
  bool is_null() const noexcept { return type() == Type::Null; }
  bool is_text() const noexcept { return type() == Type::Text; }
  bool is_object() const noexcept { return type() == Type::Object; }

  /// The held value; the caller has looked at `type()` first. Anything else throws
  /// std::bad_variant_access, which is a defect of the caller and not an error of a page.
  std::int16_t integer() const { return std::get<std::int16_t>(value_); }
  std::int32_t long_value() const { return std::get<std::int32_t>(value_); }
  double double_value() const { return std::get<double>(value_); }
  bool boolean() const { return std::get<bool>(value_); }
  Date date() const { return std::get<Date>(value_); }
  const std::string& text() const& { return std::get<std::string>(value_); }
  std::string text() && { return std::get<std::string>(std::move(value_)); }
  const Elements& array() const { return *std::get<std::shared_ptr<const Elements>>(value_); }
  /// May be null: "nothing".
  const ObjectRef& object() const { return std::get<ObjectRef>(value_); }

  /// Same type and same value; arrays element by element, objects by identity. Not the page
  /// language's "=", which converts.
  friend bool operator==(const Variant& a, const Variant& b);

 private:
  std::variant<std::monostate, Null, std::int16_t, std::int32_t, double, bool, Date, std::string,
               std::shared_ptr<const Elements>, ObjectRef>
      value_;
};

/// "Integer", "Text" and so on, for messages.
std::string_view type_name(Variant::Type type) noexcept;

/// An argument that the caller may leave out. Absent is neither empty nor null.
using OptionalArg = std::optional<Variant>;
inline constexpr std::nullopt_t kAbsent = std::nullopt;

}  // namespace pelm
