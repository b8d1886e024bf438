/// What an operation raised.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include "pelm/error.h"

namespace pelm::test {

/// Empty when it raised nothing. Anything but a `pelm::Error` passes through and fails the test.
template <class Operation>
std::optional<Error> raised(Operation&& operation) {
  try {
    std::forward<Operation>(operation)();
  } catch (const Error& e) {
    return e;
  }
  return std::nullopt;
}

/// 0 when it raised nothing.
template <class Operation>
std::int32_t number_raised(Operation&& operation) {
  const std::optional<Error> error = raised(std::forward<Operation>(operation));
  return error ? error->number() : 0;
}

}  // namespace pelm::test
