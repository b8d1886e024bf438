/// The standard error trap and the routine that raises.
#pragma once

#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "pelm/error.h"

namespace pelm::frame {

/// Raises number and description of `pending` again from "PelmComum2008." + class word + "." +
/// procedure; its diagnostics go along.
[[noreturn]] void raise_trapped(const Error& pending, std::string_view class_word,
                                std::string_view procedure);

/// Runs an operation; any failure leaves it with the operation's own source, number and
/// description untouched. Whatever the failure left open or half done stays so.
template <class Body>
auto error_trap(std::string_view class_word, std::string_view procedure, Body&& body)
    -> decltype(body()) {
  try {
    return std::forward<Body>(body)();
  } catch (const Error& pending) {
    raise_trapped(pending, class_word, procedure);
  } catch (const std::bad_alloc&) {
    raise_trapped(
        Error(error_number::kOutOfMemory, {}, std::string(error_text(error_number::kOutOfMemory))),
        class_word, procedure);
  }
}

}  // namespace pelm::frame
