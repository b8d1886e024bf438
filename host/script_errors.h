/// Errors between the component's world and the script's.
#pragma once

#include <js/TypeDecls.h>
#include <jsapi.h>

#include <exception>
#include <new>

#include "host/page_failure.h"
#include "host/script_state.h"
#include "pelm/error.h"

namespace pelm::host::script {

/// Makes `error` the pending exception: an Error with number, source and description, its line and
/// file those of the page.
void throw_in_script(JSContext* cx, const Error& error) noexcept;

/// Takes the pending exception; an unclear one still gives a failure.
PageFailure take_failure(JSContext* cx);
/// The same for a value that was thrown, or that a promise was rejected with.
PageFailure failure_of(JSContext* cx, JS::HandleValue thrown, JS::HandleObject stack);

/// Runs native code for a script. No C++ exception may cross the engine, so each becomes what the
/// script sees: an Error it can catch, or, when the page has ended, a stop that it cannot.
template <class Action>
bool guarded(JSContext* cx, const Action& action) noexcept {
  try {
    action();
    return true;
  } catch (const Failed&) {
    // The engine has it.
  } catch (const page::PageEnded&) {
    JS_ClearPendingException(cx);
    state_of(cx).stop = Stop::PageEnded;
  } catch (const Error& error) {
    throw_in_script(cx, error);
  } catch (const std::bad_alloc&) {
    JS_ReportOutOfMemory(cx);
  } catch (const std::exception& failure) {
    throw_in_script(cx, Error(error_number::kInternal, "Host", failure.what()));
  }
  return false;
}

}  // namespace pelm::host::script
