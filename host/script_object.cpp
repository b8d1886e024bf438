// The proxy behind a wrapper, and the table that ends its reference when the page ends.
//
// This file alone is compiled without run-time type information: the engine's proxy handler, from
// which ours derives, is built so.
#include "host/script_object.h"

#include <js/CallArgs.h>
#include <js/Class.h>
#include <js/Conversions.h>
#include <js/GCHashTable.h>
#include <js/GCVector.h>
#include <js/MemoryFunctions.h>
#include <js/PropertyAndElement.h>
#include <js/PropertyDescriptor.h>
#include <js/Proxy.h>
#include <js/String.h>
#include <js/SweepingAPI.h>
#include <js/Symbol.h>
#include <jsapi.h>
#include <jsfriendapi.h>

#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "automation/dispatch.h"
#include "host/script_call.h"
#include "host/script_errors.h"
#include "host/script_state.h"
#include "host/script_values.h"
#include "pelm/conversions.h"
#include "pelm/error.h"

namespace pelm::host::script {
namespace {

using automation::ClassInfo;
using automation::MemberInfo;

std::string name_of(JSContext* cx, JS::HandleId id) {
  JS::RootedValue value(cx);
  require(JS_IdToValue(cx, id, &value));
  JSString* const text = JS::ToString(cx, value);
  require(text != nullptr);
  const JS::RootedString name(cx, text);
  return from_script_text(cx, name);
}

/// Members by the engine's own names, which it is told to keep: the same name is the same address
/// ever after, and its text is read once.
class MemberNames {
 public:
  /// Null when the class has no such member; never one for a symbol.
  const MemberInfo* find(JSContext* cx, const ClassInfo& cls, JS::HandleId id) {
    const Key key{&cls, id.asRawBits()};
    if (const auto found = known_.find(key); found != known_.end()) return found->second;
    if (id.isSymbol()) return nullptr;
    const std::string name = name_of(cx, id);
    const MemberInfo* const member = cls.find(name);
    if (member && known_.size() < kMostSpellings && id.isString()) {
      const JSString* const kept = JS_AtomizeAndPinStringN(cx, name.data(), name.size());
      require(kept != nullptr);
      if (kept == id.toString()) known_.emplace(key, member);
    }
    return member;
  }

 private:
  /// A name can be spelt in a great many ways; a page that tries them must not fill the memory.
  static constexpr std::size_t kMostSpellings = 4096;
  struct Key {
    const ClassInfo* cls;
    std::uintptr_t name;
    bool operator==(const Key&) const = default;
  };
  struct Hash {
    std::size_t operator()(const Key& k) const noexcept {
      return (reinterpret_cast<std::uintptr_t>(k.cls) >> 4U) * 0x9E3779B97F4A7C15U ^ k.name >> 3U;
    }
  };
  std::unordered_map<Key, const MemberInfo*, Hash> known_;
};

/// What a wrapper stands for.
struct NativeRef {
  ObjectRef object;  ///< null once the page has ended
  const ClassInfo* cls;
  ObjectTable::Part* table;
  std::list<NativeRef>::iterator self;
  std::optional<Target> indexed;  ///< what `rs("NOME")` calls, where that stays

  void release() noexcept {
    object.reset();
    indexed.reset();
  }
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
  /// Of pages that have ended: apart, so that the end of a page does not go through them again.
  std::list<NativeRef> ended;
  /// Of wrappers that were collected: an object's end may be long, so it waits until the collection
  /// is over.
  std::list<NativeRef> collected;
  std::optional<JS::WeakCache<WrapperMap>> wrappers;
  MemberNames names;
};

namespace {

NativeRef* ref_of(JSObject* wrapper) {
  return static_cast<NativeRef*>(js::GetProxyPrivate(wrapper).toPrivate());
}

NativeRef& live_ref(JSObject* wrapper) {
  NativeRef* ref = ref_of(wrapper);
  if (!ref->object) raise_error(error_number::kObjectNotSet);
  return *ref;
}

// Of a function made here.
constexpr std::size_t kWrapperSlot = 0;
constexpr std::size_t kMemberSlot = 1;

// Of a wrapper.
constexpr unsigned kLastMethodSlot = 0;
constexpr unsigned kMethodBeforeSlot = 1;
constexpr JSClass kWrapperClass = PROXY_CLASS_DEF("Object", JSCLASS_HAS_RESERVED_SLOTS(2));

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

/// What a method reads as. A wrapper keeps the last two it was asked for: a loop over rows asks for
/// the same ones again and again.
JSObject* function_of(JSContext* cx, JS::HandleObject wrapper, const MemberInfo* member) {
  for (const unsigned slot : {kLastMethodSlot, kMethodBeforeSlot}) {
    const JS::Value& kept = JS::GetReservedSlot(wrapper, slot);
    if (!kept.isObject()) break;
    JSObject* const function = &kept.toObject();
    if (js::GetFunctionNativeReserved(function, kMemberSlot).toPrivate() == member) return function;
  }
  JSObject* const function = new_function(cx, call_member, wrapper, member);
  JS::SetReservedSlot(wrapper, kMethodBeforeSlot, JS::GetReservedSlot(wrapper, kLastMethodSlot));
  JS::SetReservedSlot(wrapper, kLastMethodSlot, JS::ObjectValue(*function));
  return function;
}

void get_member(JSContext* cx, JS::HandleObject wrapper, JS::HandleId id,
                JS::MutableHandleValue result) {
  NativeRef& ref = live_ref(wrapper);
  if (id.isSymbol()) return get_symbol(cx, wrapper, ref, id.toSymbol(), result);
  const MemberInfo* member = ref.table->names.find(cx, *ref.cls, id);
  if (!member) {
    const std::string name = name_of(cx, id);
    if (!get_of_language(cx, wrapper, name, result)) refuse_member(*ref.cls, name);
    return;
  }
  if (reads_as_value(*member)) {
    const ObjectRef object = ref.object;  // the call may end the page's references
    to_script(cx, automation::call(*object, *ref.cls, *member, {}), result);
  } else {
    result.setObject(*function_of(cx, wrapper, member));
  }
}

void set_member(JSContext* cx, JS::HandleObject wrapper, JS::HandleId id, JS::HandleValue value) {
  NativeRef& ref = live_ref(wrapper);
  const MemberInfo* member = ref.table->names.find(cx, *ref.cls, id);
  if (!member || !reads_as_value(*member)) refuse_member(*ref.cls, name_of(cx, id));
  const ObjectRef object = ref.object;
  automation::put(*object, *ref.cls, *member, from_script(cx, value, member->result), {});
}

/// What a call of the wrapper itself calls.
Target target_of_call(JSContext* cx, NativeRef& ref, bool with_arguments) {
  if (ref.indexed && with_arguments) return *ref.indexed;
  Target target = default_target(cx, ref.object, *ref.cls, with_arguments);
  if (with_arguments && ref.cls->default_member()->is_lasting) ref.indexed = target;
  return target;
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
      *found = ref.table->names.find(cx, *ref.cls, id) != nullptr;
    });
  }

  bool call(JSContext* cx, JS::HandleObject proxy, const JS::CallArgs& args) const override {
    return guarded(
        cx, [&] { invoke(cx, target_of_call(cx, live_ref(proxy), args.length() > 0), args); });
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
    ObjectTable::Part& table = *ref->table;
    auto& from = ref->object ? table.live : table.ended;
    table.collected.splice(table.collected.end(), from, ref->self);
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
  for (NativeRef& ref : part_->live) ref.release();
  part_->ended.splice(part_->ended.end(), part_->live);
  part_->collected.clear();
}

void ObjectTable::leave_engine() noexcept {
  release_all();
  part_->wrappers.reset();
}

JSObject* wrap(JSContext* cx, const ObjectRef& object) {
  ObjectTable::Part& table = state_of(cx).objects->part();
  table.collected.clear();
  if (const auto found = table.wrappers->lookup(address(object))) return found->value();

  const ClassInfo& cls = class_of(cx, *object);
  NativeRef& ref = table.live.emplace_back(NativeRef{object, &cls, &table, {}, {}});
  ref.self = std::prev(table.live.end());
  const JS::RootedValue stands_for(cx, JS::PrivateValue(&ref));
  JSObject* const made =
      js::NewProxyObject(cx, cls.default_member() ? &kCallableHandler : &kPlainHandler, stands_for,
                         nullptr, js::ProxyOptions().setClass(&kWrapperClass));
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
