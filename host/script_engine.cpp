// One engine context a thread. Pages run in a world that they share as long as each leaves it as it
// found it; a page that does not gets a realm of its own from then on, which costs it some 0.2 ms.
// Either way nothing that a page does to the globals, built-in prototypes included, reaches the
// next one, and nothing that the language allows is forbidden, as freezing them would.
#include "host/script_engine.h"

#include <js/CallAndConstruct.h>
#include <js/ContextOptions.h>
#include <js/Exception.h>
#include <js/GCAPI.h>
#include <js/Interrupt.h>
#include <js/PropertyAndElement.h>
#include <js/Realm.h>
#include <js/ValueArray.h>
#include <jsapi.h>

#include <stdexcept>
#include <string>
#include <utility>

#include "host/compiled_script.h"
#include "host/script_errors.h"
#include "host/script_globals.h"
#include "host/script_jobs.h"
#include "host/script_object.h"
#include "host/script_process.h"
#include "host/script_state.h"
#include "host/script_world.h"
#include "host/watchdog.h"
#include "pelm/conversions.h"
#include "platform/page/server.h"

namespace pelm::host {

namespace {

using Clock = std::chrono::steady_clock;
using script::guarded;
using script::State;
using script::state_of;
using script::Stop;

constexpr std::uint32_t kNurseryBytes = 4U << 20U;
constexpr std::uint32_t kCollectAtMegabytes = 1;
constexpr std::size_t kStackBytes = std::size_t{1} << 20U;
constexpr unsigned kPagesInAWorld = 1000;  // those with globals of their own counted too
/// Of the memory that a page may take.
constexpr std::size_t kWorldsShare = 8;

struct EndContext {
  void operator()(JSContext* cx) const { JS_DestroyContext(cx); }
};

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
  std::optional<script::World> world;              // most pages'; made when one needs it
  std::size_t worlds_made = 0;
  unsigned pages = 0;  // since all was collected
  const page::Server* server = nullptr;
  Clock::time_point started;
  SourcePlace stopped_at;

  JSContext* cx() const { return context.get(); }
  std::chrono::milliseconds time_limit() const;
  bool may_go_on();
  bool stop_script(Stop why);
  JSObject* globals_for(const CompiledScript& script);
  bool execute(const CompiledScript& script, const page::ScriptingContext& page_context);
  bool run_in(JS::HandleObject globals, const CompiledScript& script,
              const page::ScriptingContext& page_context);
  void leave_world(const CompiledScript& script);
  void collect();
  std::optional<PageFailure> outcome(bool completed);
  PageFailure limit_failure() const;
};

/// What is rooted in the context goes before it; the table of wrappers after it, for the engine
/// collects the last of them.
ScriptEngine::Part::~Part() {
  world.reset();
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

JSObject* ScriptEngine::Part::globals_for(const CompiledScript& script) {
  if (script.alters_globals()) return script::new_globals(cx(), *home);
  if (!world) {
    world.emplace(cx(), *home);
    ++worlds_made;
  }
  return world->globals();
}

bool ScriptEngine::Part::run_in(JS::HandleObject globals, const CompiledScript& script,
                                const page::ScriptingContext& page_context) {
  const JSAutoRealm realm(cx(), globals);
  if (!guarded(cx(), [&] { script::give_page_objects(cx(), globals, page_context); })) return false;
  const bool in_world = world && globals == world->globals();
  JS::RootedValue function(cx());
  function.setObjectOrNull(in_world ? world->function_of(cx(), script) : script.function(cx()));
  JS::RootedValue ignored(cx());
  return !function.isNull() &&
         JS::Call(cx(), JS::UndefinedHandleValue, function, JS::HandleValueArray::empty(),
                  &ignored) &&
         jobs->run_all(cx());
}

bool ScriptEngine::Part::execute(const CompiledScript& script,
                                 const page::ScriptingContext& page_context) {
  JS::RootedObject globals(cx());
  return guarded(cx(), [&] { globals = globals_for(script); }) &&
         run_in(globals, script, page_context);
}

/// The world goes when the page has altered it, and when the page was stopped or left much behind,
/// for then memory is what matters.
void ScriptEngine::Part::leave_world(const CompiledScript& script) {
  if (!world || script.alters_globals()) return;
  const bool as_found = world->left_as_found(cx());
  if (!as_found) script.note_altered_globals();
  const bool stopped = stop == Stop::TimeLimit || stop == Stop::MemoryLimit;
  const bool heavy = JS_GetGCParameter(cx(), JSGC_BYTES) > limits.heap_bytes / kWorldsShare;
  if (!as_found || stopped || heavy) world.reset();
}

/// Now and then all goes that the engine has compiled and learnt of pages: it keeps it through
/// every lesser collection, and adds to it as long as pages bring new objects.
void ScriptEngine::Part::collect() {
  if (++pages < kPagesInAWorld && stop != Stop::MemoryLimit) return JS_MaybeGC(cx());
  pages = 0;
  world.reset();
  JS::PrepareForFullGC(cx());
  JS::NonIncrementalGC(cx(), JS::GCOptions::Shrink, JS::GCReason::API);
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
  const bool started =
      guarded(cx, [&] { part_->home.emplace(cx, script::new_globals(cx, nullptr)); });
  if (!interruptible || !started) {
    throw std::runtime_error("a context of the script engine could not be made");
  }
}

ScriptEngine::~ScriptEngine() = default;

std::size_t ScriptEngine::worlds_made() const noexcept { return part_->worlds_made; }

std::shared_ptr<const CompiledScript> ScriptEngine::compile(PageSource source) {
  const JSAutoRealm realm(part_->cx(), *part_->home);
  return CompiledScript::compile(part_->cx(), std::move(source));
}

std::optional<PageFailure> ScriptEngine::run(const CompiledScript& script,
                                             const page::ScriptingContext& context) {
  Part& part = *part_;
  part.source = &script.source();
  part.response = context.Response.get();
  part.server = context.Server.get();
  part.stop = Stop::None;
  part.stopped_at = {script.source().files.front(), 1};
  part.started = Clock::now();

  std::optional<PageFailure> failure;
  {
    const Watchdog::Watching watching(part.watchdog, part.cx());
    const JSAutoRealm home(part.cx(), *part.home);
    failure = part.outcome(part.execute(script, context));
  }
  JS_ClearPendingException(part.cx());
  part.source = nullptr;
  part.response = nullptr;
  part.server = nullptr;
  part.jobs->clear();
  part.table->release_all();
  part.leave_world(script);
  part.collect();
  return failure;
}

}  // namespace pelm::host
