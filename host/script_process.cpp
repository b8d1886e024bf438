// A first context, which runs no page, holds what the others share: the engine's own functions
// above all, which each would otherwise compile and keep for itself (2 MB and some 10 ms).
#include "host/script_process.h"

#include <js/Context.h>
#include <js/Initialization.h>
#include <js/MemoryFunctions.h>
#include <jsapi.h>

#include <cstdint>
#include <future>
#include <stdexcept>
#include <thread>

namespace pelm::host::script {
namespace {

/// How often a piece of a script has run before the engine prepares it for running more often
/// (its own: 10) and compiles it (its own: 100). Both are lost at the page's end, and most loops of
/// pages are short.
constexpr std::uint32_t kPreparedAfter = 500;
constexpr std::uint32_t kCompiledAfter = 2000;

[[noreturn]] void refuse() { throw std::runtime_error("the script engine could not be started"); }

/// The engine starts once in a process and can never start again. A context ends on the thread that
/// made it, so the shared one has a thread of its own, which does nothing else.
class Process {
 public:
  static JSRuntime* shared() {
    static const Process process;
    return process.shared_;
  }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

 private:
  Process() {
    if (!JS_Init()) refuse();
    std::promise<JSRuntime*> made;
    holder_ = std::thread([this, &made] { hold(made); });
    shared_ = made.get_future().get();
    if (shared_ != nullptr) return;
    holder_.join();
    refuse();
  }
  ~Process() {
    ends_.set_value();
    holder_.join();
    JS_ShutDown();
  }

  void hold(std::promise<JSRuntime*>& made) {
    std::future<void> end = ends_.get_future();
    JSContext* const cx = JS_NewContext(JS::DefaultHeapMaxBytes);
    const bool good = cx != nullptr && JS::InitSelfHostedCode(cx);
    if (good) {
      JS_SetGlobalJitCompilerOption(cx, JSJITCOMPILER_BASELINE_INTERPRETER_WARMUP_TRIGGER,
                                    kPreparedAfter);
      JS_SetGlobalJitCompilerOption(cx, JSJITCOMPILER_BASELINE_WARMUP_TRIGGER, kCompiledAfter);
    }
    made.set_value(good ? JS_GetRuntime(cx) : nullptr);
    if (good) end.wait();
    if (cx != nullptr) JS_DestroyContext(cx);
  }

  JSRuntime* shared_ = nullptr;
  std::promise<void> ends_;
  std::thread holder_;
};

}  // namespace

JSContext* new_context(unsigned heap_bytes) {
  JSContext* const cx = JS_NewContext(heap_bytes, Process::shared());
  if (cx != nullptr && JS::InitSelfHostedCode(cx)) return cx;
  if (cx != nullptr) JS_DestroyContext(cx);
  throw std::runtime_error("a context of the script engine could not be made");
}

}  // namespace pelm::host::script
