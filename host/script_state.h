/// What the native functions of a script need of the page that runs.
#pragma once

#include <js/TypeDecls.h>

#include <cstdint>

#include "host/page_hooks.h"
#include "host/page_source.h"
#include "platform/page/response.h"

namespace pelm::host::script {

class ObjectTable;

/// Why a script must stop though nothing was thrown that it could catch.
enum class Stop : std::uint8_t { None, PageEnded, TimeLimit, MemoryLimit };

/// One for each script context, whose private pointer it is.
struct State {
  ObjectTable* objects = nullptr;
  const PageHooks* hooks = nullptr;
  const PageSource* source = nullptr;  ///< of the page that runs; null between pages
  page::Response* response = nullptr;
  Stop stop = Stop::None;
};

State& state_of(JSContext* cx);

/// Thrown by native code when the engine already holds the failure: an exception of the script, or
/// none when the script is being stopped.
struct Failed {};

/// Throws Failed when a call of the engine says that it failed.
template <class Answer>
Answer require(Answer answer) {
  if (!answer) throw Failed();
  return answer;
}

}  // namespace pelm::host::script
