// Error objects with number, source and description, and reading back what a script threw.
#include "host/script_errors.h"

#include <js/Conversions.h>
#include <js/ErrorReport.h>
#include <js/Exception.h>
#include <js/Object.h>
#include <js/PropertyAndElement.h>
#include <js/PropertyDescriptor.h>
#include <js/SavedFrameAPI.h>
#include <mozilla/Maybe.h>

#include <optional>
#include <string>
#include <string_view>

#include "host/script_values.h"

namespace pelm::host::script {
namespace {

constexpr std::string_view kNoDescription = "O script lançou um valor sem descrição.";

SourcePlace place_in_page(JSContext* cx, unsigned script_line) {
  const PageSource* source = state_of(cx).source;
  return source ? source->place_of(static_cast<int>(script_line)) : SourcePlace();
}

bool define_text(JSContext* cx, JS::HandleObject object, const char* name, std::string_view text) {
  const JS::RootedValue value(cx, JS::StringValue(to_script_text(cx, text)));
  return JS_DefineProperty(cx, object, name, value, JSPROP_ENUMERATE);
}

JSString* text_value(JSContext* cx, std::string_view text) { return to_script_text(cx, text); }

void throw_error_object(JSContext* cx, const Error& error) {
  unsigned line = 0;
  JS::DescribeScriptedCaller(cx, nullptr, &line, nullptr);
  const SourcePlace place = place_in_page(cx, line);
  const JS::RootedString file(cx, text_value(cx, place.file));
  const JS::RootedString message(cx, text_value(cx, error.description()));
  const JS::Rooted<mozilla::Maybe<JS::Value>> no_cause(cx);
  JS::RootedValue thrown(cx);
  if (!JS::CreateError(cx, JSEXN_ERR, nullptr, file, static_cast<std::uint32_t>(place.line), 0,
                       nullptr, message, no_cause, &thrown)) {
    return;
  }
  const JS::RootedObject object(cx, &thrown.toObject());
  if (JS_DefineProperty(cx, object, "number", error.number(), JSPROP_ENUMERATE) &&
      define_text(cx, object, "source", error.source()) &&
      define_text(cx, object, "description", error.description())) {
    JS_SetPendingException(cx, thrown);
  }
}

/// An own plain property of an object: a getter is not run, it could throw again or never end.
JS::Value plain_property(JSContext* cx, JS::HandleObject object, const char* name) {
  JS::Rooted<mozilla::Maybe<JS::PropertyDescriptor>> found(cx);
  if (!JS_GetOwnPropertyDescriptor(cx, object, name, &found)) {
    JS_ClearPendingException(cx);
    return JS::UndefinedValue();
  }
  if (found.isNothing() || !found->isDataDescriptor()) return JS::UndefinedValue();
  return found->value();
}

std::optional<std::string> plain_text(JSContext* cx, JS::HandleObject object, const char* name) {
  const JS::RootedValue value(cx, plain_property(cx, object, name));
  if (!value.isString()) return std::nullopt;
  const JS::RootedString text(cx, value.toString());
  return from_script_text(cx, text);
}

std::int32_t number_of(const JSErrorReport* report) {
  switch (report->exnType) {
    case JSEXN_SYNTAXERR:
      return kScriptSyntaxError;
    case JSEXN_REFERENCEERR:
      return kScriptUndefinedName;
    default:
      return kScriptThrownValue;
  }
}

/// Errors of the component carry their line already turned into the page's.
void read_own_properties(JSContext* cx, JS::HandleObject object, PageFailure& failure) {
  const JS::RootedValue number(cx, plain_property(cx, object, "number"));
  if (!number.isNumber()) return;
  failure.number = JS::ToInt32(number.toNumber());
  if (auto source = plain_text(cx, object, "source")) failure.source = *std::move(source);
  if (auto text = plain_text(cx, object, "description")) failure.description = *std::move(text);
  const JS::RootedValue line(cx, plain_property(cx, object, "lineNumber"));
  auto file = plain_text(cx, object, "fileName");
  if (file && line.isInt32()) failure.place = {*std::move(file), line.toInt32()};
}

/// The innermost line of the page's script, by the stack of the error; the report alone would give
/// the line within a text that `eval` was given.
unsigned line_in_page(JSContext* cx, const JSErrorReport& report,
                      const JS::ExceptionStack& thrown) {
  const PageSource* source = state_of(cx).source;
  JS::RootedObject frame(cx, thrown.stack());
  if (thrown.exception().isObject()) {
    const JS::RootedObject error(cx, &thrown.exception().toObject());
    if (JSObject* own_stack = JS::ExceptionStackOrNull(error)) frame = own_stack;
  }
  JS::RootedString file(cx);
  while (source && frame) {
    std::uint32_t line = 0;
    if (JS::GetSavedFrameSource(cx, nullptr, frame, &file) == JS::SavedFrameResult::Ok &&
        from_script_text(cx, file) == source->files.front() &&
        JS::GetSavedFrameLine(cx, nullptr, frame, &line) == JS::SavedFrameResult::Ok) {
      return line;
    }
    JS::RootedObject parent(cx);
    if (JS::GetSavedFrameParent(cx, nullptr, frame, &parent) != JS::SavedFrameResult::Ok) break;
    frame = parent;
  }
  return report.lineno;
}

void describe(JSContext* cx, const JS::ExceptionStack& thrown, PageFailure& failure) {
  JS::ErrorReportBuilder report(cx);
  if (!report.init(cx, thrown, JS::ErrorReportBuilder::NoSideEffects)) {
    JS_ClearPendingException(cx);
    return;
  }
  failure.number = number_of(report.report());
  failure.description = report.toStringResult().c_str();
  failure.place = place_in_page(cx, line_in_page(cx, *report.report(), thrown));
}

}  // namespace

void throw_in_script(JSContext* cx, const Error& error) noexcept {
  try {
    throw_error_object(cx, error);
  } catch (const Failed&) {
    // Out of memory while saying so: the engine has that as its exception.
  } catch (const std::bad_alloc&) {
    JS_ReportOutOfMemory(cx);
  }
}

PageFailure failure_of(JSContext* cx, JS::HandleValue thrown, JS::HandleObject stack) {
  PageFailure failure{kScriptThrownValue, kScriptSource, std::string(kNoDescription),
                      place_in_page(cx, 1)};
  try {
    describe(cx, JS::ExceptionStack(cx, thrown, stack), failure);
    if (thrown.isObject()) {
      const JS::RootedObject object(cx, &thrown.toObject());
      read_own_properties(cx, object, failure);
    }
  } catch (const Failed&) {
    JS_ClearPendingException(cx);
  }
  return failure;
}

PageFailure take_failure(JSContext* cx) {
  if (JS_IsThrowingOutOfMemory(cx)) {
    JS_ClearPendingException(cx);
    return {error_number::kOutOfMemory, kScriptSource,
            std::string(error_text(error_number::kOutOfMemory)), place_in_page(cx, 1)};
  }
  JS::ExceptionStack thrown(cx);
  if (!JS::StealPendingExceptionStack(cx, &thrown)) {
    JS_ClearPendingException(cx);
    return {kScriptThrownValue, kScriptSource, std::string(kNoDescription), place_in_page(cx, 1)};
  }
  return failure_of(cx, thrown.exception(), thrown.stack());
}

}  // namespace pelm::host::script
