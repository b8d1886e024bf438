// Objects are found as a script finds them, by their properties and prototypes, and compared by the
// engine's own record of them: it keeps the same shape as long as nothing but values changes, for
// its compiled code relies on that.
#include "host/script_image.h"

#include <js/Array.h>
#include <js/Class.h>
#include <js/CompilationAndEvaluation.h>
#include <js/CompileOptions.h>
#include <js/GCAPI.h>
#include <js/Id.h>
#include <js/Object.h>
#include <js/PropertyAndElement.h>
#include <js/PropertyDescriptor.h>
#include <js/Proxy.h>
#include <js/Realm.h>
#include <js/SourceText.h>
#include <js/shadow/Object.h>
#include <jsapi.h>
#include <jsfriendapi.h>
#include <mozilla/Utf8.h>

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <unordered_set>

#include "host/script_state.h"

namespace pelm::host::script {
namespace {

/// Objects that no property leads to: prototypes of what the language makes by itself.
constexpr std::string_view kHidden = R"((() => {
  const made = [
    [].values(), ""[Symbol.iterator](), new Map().values(), new Set().values(), "".matchAll(/(?:)/g),
    function* () {}, async function () {}, async function* () {},
  ].map((one) => Object.getPrototypeOf(one));
  const forbidden = (function () { "use strict"; return arguments; })();
  return [...made, Object.getOwnPropertyDescriptor(forbidden, "callee").get];
})())";

const JS::shadow::Object& record_of(JSObject* object) {
  return *reinterpret_cast<const JS::shadow::Object*>(object);
}

/// Every object of the realm that scripts can reach, each once.
class Search {
 public:
  explicit Search(JSContext* cx) : cx_(cx), found_(cx) {
    const JS::RootedObject global(cx, JS::CurrentGlobalOrNull(cx));
    add(global);
    add_hidden();
  }

  /// The next one whose own properties were not yet followed; null when there is none.
  JSObject* next() { return next_ < found_.length() ? found_[next_++].get() : nullptr; }

  void add(JSObject* object) {
    if (object != nullptr && seen_.insert(object).second) require(found_.append(object));
  }
  void add(const JS::Value& value) {
    if (value.isObject()) add(&value.toObject());
  }

 private:
  void add_hidden() {
    JS::CompileOptions options(cx_);
    options.setFileAndLine("hidden", 1);
    JS::SourceText<mozilla::Utf8Unit> text;
    JS::RootedValue list(cx_);
    require(text.init(cx_, kHidden.data(), kHidden.size(), JS::SourceOwnership::Borrowed) &&
            JS::Evaluate(cx_, options, text, &list));
    const JS::RootedObject array(cx_, &list.toObject());
    std::uint32_t length = 0;
    require(JS::GetArrayLength(cx_, array, &length));
    JS::RootedValue hidden(cx_);
    for (std::uint32_t i = 0; i < length; ++i) {
      require(JS_GetElement(cx_, array, i, &hidden));
      add(hidden);
    }
  }

  JSContext* cx_;
  JS::RootedObjectVector found_;
  std::unordered_set<JSObject*> seen_;
  std::size_t next_ = 0;
};

/// Adds what its properties and its prototype lead to; gives the number of its properties.
std::size_t follow(JSContext* cx, JS::HandleObject object, Search& search) {
  JS::RootedObject prototype(cx);
  require(JS_GetPrototype(cx, object, &prototype));
  search.add(prototype);
  JS::RootedIdVector names(cx);
  require(js::GetPropertyKeys(cx, object, JSITER_OWNONLY | JSITER_HIDDEN | JSITER_SYMBOLS, &names));
  JS::Rooted<mozilla::Maybe<JS::PropertyDescriptor>> property(cx);
  JS::RootedId name(cx);
  for (std::size_t i = 0; i < names.length(); ++i) {
    name = names[i];
    require(JS_GetOwnPropertyDescriptorById(cx, object, name, &property));
    if (property->hasValue()) search.add(property->value());
    if (property->hasGetter()) search.add(property->getter());
    if (property->hasSetter()) search.add(property->setter());
  }
  return names.length();
}

}  // namespace

Image::Image(JSContext* cx) : objects_(cx) {
  // Nothing may move while it is looked at.
  const JS::AutoDisableGenerationalGC all_stays(cx);
  require(JS::InitRealmStandardClasses(cx));
  Search search(cx);
  JS::RootedObject object(cx);
  std::vector<std::size_t> properties;
  while ((object = search.next())) {
    if (js::IsProxy(object)) throw std::logic_error("an object of the engine that has no record");
    properties.push_back(follow(cx, object, search));
    // The engine marks what is first used as a prototype, which is no alteration.
    require(JS_NewObjectWithGivenProto(cx, nullptr, object));
    require(objects_.append(object));
  }
  // Not before all were followed: asking a function for its properties makes some of them.
  for (std::size_t i = 0; i < properties.size(); ++i) {
    object = objects_[i];
    keep(cx, object, properties[i]);
  }
}

void Image::keep(JSContext* cx, JS::HandleObject object, std::size_t properties) {
  bool array = false;
  require(JS::IsArrayObject(cx, object, &array));
  const JS::shadow::Object& record = record_of(object);
  // The slots before these are the engine's own; an array's length has none.
  const std::size_t first = JSCLASS_RESERVED_SLOTS(JS::GetClass(object));
  const std::size_t end = first + properties - (array ? 1 : 0);
  const std::size_t fixed = record.numFixedSlots();
  const auto small = [](std::size_t n) { return static_cast<std::uint16_t>(n); };
  const std::size_t within = std::min(end, fixed) - std::min(first, fixed);
  kept_.push_back({.shape = record.shape,
                   .elements = record._1,
                   .first_within = small(first),
                   .within = small(within),
                   .first_beside = small(std::max(first, fixed) - fixed),
                   .beside = small(end - first - within),
                   .array = array});
  for (std::size_t slot = first; slot < end; ++slot) {
    values_.push_back(record.slotRef(slot).asRawBits());
  }
}

bool Image::holds(JSContext* cx) const {
  const std::uint64_t* value = values_.data();
  const auto same = [&value](const JS::Value* slot, std::uint16_t count) {
    for (const JS::Value* const end = slot + count; slot != end; ++slot) {
      if (slot->asRawBits() != *value++) return false;
    }
    return true;
  };
  JS::RootedObject array(cx);
  for (std::size_t i = 0; i < kept_.size(); ++i) {
    const Kept& kept = kept_[i];
    const JS::shadow::Object& record = record_of(objects_[i]);
    if (record.shape != kept.shape || record._1 != kept.elements) return false;
    if (!same(record.fixedSlots() + kept.first_within, kept.within)) return false;
    if (kept.beside != 0 && !same(record.slots + kept.first_beside, kept.beside)) return false;
    if (!kept.array) continue;
    std::uint32_t length = 0;
    array = objects_[i];
    if (!JS::GetArrayLength(cx, array, &length) || length != 0) return false;
  }
  return true;
}

}  // namespace pelm::host::script
