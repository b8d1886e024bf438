/// From a C++ member function to a row of the type library: kinds, conversions and by-reference
/// marks come from its signature, so a table only names things.
///
///     method<&Base::alterar_item>("alterar_item", "Changes an item.",
///                                 {"pOID", "pATUALIZADOPOR", "pNOME", …})
///     property("AuxDatabase", "Stored for callers.", &Conn::AuxDatabase, &Conn::AuxDatabase)
#pragma once

#include <concepts>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "automation/bad_argument.h"
#include "automation/dispatch.h"
#include "automation/object_classes.h"
#include "pelm/conversions.h"
#include "pelm/error.h"

namespace pelm::automation {

/// An argument as a table writes it: a name, and what an omitted one counts as.
struct Arg {
  std::string_view name;
  OptionalArg default_value;
  bool by_reference = false;

  Arg(const char* argument) : name(argument) {}
  Arg(const char* argument, Variant otherwise)
      : name(argument), default_value(std::move(otherwise)) {}
};

/// An argument that callers pass by reference though it comes back as it was: the component's
/// interface has always said so.
inline Arg by_ref(Arg argument) {
  argument.by_reference = true;
  return argument;
}

namespace detail {

template <class T>
inline constexpr bool is_object_reference = false;
template <class T>
inline constexpr bool is_object_reference<std::shared_ptr<T>> = true;

template <class T>
consteval ValueKind kind_of() {
  if constexpr (std::is_void_v<T>)
    return ValueKind::None;
  else if constexpr (std::same_as<T, std::int16_t>)
    return ValueKind::Integer;
  else if constexpr (std::same_as<T, bool>)
    return ValueKind::Boolean;
  else if constexpr (std::same_as<T, double>)
    return ValueKind::Double;
  else if constexpr (std::same_as<T, Date>)
    return ValueKind::Date;
  else if constexpr (std::same_as<T, Variant> || std::same_as<T, OptionalArg>)
    return ValueKind::Variant;
  else if constexpr (is_object_reference<T>)
    return ValueKind::Object;
  else if constexpr (std::convertible_to<T, std::string_view>)
    return ValueKind::Text;
  else {
    static_assert(std::same_as<T, std::int32_t> || std::is_enum_v<T>,
                  "a type that no page can pass");
    return ValueKind::Long;
  }
}

template <class T>
std::string_view class_name_of() {
  if constexpr (is_object_reference<T>)
    return kClassName<typename T::element_type>;
  else
    return {};
}

template <class T>
T converted(const Variant& v) {
  if constexpr (std::same_as<T, std::int16_t>)
    return to_integer(v);
  else if constexpr (std::same_as<T, bool>)
    return to_boolean(v);
  else if constexpr (std::same_as<T, double>)
    return to_double(v);
  else if constexpr (std::same_as<T, Date>)
    return to_date(v);
  else if constexpr (std::same_as<T, Variant>)
    return v;
  else if constexpr (std::same_as<T, std::string>)
    return to_text(v);
  else if constexpr (is_object_reference<T>) {
    if (!v.is_object()) raise_error(error_number::kObjectRequired);
    T object = std::dynamic_pointer_cast<typename T::element_type>(v.object());
    if (v.object() && !object) raise_error(error_number::kTypeMismatch);
    return object;
  } else
    return static_cast<T>(to_long(v));
}

template <class T>
Variant as_variant(T&& value) {
  using Plain = std::remove_cvref_t<T>;
  if constexpr (std::is_enum_v<Plain>)
    return Variant(static_cast<std::int32_t>(value));
  else
    return Variant(std::forward<T>(value));
}

/// Holds one converted argument for the length of a call.
template <class Declared>
class Slot {
  using Plain = std::remove_cvref_t<Declared>;
  static constexpr bool kByReference =
      std::is_lvalue_reference_v<Declared> && !std::is_const_v<std::remove_reference_t<Declared>>;
  using Held = std::conditional_t<std::same_as<Plain, std::string_view>, std::string, Plain>;

 public:
  static constexpr bool by_reference = kByReference;
  static constexpr bool optional_variant = std::same_as<Plain, OptionalArg>;

  explicit Slot(OptionalArg& given) : given_(given) {
    if constexpr (!optional_variant) held_ = converted<Held>(*given);
  }

  decltype(auto) value() {
    if constexpr (optional_variant)
      return static_cast<const OptionalArg&>(given_);
    else if constexpr (kByReference)
      return static_cast<Held&>(held_);
    else
      return static_cast<const Held&>(held_);
  }

  void write_back() {
    if constexpr (kByReference) given_ = as_variant(std::move(held_));
  }

 private:
  struct Nothing {};
  OptionalArg& given_;
  std::conditional_t<optional_variant, Nothing, Held> held_{};
};

template <class>
struct Signature;
template <class C, class R, class... A>
struct Signature<R (C::*)(A...)> {
  using Class = C;
  using Result = R;
  using Arguments = std::tuple<A...>;
};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) const> : Signature<R (C::*)(A...)> {};
template <class C, class R, class... A>
struct Signature<R (*)(C&, A...)> : Signature<R (C::*)(A...)> {};

/// A lambda that takes the object first.
template <class>
struct ObjectFirst;
template <class L, class C, class R, class... A>
struct ObjectFirst<R (L::*)(C&, A...) const> : Signature<R (C::*)(A...)> {};
template <class L>
requires std::is_class_v<L>
struct Signature<L> : ObjectFirst<decltype(&L::operator())> {
};

/// A text is lent to the call, which does not change it, and copied only where it is made here.
template <>
class Slot<std::string_view> {
 public:
  static constexpr bool by_reference = false;
  static constexpr bool optional_variant = false;

  explicit Slot(const OptionalArg& given) : given_(given) {
    if (!given->is_text()) made_ = to_text(*given);
  }
  std::string_view value() const { return given_->is_text() ? given_->text() : made_; }
  void write_back() {}

 private:
  const OptionalArg& given_;
  std::string made_;
};

/// A value of any type is lent likewise.
template <>
class Slot<const Variant&> {
 public:
  static constexpr bool by_reference = false;
  static constexpr bool optional_variant = false;

  explicit Slot(const OptionalArg& given) : given_(given) {}
  const Variant& value() const { return *given_; }
  void write_back() {}

 private:
  const OptionalArg& given_;
};

/// Writes by-reference arguments back however the call ends: a failure keeps what was changed.
template <class Slots>
struct WriteBack {
  Slots& slots;
  ~WriteBack() {
    std::apply([](auto&... slot) { (slot.write_back(), ...); }, slots);
  }
};

template <class Declared>
Slot<Declared> slot(Arguments args, std::size_t index) {
  try {
    return Slot<Declared>(args[index]);
  } catch (const Error& error) {
    throw BadArgument{index, error};
  }
}

template <auto Function, class C, class R, class... A, std::size_t... I>
Variant invoke(Object& object, [[maybe_unused]] Arguments args, std::tuple<A...>*,
               std::index_sequence<I...>) {
  C& target = static_cast<C&>(object);
  std::tuple<Slot<A>...> slots{slot<A>(args, I)...};
  const WriteBack<decltype(slots)> after{slots};
  if constexpr (std::is_void_v<R>) {
    std::invoke(Function, target, std::get<I>(slots).value()...);
    return {};
  } else {
    return as_variant(std::invoke(Function, target, std::get<I>(slots).value()...));
  }
}

template <class... A>
std::vector<ParameterInfo> parameters(std::initializer_list<Arg> names, std::tuple<A...>*) {
  std::vector<ParameterInfo> result;
  const auto describe = [&]<class Declared>(const Arg& arg, std::type_identity<Declared>) {
    using Plain = std::remove_cvref_t<Declared>;
    ParameterInfo info;
    info.name = arg.name;
    info.kind = kind_of<Plain>();
    info.class_name = class_name_of<Plain>();
    info.by_reference = Slot<Declared>::by_reference || arg.by_reference;
    info.optional = Slot<Declared>::optional_variant || arg.default_value.has_value();
    if (arg.default_value) info.default_value = *arg.default_value;
    result.push_back(std::move(info));
  };
  const Arg* next = names.begin();
  (describe(*next++, std::type_identity<A>{}), ...);
  return result;
}

}  // namespace detail

/// A method from a member function, or from a function or lambda that takes the object first. One
/// name for each argument.
template <auto Function>
MemberInfo method(std::string_view name, std::string_view help,
                  std::initializer_list<Arg> arguments = {}) {
  using Sig = detail::Signature<std::remove_const_t<decltype(Function)>>;
  using Args = typename Sig::Arguments;
  using Result = std::remove_cvref_t<typename Sig::Result>;
  constexpr std::size_t kCount = std::tuple_size_v<Args>;
  if (arguments.size() != kCount) {
    throw std::logic_error("the type library names the arguments of " + std::string(name) +
                           " in the wrong number");
  }

  MemberInfo member;
  member.name = name;
  member.help = help;
  if constexpr (kCount > 0) {
    member.parameters = detail::parameters(arguments, static_cast<Args*>(nullptr));
  }
  member.result = detail::kind_of<Result>();
  member.result_class = detail::class_name_of<Result>();
  member.invoke = [](Object& object, Arguments args) {
    return detail::invoke<Function, typename Sig::Class, typename Sig::Result>(
        object, args, static_cast<Args*>(nullptr), std::make_index_sequence<kCount>{});
  };
  return member;
}

/// A property that is read only.
template <class C, class R>
MemberInfo property(std::string_view name, std::string_view help, R (C::*get)() const) {
  MemberInfo member;
  member.name = name;
  member.kind = MemberKind::Property;
  member.help = help;
  member.result = detail::kind_of<std::remove_cvref_t<R>>();
  member.result_class = detail::class_name_of<std::remove_cvref_t<R>>();
  member.invoke = [get](Object& object, Arguments) {
    return detail::as_variant((static_cast<const C&>(object).*get)());
  };
  return member;
}

/// A property that is read and written.
template <class C, class R, class W>
MemberInfo property(std::string_view name, std::string_view help, R (C::*get)() const,
                    void (C::*set)(W)) {
  using Held = std::conditional_t<std::same_as<std::remove_cvref_t<W>, std::string_view>,
                                  std::string, std::remove_cvref_t<W>>;
  MemberInfo member = property(name, help, get);
  member.writable = true;
  member.assign = [set](Object& object, Arguments, const Variant& value) {
    (static_cast<C&>(object).*set)(detail::converted<Held>(value));
  };
  return member;
}

/// A plain public field, read and written.
template <class C, class T>
MemberInfo field(std::string_view name, std::string_view help, T C::*held) {
  MemberInfo member;
  member.name = name;
  member.kind = MemberKind::Property;
  member.help = help;
  member.result = detail::kind_of<T>();
  member.writable = true;
  member.invoke = [held](Object& object, Arguments) {
    return detail::as_variant(static_cast<C&>(object).*held);
  };
  member.assign = [held](Object& object, Arguments, const Variant& value) {
    static_cast<C&>(object).*held = detail::converted<T>(value);
  };
  return member;
}

/// A property answered by a function of the object (and its index arguments); read only.
template <auto Get>
MemberInfo computed(std::string_view name, std::string_view help,
                    std::initializer_list<Arg> index = {}) {
  MemberInfo member = method<Get>(name, help, index);
  member.kind = MemberKind::Property;
  return member;
}

/// Makes a property writable by a function that takes the object, the value and the index.
template <auto Set>
MemberInfo writable(MemberInfo member) {
  using Args = typename detail::Signature<std::remove_const_t<decltype(Set)>>::Arguments;
  member.writable = true;
  member.assign = [](Object& object, Arguments index, const Variant& value) {
    using C = typename detail::Signature<std::remove_const_t<decltype(Set)>>::Class;
    C& target = static_cast<C&>(object);
    if constexpr (std::tuple_size_v<Args> == 1) {
      Set(target, value);
    } else {
      Set(target, value, detail::converted<std::string>(*index[0]));
    }
  };
  return member;
}

/// A property whose answer, an object, stays right for as long as its owner lives, so that callers
/// may keep it instead of asking again.
inline MemberInfo lasting(MemberInfo member) {
  member.is_lasting = true;
  return member;
}

/// The member that answers when the object itself is called.
inline MemberInfo default_member(MemberInfo member) {
  member.is_default = true;
  return member;
}

}  // namespace pelm::automation
