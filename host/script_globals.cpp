// One table of the page objects, so that what is given is what is taken.
#include "host/script_globals.h"

#include <js/CallArgs.h>
#include <js/GlobalObject.h>
#include <js/PropertyAndElement.h>
#include <js/PropertyDescriptor.h>
#include <js/Realm.h>
#include <js/RealmOptions.h>
#include <jsapi.h>

#include <cstddef>
#include <utility>

#include "host/page_source.h"
#include "host/random_id.h"
#include "host/script_errors.h"
#include "host/script_state.h"
#include "host/script_values.h"
#include "pelm/conversions.h"
#include "platform/page/application.h"
#include "platform/page/request.h"
#include "platform/page/server.h"
#include "platform/page/session.h"

namespace pelm::host::script {
namespace {

constexpr JSClass kGlobalClass = {
    "Page", JSCLASS_GLOBAL_FLAGS, &JS::DefaultGlobalClassOps, nullptr, nullptr, nullptr};

struct PageObject {
  const char* name;
  ObjectRef (*of)(const page::ScriptingContext&);
};

constexpr PageObject kPageObjects[] = {
    {"Application", [](const page::ScriptingContext& c) -> ObjectRef { return c.Application; }},
    {"Session", [](const page::ScriptingContext& c) -> ObjectRef { return c.Session; }},
    {"Request", [](const page::ScriptingContext& c) -> ObjectRef { return c.Request; }},
    {"Response", [](const page::ScriptingContext& c) -> ObjectRef { return c.Response; }},
    {"Server", [](const page::ScriptingContext& c) -> ObjectRef { return c.Server; }},
};

/// `kWriteHtml`: a text of the page, as it stands.
bool write_html(JSContext* cx, unsigned argc, JS::Value* vp) {
  const JS::CallArgs args = JS::CallArgsFromVp(argc, vp);
  return guarded(cx, [&] {
    const State& state = state_of(cx);
    const auto index = static_cast<std::size_t>(args.get(0).isInt32() ? args[0].toInt32() : -1);
    if (index < state.source->html.size()) state.response->Write(state.source->html[index]);
    args.rval().setUndefined();
  });
}

/// `kWriteValue`: as Response.Write, nothing for null and for what is not there.
bool write_value(JSContext* cx, unsigned argc, JS::Value* vp) {
  const JS::CallArgs args = JS::CallArgsFromVp(argc, vp);
  return guarded(cx, [&] {
    const Variant value = from_script(cx, args.get(0));
    page::Response& response = *state_of(cx).response;
    if (value.is_text()) {
      response.Write(value.text());
    } else if (!value.is_null()) {
      response.Write(to_text(value));
    }
    args.rval().setUndefined();
  });
}

/// `crypto.randomUUID()`, as browsers have it: what a form's secret or a policy's nonce is made of.
bool random_uuid_call(JSContext* cx, unsigned argc, JS::Value* vp) {
  const JS::CallArgs args = JS::CallArgsFromVp(argc, vp);
  return guarded(cx, [&] { to_script(cx, Variant(random_uuid()), args.rval()); });
}

void define_page_object(JSContext* cx, JS::HandleObject globals, const char* name,
                        JS::HandleValue value) {
  require(JS_DefineProperty(cx, globals, name, value, JSPROP_ENUMERATE));
}

}  // namespace

JSObject* new_globals(JSContext* cx, JS::HandleObject beside) {
  JS::RealmOptions options;
  // Collections are frequent here, and each would otherwise throw away what was compiled.
  options.creationOptions().setPreserveJitCode(true);
  if (beside) options.creationOptions().setExistingCompartment(beside);
  const JS::RootedObject globals(cx, require(JS_NewGlobalObject(cx, &kGlobalClass, nullptr,
                                                                JS::FireOnNewGlobalHook, options)));
  const JSAutoRealm realm(cx, globals);
  constexpr unsigned kHidden = JSPROP_READONLY | JSPROP_PERMANENT;
  require(JS_DefineFunction(cx, globals, kWriteHtml.data(), write_html, 1, kHidden));
  require(JS_DefineFunction(cx, globals, kWriteValue.data(), write_value, 1, kHidden));
  take_page_objects(cx, globals);
  const JS::RootedObject crypto(cx, require(JS_NewPlainObject(cx)));
  require(JS_DefineFunction(cx, crypto, "randomUUID", random_uuid_call, 0, 0));
  require(JS_DefineProperty(cx, globals, "crypto", crypto, 0));
  return globals;
}

void give_page_objects(JSContext* cx, JS::HandleObject globals,
                       const page::ScriptingContext& context) {
  JS::RootedValue value(cx);
  for (const PageObject& object : kPageObjects) {
    to_script(cx, object.of(context), &value);
    define_page_object(cx, globals, object.name, value);
  }
}

void take_page_objects(JSContext* cx, JS::HandleObject globals) {
  for (const PageObject& object : kPageObjects) {
    define_page_object(cx, globals, object.name, JS::UndefinedHandleValue);
  }
}

}  // namespace pelm::host::script
