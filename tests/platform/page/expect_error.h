// Looks at the number of an error that a call raises.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>

#include "pelm/error.h"

namespace pelm::page::testing {

/// The number that `action` raises; 0 when it raises nothing.
template <class Action>
std::int32_t error_of(const Action& action) {
  try {
    action();
  } catch (const Error& error) {
    return error.number();
  }
  return 0;
}

}  // namespace pelm::page::testing
