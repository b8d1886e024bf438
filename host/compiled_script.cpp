// The function's head stands on the page's first line, so that lines count as they do in the page.
#include "host/compiled_script.h"

#include <js/CompilationAndEvaluation.h>
#include <js/CompileOptions.h>
#include <js/Exception.h>
#include <js/SourceText.h>
#include <jsapi.h>
#include <mozilla/Utf8.h>

#include <string>
#include <string_view>
#include <utility>

#include "host/script_errors.h"
#include "host/script_state.h"

namespace pelm::host {
namespace {

constexpr std::string_view kHead = "(function(){";
constexpr std::string_view kFoot = "\n})";

/// Null when the engine has a failure pending.
RefPtr<JS::Stencil> stencil_of(JSContext* cx, const PageSource& source, const std::string& script) {
  JS::CompileOptions options(cx);
  options.setFileAndLine(source.files.front().c_str(), 1);
  JS::SourceText<mozilla::Utf8Unit> text;
  if (!text.init(cx, script.data(), script.size(), JS::SourceOwnership::Borrowed)) return nullptr;
  return JS::CompileGlobalScriptToStencil(cx, options, text);
}

[[noreturn]] void refuse(JSContext* cx, const PageSource& source) {
  script::State& state = script::state_of(cx);
  state.source = &source;
  const PageFailure failure = script::take_failure(cx);
  state.source = nullptr;
  throw PageSyntaxError(failure.place, failure.description);
}

}  // namespace

CompiledScript::CompiledScript(PageSource source, RefPtr<JS::Stencil> stencil)
    : source_(std::move(source)), stencil_(std::move(stencil)) {}

std::shared_ptr<CompiledScript> CompiledScript::compile(JSContext* cx, PageSource source) {
  std::string function(kHead);
  function.append(source.script).append(kFoot);
  RefPtr<JS::Stencil> stencil = stencil_of(cx, source, function);
  if (!stencil) {
    // What is wrong is told of the page as it stands: the function's foot would close what the page
    // left open.
    JS::ExceptionStack of_function(cx);
    if (!JS::StealPendingExceptionStack(cx, &of_function)) refuse(cx, source);
    if (stencil_of(cx, source, source.script)) JS::SetPendingExceptionStack(cx, of_function);
    refuse(cx, source);
  }
  return std::shared_ptr<CompiledScript>(new CompiledScript(std::move(source), std::move(stencil)));
}

JSObject* CompiledScript::function(JSContext* cx) const {
  const JS::InstantiateOptions options;
  const JS::RootedScript script(cx, JS::InstantiateGlobalStencil(cx, options, stencil_));
  JS::RootedValue made(cx);
  if (!script || !JS_ExecuteScript(cx, script, &made)) return nullptr;
  return &made.toObject();
}

}  // namespace pelm::host
