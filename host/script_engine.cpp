// One engine context a thread, one realm a page.
//
// A new realm for each page costs about 0.1 ms (measured: 0.2 ms for a page of one loop, against
// 0.07 ms for the same script run again in an old realm). It is the only way in which nothing that
// a page does to the globals, built-in prototypes included, reaches the next one; freezing the
// built-ins would forbid pages what they may do today.
#include "host/script_engine.h"

#include <js/CompilationAndEvaluation.h>
#include <js/CompileOptions.h>
#include <js/ContextOptions.h>
#include <js/Exception.h>
#include <js/GCAPI.h>
#include <js/Interrupt.h>
#include <js/PropertyAndElement.h>
#include <js/PropertySpec.h>
#include <js/Realm.h>
#include <js/SourceText.h>
#include <js/experimental/JSStencil.h>
#include <jsapi.h>
#include <mozilla/RefPtr.h>

#include <stdexcept>
#include <string>
#include <utility>

#include "host/random_id.h"
#include "host/script_errors.h"
#include "host/script_jobs.h"
#include "host/script_object.h"
#include "host/script_process.h"
#include "host/script_state.h"
#include "host/script_values.h"
#include "host/watchdog.h"
#include "pelm/conversions.h"
#include "platform/page/application.h"
#include "platform/page/request.h"
#include "platform/page/server.h"
#include "platform/page/session.h"

namespace pelm::host {

class CompiledScript {
 public:
  CompiledScript(PageSource page, RefPtr<JS::Stencil> compiled)
      : source(std::move(page)), stencil(std::move(compiled)) {}
  PageSource source;
  RefPtr<JS::Stencil> stencil;
};

namespace {

using Clock = std::chrono::steady_clock;
using script::guarded;
using script::State;
using script::state_of;
using script::Stop;

constexpr std::uint32_t kNurseryBytes = 4U << 20U;
constexpr std::uint32_t kCollectAtMegabytes = 1;
constexpr std::size_t kStackBytes = std::size_t{1} << 20U;

struct EndContext {
  void operator()(JSContext* cx) const { JS_DestroyContext(cx); }
};

constexpr JSClass kGlobalClass = {
    "Page", JSCLASS_GLOBAL_FLAGS, &JS::DefaultGlobalClassOps, nullptr, nullptr, nullptr};

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
    const Variant value = script::from_script(cx, args.get(0));
    if (!value.is_null()) state_of(cx).response->Write(to_text(value));
    args.rval().setUndefined();
  });
}

/// `crypto.randomUUID()`, as browsers have it: what a form's secret or a policy's nonce is made of.
bool random_uuid_call(JSContext* cx, unsigned argc, JS::Value* vp) {
  const JS::CallArgs args = JS::CallArgsFromVp(argc, vp);
  return guarded(cx, [&] { script::to_script(cx, Variant(random_uuid()), args.rval()); });
}

/// Bytes of the context's heap, those outside its cells included; nothing when there is no memory
/// left to find out.
std::optional<double> bytes_in_use(JSContext* cx) {
  const JS::RootedObject info(cx, js::gc::NewMemoryInfoObject(cx));
  JS::RootedValue cells(cx);
  JS::RootedValue outside(cx);
  if (!info || !JS_GetProperty(cx, info, "gcBytes", &cells) ||
      !JS_GetProperty(cx, info, "mallocBytes", &outside)) {
    JS_ClearPendingException(cx);
    return std::nullopt;
  }
  return cells.toNumber() + outside.toNumber();
}

}  // namespace

namespace script {

State& state_of(JSContext* cx) { return *static_cast<State*>(JS_GetContextPrivate(cx)); }

}  // namespace script

struct ScriptEngine::Part : State {
  Part(const PageHooks& given_hooks, ScriptLimits given_limits, Watchdog& given_watchdog)
      : limits(given_limits), watchdog(given_watchdog) {
    hooks = &given_hooks;
  }
  Part(const Part&) = delete;
  Part& operator=(const Part&) = delete;
  ~Part();

  ScriptLimits limits;
  Watchdog& watchdog;
  std::optional<script::ObjectTable> table;
  std::unique_ptr<JSContext, EndContext> context;
  std::optional<script::Jobs> jobs;
  std::optional<JS::PersistentRootedObject> home;  // compiles; the pages' realms live beside it
  const page::Server* server = nullptr;
  Clock::time_point started;
  SourcePlace stopped_at;

  JSContext* cx() const { return context.get(); }
  std::chrono::milliseconds time_limit() const;
  bool may_go_on();
  bool stop_script(Stop why);
  JSObject* new_global();
  void define_globals(JS::HandleObject global, const page::ScriptingContext& page_context);
  bool execute(const CompiledScript& script, JS::HandleObject global,
               const page::ScriptingContext& page_context);
  std::optional<PageFailure> outcome(bool completed);
  PageFailure limit_failure() const;
};

/// What is rooted in the context goes before it; the table of wrappers after it, for the engine
/// collects the last of them.
ScriptEngine::Part::~Part() {
  home.reset();
  jobs.reset();
  if (table) table->leave_engine();
  context.reset();
}

std::chrono::milliseconds ScriptEngine::Part::time_limit() const {
  const std::int32_t seconds = server ? server->ScriptTimeout() : 0;
  return seconds > 0 ? std::chrono::seconds(seconds) : limits.time;
}

bool ScriptEngine::Part::stop_script(Stop why) {
  stop = why;
  unsigned line = 0;
  if (JS::DescribeScriptedCaller(cx(), nullptr, &line, nullptr)) {
    stopped_at = source->place_of(static_cast<int>(line));
  }
  return false;
}

/// The engine's own limit counts cells only and lets texts and arrays grow, so memory is looked at
/// here too; what could be collected does not count.
bool ScriptEngine::Part::may_go_on() {
  if (!source) return true;
  if (Clock::now() - started > time_limit()) return stop_script(Stop::TimeLimit);
  const auto limit = static_cast<double>(limits.heap_bytes);
  if (bytes_in_use(cx()).value_or(limit + 1) <= limit) return true;
  JS_GC(cx());
  if (bytes_in_use(cx()).value_or(limit + 1) <= limit) return true;
  return stop_script(Stop::MemoryLimit);
}

JSObject* ScriptEngine::Part::new_global() {
  JS::RealmOptions options;
  if (home) options.creationOptions().setExistingCompartment(*home);
  return JS_NewGlobalObject(cx(), &kGlobalClass, nullptr, JS::FireOnNewGlobalHook, options);
}

void ScriptEngine::Part::define_globals(JS::HandleObject global,
                                        const page::ScriptingContext& page_context) {
  const auto require = [](bool done) {
    if (!done) throw script::Failed();
  };
  constexpr unsigned kHidden = JSPROP_READONLY | JSPROP_PERMANENT;
  require(JS_DefineFunction(cx(), global, kWriteHtml.data(), write_html, 1, kHidden));
  require(JS_DefineFunction(cx(), global, kWriteValue.data(), write_value, 1, kHidden));
  const std::pair<const char*, ObjectRef> page_objects[] = {
      {"Application", page_context.Application}, {"Session", page_context.Session},
      {"Request", page_context.Request},         {"Response", page_context.Response},
      {"Server", page_context.Server},
  };
  JS::RootedValue value(cx());
  for (const auto& [name, object] : page_objects) {
    script::to_script(cx(), object, &value);
    require(JS_DefineProperty(cx(), global, name, value, JSPROP_ENUMERATE));
  }
  const JS::RootedObject crypto(cx(), JS_NewPlainObject(cx()));
  require(crypto && JS_DefineFunction(cx(), crypto, "randomUUID", random_uuid_call, 0, 0));
  require(JS_DefineProperty(cx(), global, "crypto", crypto, 0));
}

bool ScriptEngine::Part::execute(const CompiledScript& script, JS::HandleObject global,
                                 const page::ScriptingContext& page_context) {
  if (!guarded(cx(), [&] { define_globals(global, page_context); })) return false;
  const JS::InstantiateOptions options;
  const JS::RootedScript instance(cx(),
                                  JS::InstantiateGlobalStencil(cx(), options, script.stencil));
  return instance && JS_ExecuteScript(cx(), instance) && jobs->run_all(cx());
}

PageFailure ScriptEngine::Part::limit_failure() const {
  if (stop == Stop::TimeLimit) {
    const auto seconds = std::chrono::duration<double>(time_limit()).count();
    return {kScriptTimedOut, kScriptSource,
            "A página passou do limite de " + to_text(seconds) + " s.", stopped_at};
  }
  return {error_number::kOutOfMemory, kScriptSource,
          "A página passou do limite de " + std::to_string(limits.heap_bytes >> 20U) +
              " MB de memória.",
          stopped_at};
}

std::optional<PageFailure> ScriptEngine::Part::outcome(bool completed) {
  if (stop == Stop::PageEnded) return std::nullopt;
  if (stop != Stop::None) return limit_failure();
  return completed ? jobs->unhandled_rejection(cx()) : script::take_failure(cx());
}

ScriptEngine::ScriptEngine(const PageHooks& hooks, ScriptLimits limits, Watchdog& watchdog)
    : part_(std::make_unique<Part>(hooks, limits, watchdog)) {
  const auto heap = static_cast<std::uint32_t>(limits.heap_bytes);
  part_->context.reset(script::new_context(heap));
  JSContext* cx = part_->cx();
  JS_SetContextPrivate(cx, static_cast<State*>(part_.get()));
  JS_SetGCParameter(cx, JSGC_MAX_BYTES, heap);
  JS_SetGCParameter(cx, JSGC_MAX_NURSERY_BYTES, kNurseryBytes);
  // The engine's own thresholds suit browsers; here many small heaps stand side by side, and what a
  // page leaves is cheapest to collect while it is in the processor's caches.
  JS_SetGCParameter(cx, JSGC_ALLOCATION_THRESHOLD, kCollectAtMegabytes);
  JS_SetGCParameter(cx, JSGC_MALLOC_THRESHOLD_BASE, kCollectAtMegabytes);
  // A heap that is full collects at once, not only if the last time was a minute ago.
  JS_SetGCParameter(cx, JSGC_MIN_LAST_DITCH_GC_PERIOD, 0);
  JS_SetNativeStackQuota(cx, kStackBytes);
  JS::ContextOptionsRef(cx).setWasm(false).setAsmJS(false);
  part_->table.emplace(cx);
  part_->objects = &*part_->table;
  part_->jobs.emplace(cx);
  const bool interruptible = JS_AddInterruptCallback(
      cx, [](JSContext* running) { return static_cast<Part&>(state_of(running)).may_go_on(); });
  part_->home.emplace(cx, part_->new_global());
  if (!interruptible || !*part_->home) {
    throw std::runtime_error("a context of the script engine could not be made");
  }
}

ScriptEngine::~ScriptEngine() = default;

std::shared_ptr<const CompiledScript> ScriptEngine::compile(PageSource source) {
  JSContext* cx = part_->cx();
  const JSAutoRealm realm(cx, *part_->home);
  JS::CompileOptions options(cx);
  options.setFileAndLine(source.files.front().c_str(), 1).setNoScriptRval(true);
  JS::SourceText<mozilla::Utf8Unit> text;
  RefPtr<JS::Stencil> stencil;
  if (text.init(cx, source.script.data(), source.script.size(), JS::SourceOwnership::Borrowed)) {
    stencil = JS::CompileGlobalScriptToStencil(cx, options, text);
  }
  if (!stencil) {
    part_->source = &source;
    const PageFailure failure = script::take_failure(cx);
    part_->source = nullptr;
    throw PageSyntaxError(failure.place, failure.description);
  }
  return std::make_shared<CompiledScript>(std::move(source), std::move(stencil));
}

std::optional<PageFailure> ScriptEngine::run(const CompiledScript& script,
                                             const page::ScriptingContext& context) {
  Part& part = *part_;
  part.source = &script.source;
  part.response = context.Response.get();
  part.server = context.Server.get();
  part.stop = Stop::None;
  part.stopped_at = {script.source.files.front(), 1};
  part.started = Clock::now();

  std::optional<PageFailure> failure;
  {
    const Watchdog::Watching watching(part.watchdog, part.cx());
    const JSAutoRealm home(part.cx(), *part.home);
    const JS::RootedObject global(part.cx(), part.new_global());
    if (global) {
      const JSAutoRealm realm(part.cx(), global);
      failure = part.outcome(part.execute(script, global, context));
    } else {
      failure = part.outcome(false);
    }
  }
  JS_ClearPendingException(part.cx());
  part.source = nullptr;
  part.response = nullptr;
  part.server = nullptr;
  part.jobs->clear();
  part.table->release_all();
  if (part.stop == Stop::MemoryLimit) {
    JS::PrepareForFullGC(part.cx());
    JS::NonIncrementalGC(part.cx(), JS::GCOptions::Shrink, JS::GCReason::API);
  } else {
    JS_MaybeGC(part.cx());
  }
  return failure;
}

}  // namespace pelm::host
