/// Expecting an error by its number.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>

#include "pelm/error.h"

namespace pelm {

/// The number of the error that `action` raises; nothing when it raises none.
template <class Action>
std::optional<std::int32_t> error_of(Action action) {
  try {
    action();
  } catch (const Error& e) {
    return e.number();
  }
  return std::nullopt;
}

}  // namespace pelm

#define EXPECT_ERROR(expected_number, ...) \
  EXPECT_EQ(::pelm::error_of([&] { static_cast<void>(__VA_ARGS__); }), (expected_number))
