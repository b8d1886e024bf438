/// The platform's error texts by number, in both languages.
#pragma once

#include <cstdint>
#include <string_view>

namespace pelm {

struct ErrorText {
  std::int32_t number;
  std::string_view english;
  std::string_view portuguese;
};

/// Null when the platform has no text of that number.
const ErrorText* find_error_text(std::int32_t number) noexcept;

/// The text of every number that the platform has none for.
const ErrorText& application_defined_text() noexcept;

}  // namespace pelm
