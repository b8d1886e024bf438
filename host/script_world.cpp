// The functions of pages are kept by the script they came from, and go when that does.
#include "host/script_world.h"

#include <js/Exception.h>
#include <js/Realm.h>
#include <js/RegExp.h>
#include <js/RegExpFlags.h>
#include <jsapi.h>

#include <cstddef>

#include "host/script_errors.h"
#include "host/script_globals.h"

namespace pelm::host::script {

World::World(JSContext* cx, JS::HandleObject beside)
    : globals_(cx, new_globals(cx, beside)), matches_nothing_(cx) {
  const JSAutoRealm realm(cx, globals_);
  image_ = std::make_unique<Image>(cx);
  matches_nothing_ = require(JS::NewRegExpObject(cx, "", 0, JS::RegExpFlag::NoFlags));
}

JSObject* World::function_of(JSContext* cx, const CompiledScript& script) {
  if (const auto known = functions_.find(script.weak_from_this()); known != functions_.end()) {
    return known->second;
  }
  JSObject* const made = script.function(cx);
  if (made == nullptr) return nullptr;
  const JS::RootedObject function(cx, made);
  std::erase_if(functions_, [](const auto& entry) { return entry.first.expired(); });
  functions_.try_emplace(script.weak_from_this(), cx, function);
  return function;
}

/// What `RegExp.$1` and its like say is no property. Clearing it by the engine's own call makes the
/// next look at it crash (102.15), so something is matched instead.
bool World::forget_matches(JSContext* cx) {
  std::size_t at = 0;
  JS::RootedValue matched(cx);
  return JS::ExecuteRegExp(cx, globals_, matches_nothing_, u"", 0, &at, true, &matched);
}

bool World::left_as_found(JSContext* cx) {
  const JSAutoRealm realm(cx, globals_);
  const bool taken = guarded(cx, [&] { take_page_objects(cx, globals_); }) && forget_matches(cx);
  JS_ClearPendingException(cx);
  return taken && image_->holds(cx);
}

}  // namespace pelm::host::script
