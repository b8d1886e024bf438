// The proxy behind a wrapper, and the table that ends its reference when the page ends.
//
// This file alone is compiled without run-time type information: the engine's proxy handler, from
// which ours derives, is built so.
#include "host/script_object.h"

#include <js/CallAndConstruct.h>
#include <js/CallArgs.h>
#include <js/Class.h>
#include <js/Conversions.h>
#include <js/GCHashTable.h>
#include <js/GCVector.h>
#include <js/MemoryFunctions.h>
#include <js/Object.h>
#include <js/PropertyAndElement.h>
#include <js/PropertyDescriptor.h>
#include <js/Proxy.h>
#include <js/String.h>
#include <js/SweepingAPI.h>
#include <js/Symbol.h>
#include <js/ValueArray.h>
#include <jsapi.h>
#include <jsfriendapi.h>

#include <cstdint>
#include <functional>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "automation/dispatch.h"
#include "host/script_errors.h"
#include "host/script_state.h"
#include "host/script_values.h"
#include "pelm/conversions.h"
#include "pelm/error.h"

namespace pelm::host::script {
namespace {

using automation::ClassInfo;
using automation::MemberInfo;
using automation::MemberKind;
using automation::ValueKind;

/// Members by the spelling that pages use; the tables are searched once for each.
class MemberNames {
 public:
  const MemberInfo* find(const ClassInfo& cls, std::string_view name) {
    auto& known = by_class_[&cls];
    if (const auto found = known.find(name); found != known.end()) return found->second;
    const MemberInfo* member = cls.find(name);
    if (member && known.size() < kMostSpellings) known.emplace(name, member);
    return member;
  }

 private:
  /// A name can be spelt in a great many ways; a page that tries them must not fill the memory.
  static constexpr std::size_t kMostSpellings = 4096;
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };
  std::unordered_map<const ClassInfo*,
                     std::unordered_map<std::string, const MemberInfo*, Hash, std::equal_to<>>>
      by_class_;
};

/// What a wrapper stands for.
struct NativeRef {
  ObjectRef object;  ///< null once the page has ended
  const ClassInfo* cls;
  ObjectTable::Part* table;
  std::list<NativeRef>::iterator self;
};

/// What a wrapped object is taken to weigh, so that a loop over many of them, whose wrappers are
/// small, makes the engine collect: a record set holds its rows.
constexpr std::size_t kObjectBytes = 2048;
constexpr auto kObjectUse = JS::MemoryUse::Embedding1;

/// By the object's address: the engine's tables ask their keys to be no foreign pointers.
using Address = std::uintptr_t;
Address address(const ObjectRef& object) { return reinterpret_cast<Address>(object.get()); }

using WrapperMap =
    JS::GCHashMap<Address, JS::Heap<JSObject*>, js::DefaultHasher<Address>, js::SystemAllocPolicy>;

}  // namespace

struct ObjectTable::Part {
  explicit Part(JSContext* cx) : wrappers(std::in_place, JS_GetRuntime(cx)) {}

  std::list<NativeRef> live;
  /// Of wrappers that were collected: an object's end may be long, so it waits until the collection
  /// is over.
  std::list<NativeRef> collected;
  std::optional<JS::WeakCache<WrapperMap>> wrappers;
  MemberNames names;
};

namespace {

/// A member of an object, ready to be called.
struct Target {
  ObjectRef object;
  const ClassInfo* cls;
  const MemberInfo* member;
};

void require(bool done) {
  if (!done) throw Failed();
}

const ClassInfo& class_of(JSContext* cx, const Object& object) {
  return state_of(cx).hooks->class_of(object);
}

[[noreturn]] void refuse_member(const ClassInfo& cls, std::string_view member) {
  raise_error(error_number::kMemberNotFound, kProjectSource,
              std::string(cls.name) + "." + std::string(member));
}

NativeRef* ref_of(JSObject* wrapper) {
  return static_cast<NativeRef*>(js::GetProxyPrivate(wrapper).toPrivate());
}

NativeRef& live_ref(JSObject* wrapper) {
  NativeRef* ref = ref_of(wrapper);
  if (!ref->object) raise_error(error_number::kObjectNotSet);
  return *ref;
}

bool reads_as_value(const MemberInfo& member) {
  return member.kind == MemberKind::Property && member.parameters.empty();
}

/// The default member, or that of the object it answers with while there are arguments that it
/// does not take itself: rs("NOME") is rs.Fields.Item("NOME").
Target default_target(JSContext* cx, ObjectRef object, bool with_arguments) {
  for (;;) {
    const ClassInfo& cls = class_of(cx, *object);
    const MemberInfo* member = cls.default_member();
    if (!member) refuse_member(cls, "(padrão)");
    if (!with_arguments || !reads_as_value(*member)) return {std::move(object), &cls, member};
    const Variant answer = automation::call(*object, cls, *member, {});
    if (!answer.is_object()) {
      raise_error(error_number::kWrongArgumentCount, kProjectSource,
                  std::string(cls.name) + "." + std::string(member->name));
    }
    if (!answer.object()) raise_error(error_number::kObjectNotSet);
    object = answer.object();
  }
}

/// Arguments of one call, and the script's holders of those that may be changed.
class CallArguments {
 public:
  CallArguments(JSContext* cx, const MemberInfo& member, const JS::CallArgs& args, unsigned count)
      : cx_(cx), member_(member), holders_(cx) {
    values_.reserve(count);
    require(holders_.resize(count));
    JS::RootedValue value(cx);
    for (unsigned i = 0; i < count; ++i) {
      value = args[i];
      take_holder(i, &value);
      if (value.isUndefined()) {
        values_.emplace_back(kAbsent);
      } else {
        values_.emplace_back(from_script(cx, value, kind_of(i)));
      }
    }
  }

  automation::Arguments values() { return values_; }

  /// By-reference arguments go back into `{value: …}`.
  void give_back() {
    JS::RootedValue value(cx_);
    JS::RootedObject holder(cx_);
    for (std::size_t i = 0; i < values_.size() && i < member_.parameters.size(); ++i) {
      if (!holders_[i] || !member_.parameters[i].by_reference || !values_[i]) continue;
      holder = holders_[i];
      to_script(cx_, *values_[i], &value);
      require(JS_SetProperty(cx_, holder, "value", value));
    }
  }

 private:
  ValueKind kind_of(unsigned i) const {
    return i < member_.parameters.size() ? member_.parameters[i].kind : ValueKind::Variant;
  }

  /// A plain object with a property `value` of its own stands for that value.
  void take_holder(unsigned i, JS::MutableHandleValue value) {
    if (!value.isObject()) return;
    const JS::RootedObject object(cx_, &value.toObject());
    js::ESClass kind = js::ESClass::Other;
    if (is_wrapper(object)) return;
    require(JS::GetBuiltinClass(cx_, object, &kind));
    bool has_value = false;
    if (kind == js::ESClass::Object) require(JS_HasOwnProperty(cx_, object, "value", &has_value));
    if (!has_value) return;
    require(JS_GetProperty(cx_, object, "value", value));
    holders_[i].set(object);
  }

  JSContext* cx_;
  const MemberInfo& member_;
  std::vector<OptionalArg> values_;
  JS::RootedObjectVector holders_;
};

void call_and_give_back(JSContext* cx, const Target& target, CallArguments& arguments,
                        JS::MutableHandleValue result) {
  Variant answer;
  try {
    answer = automation::call(*target.object, *target.cls, *target.member, arguments.values());
  } catch (const Error&) {
    arguments.give_back();
    throw;
  }
  arguments.give_back();
  to_script(cx, answer, result);
}

/// `Session.Value("n", v)`: one argument more than the property has assigns it. Where it cannot be
/// assigned, the default member of the object it answers with can: `rs.Fields("NOME", v)`.
/// False when neither can.
bool assign_by_call(JSContext* cx, const Target& target, const JS::CallArgs& args) {
  const MemberInfo& member = *target.member;
  const unsigned index_count = args.length() - 1;
  CallArguments index(cx, member, args, index_count);
  if (member.writable) {
    automation::put(*target.object, *target.cls, member,
                    from_script(cx, args[index_count], member.result), index.values());
    return true;
  }
  if (member.result != ValueKind::Object && member.result != ValueKind::Variant) return false;
  const Variant answer = automation::call(*target.object, *target.cls, member, index.values());
  if (!answer.is_object() || !answer.object()) return false;
  const ClassInfo& cls = class_of(cx, *answer.object());
  const MemberInfo* value = cls.default_member();
  if (!value || !value->writable || !value->parameters.empty()) return false;
  automation::put(*answer.object(), cls, *value, from_script(cx, args[index_count], value->result),
                  {});
  return true;
}

void invoke(JSContext* cx, const Target& target, const JS::CallArgs& args) {
  const MemberInfo& member = *target.member;
  const bool assigns = member.kind == MemberKind::Property && !member.parameters.empty() &&
                       args.length() == member.parameters.size() + 1;
  if (assigns && assign_by_call(cx, target, args)) {
    args.rval().setUndefined();
    return;
  }
  CallArguments arguments(cx, member, args, args.length());
  call_and_give_back(cx, target, arguments, args.rval());
}

constexpr std::size_t kWrapperSlot = 0;
constexpr std::size_t kMemberSlot = 1;

JSObject* callee_wrapper(const JS::CallArgs& args) {
  return &js::GetFunctionNativeReserved(&args.callee(), kWrapperSlot).toObject();
}

/// What `object.Method` reads as.
bool call_member(JSContext* cx, unsigned argc, JS::Value* vp) {
  const JS::CallArgs args = JS::CallArgsFromVp(argc, vp);
  return guarded(cx, [&] {
    const NativeRef& ref = live_ref(callee_wrapper(args));
    const auto* member = static_cast<const MemberInfo*>(
        js::GetFunctionNativeReserved(&args.callee(), kMemberSlot).toPrivate());
    invoke(cx, {ref.object, ref.cls, member}, args);
  });
}

std::string own_name(const ClassInfo& cls) { return "[object " + std::string(cls.name) + "]"; }

/// toString, valueOf and the conversion of `"" + object`.
bool give_primitive(JSContext* cx, unsigned argc, JS::Value* vp) {
  const JS::CallArgs args = JS::CallArgsFromVp(argc, vp);
  return guarded(cx, [&] {
    const NativeRef& ref = live_ref(callee_wrapper(args));
    auto value = default_value(cx, ref.object);
    if (!value) value = Variant(own_name(*ref.cls));
    if (value->type() == Variant::Type::Date) value = Variant(to_text(*value));
    to_script(cx, *value, args.rval());
    if (!args.rval().isObject()) return;
    JSString* const text = JS::ToString(cx, args.rval());
    require(text != nullptr);
    args.rval().setString(text);
  });
}

/// What JSON.stringify writes.
bool give_json(JSContext* cx, unsigned argc, JS::Value* vp) {
  const JS::CallArgs args = JS::CallArgsFromVp(argc, vp);
  return guarded(cx, [&] {
    const NativeRef& ref = live_ref(callee_wrapper(args));
    to_script(cx, default_value(cx, ref.object).value_or(Variant()), args.rval());
  });
}

JSObject* new_function(JSContext* cx, JSNative native, JS::HandleObject wrapper,
                       const MemberInfo* member) {
  JSFunction* const made = js::NewFunctionWithReserved(cx, native, 0, 0, nullptr);
  require(made != nullptr);
  JSObject* const function = JS_GetFunctionObject(made);
  js::SetFunctionNativeReserved(function, kWrapperSlot, JS::ObjectValue(*wrapper));
  js::SetFunctionNativeReserved(function, kMemberSlot,
                                JS::PrivateValue(const_cast<MemberInfo*>(member)));
  return function;
}

/// Names that the language itself asks every object for; true when `name` is one of them.
bool get_of_language(JSContext* cx, JS::HandleObject wrapper, std::string_view name,
                     JS::MutableHandleValue result) {
  if (name == "toString" || name == "valueOf") {
    result.setObject(*new_function(cx, give_primitive, wrapper, nullptr));
  } else if (name == "toJSON") {
    result.setObject(*new_function(cx, give_json, wrapper, nullptr));
  } else if (name == "then" || name == "constructor" || name == "prototype") {
    result.setUndefined();  // an async function's result is asked for `then`
  } else {
    return false;
  }
  return true;
}

void get_symbol(JSContext* cx, JS::HandleObject wrapper, const NativeRef& ref, JS::Symbol* symbol,
                JS::MutableHandleValue result) {
  if (symbol == JS::GetWellKnownSymbol(cx, JS::SymbolCode::toPrimitive)) {
    result.setObject(*new_function(cx, give_primitive, wrapper, nullptr));
  } else if (symbol == JS::GetWellKnownSymbol(cx, JS::SymbolCode::toStringTag)) {
    result.setString(to_script_text(cx, ref.cls->name));
  } else {
    result.setUndefined();
  }
}

std::string name_of(JSContext* cx, JS::HandleId id) {
  JS::RootedValue value(cx);
  require(JS_IdToValue(cx, id, &value));
  JSString* const text = JS::ToString(cx, value);
  require(text != nullptr);
  const JS::RootedString name(cx, text);
  return from_script_text(cx, name);
}

void get_member(JSContext* cx, JS::HandleObject wrapper, JS::HandleId id,
                JS::MutableHandleValue result) {
  NativeRef& ref = live_ref(wrapper);
  if (id.isSymbol()) return get_symbol(cx, wrapper, ref, id.toSymbol(), result);
  const std::string name = name_of(cx, id);
  const MemberInfo* member = ref.table->names.find(*ref.cls, name);
  if (!member) {
    if (!get_of_language(cx, wrapper, name, result)) refuse_member(*ref.cls, name);
    return;
  }
  if (reads_as_value(*member)) {
    const ObjectRef object = ref.object;  // the call may end the page's references
    to_script(cx, automation::call(*object, *ref.cls, *member, {}), result);
  } else {
    result.setObject(*new_function(cx, call_member, wrapper, member));
  }
}

void set_member(JSContext* cx, JS::HandleObject wrapper, JS::HandleId id, JS::HandleValue value) {
  NativeRef& ref = live_ref(wrapper);
  const std::string name = name_of(cx, id);
  const MemberInfo* member = id.isSymbol() ? nullptr : ref.table->names.find(*ref.cls, name);
  if (!member || !reads_as_value(*member)) refuse_member(*ref.cls, name);
  const ObjectRef object = ref.object;
  automation::put(*object, *ref.cls, *member, from_script(cx, value, member->result), {});
}

class WrapperHandler : public js::BaseProxyHandler {
 public:
  explicit constexpr WrapperHandler(bool callable)
      : js::BaseProxyHandler(&kFamily), callable_(callable) {}

  static bool made(JSObject* object) {
    return js::IsProxy(object) && js::GetProxyHandler(object)->family() == &kFamily;
  }

  bool get(JSContext* cx, JS::HandleObject proxy, JS::HandleValue, JS::HandleId id,
           JS::MutableHandleValue result) const override {
    return guarded(cx, [&] { get_member(cx, proxy, id, result); });
  }

  bool set(JSContext* cx, JS::HandleObject proxy, JS::HandleId id, JS::HandleValue value,
           JS::HandleValue, JS::ObjectOpResult& result) const override {
    return guarded(cx, [&] { set_member(cx, proxy, id, value); }) && result.succeed();
  }

  bool has(JSContext* cx, JS::HandleObject proxy, JS::HandleId id, bool* found) const override {
    return guarded(cx, [&] {
      const NativeRef& ref = live_ref(proxy);
      *found = !id.isSymbol() && ref.table->names.find(*ref.cls, name_of(cx, id)) != nullptr;
    });
  }

  bool call(JSContext* cx, JS::HandleObject proxy, const JS::CallArgs& args) const override {
    return guarded(cx, [&] {
      invoke(cx, default_target(cx, live_ref(proxy).object, args.length() > 0), args);
    });
  }

  bool isCallable(JSObject*) const override { return callable_; }

  // Members are the object's own affair: nothing is added to it, nothing taken away.
  bool getOwnPropertyDescriptor(
      JSContext*, JS::HandleObject, JS::HandleId,
      JS::MutableHandle<mozilla::Maybe<JS::PropertyDescriptor>> descriptor) const override {
    descriptor.reset();
    return true;
  }
  bool defineProperty(JSContext* cx, JS::HandleObject proxy, JS::HandleId id,
                      JS::Handle<JS::PropertyDescriptor>, JS::ObjectOpResult&) const override {
    return guarded(cx, [&] { refuse_member(*live_ref(proxy).cls, name_of(cx, id)); });
  }
  bool ownPropertyKeys(JSContext*, JS::HandleObject, JS::MutableHandleIdVector) const override {
    return true;
  }
  bool delete_(JSContext*, JS::HandleObject, JS::HandleId,
               JS::ObjectOpResult& result) const override {
    return result.failCantDelete();
  }
  bool getPrototypeIfOrdinary(JSContext*, JS::HandleObject, bool* is_ordinary,
                              JS::MutableHandleObject prototype) const override {
    *is_ordinary = true;
    prototype.set(nullptr);
    return true;
  }
  bool preventExtensions(JSContext*, JS::HandleObject, JS::ObjectOpResult& result) const override {
    return result.failCantPreventExtensions();
  }
  bool isExtensible(JSContext*, JS::HandleObject, bool* extensible) const override {
    *extensible = true;
    return true;
  }

  /// Objects belong to the thread that made them.
  bool finalizeInBackground(const JS::Value&) const override { return false; }
  void finalize(JS::GCContext*, JSObject* proxy) const override {
    JS::RemoveAssociatedMemory(proxy, kObjectBytes, kObjectUse);
    NativeRef* ref = ref_of(proxy);
    auto& collected = ref->table->collected;
    collected.splice(collected.end(), ref->table->live, ref->self);
  }

 private:
  static constexpr char kFamily = 0;
  bool callable_;
};

constexpr WrapperHandler kPlainHandler{false};
constexpr WrapperHandler kCallableHandler{true};

}  // namespace

ObjectTable::ObjectTable(JSContext* cx) : part_(std::make_unique<Part>(cx)) {}

ObjectTable::~ObjectTable() = default;

void ObjectTable::release_all() noexcept {
  if (part_->wrappers) part_->wrappers->clear();
  for (NativeRef& ref : part_->live) ref.object.reset();
  part_->collected.clear();
}

void ObjectTable::leave_engine() noexcept {
  release_all();
  part_->wrappers.reset();
}

std::size_t ObjectTable::size() const noexcept { return part_->live.size(); }

JSObject* wrap(JSContext* cx, const ObjectRef& object) {
  ObjectTable::Part& table = state_of(cx).objects->part();
  table.collected.clear();
  if (const auto found = table.wrappers->lookup(address(object))) return found->value();

  const ClassInfo& cls = class_of(cx, *object);
  NativeRef& ref = table.live.emplace_back(NativeRef{object, &cls, &table, {}});
  ref.self = std::prev(table.live.end());
  const JS::RootedValue stands_for(cx, JS::PrivateValue(&ref));
  JSObject* const made = js::NewProxyObject(
      cx, cls.default_member() ? &kCallableHandler : &kPlainHandler, stands_for, nullptr);
  if (!made) {
    table.live.pop_back();
    throw Failed();
  }
  JS::AddAssociatedMemory(made, kObjectBytes, kObjectUse);
  const JS::RootedObject wrapper(cx, made);
  if (!table.wrappers->put(address(object), wrapper)) {
    JS_ReportOutOfMemory(cx);
    throw Failed();
  }
  return wrapper;
}

bool is_wrapper(JSObject* object) noexcept { return WrapperHandler::made(object); }

ObjectRef wrapped_object(JSObject* wrapper) { return live_ref(wrapper).object; }

std::optional<Variant> default_value(JSContext* cx, const ObjectRef& object) {
  ObjectRef current = object;
  for (;;) {
    const ClassInfo& cls = class_of(cx, *current);
    const MemberInfo* member = cls.default_member();
    if (!member || !member->readable || !reads_as_value(*member)) return std::nullopt;
    Variant value = automation::call(*current, cls, *member, {});
    if (!value.is_object() || !value.object()) return value;
    current = value.object();
  }
}

}  // namespace pelm::host::script
