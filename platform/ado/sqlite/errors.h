/// How failures of the engine become the errors that pages know.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pelm::ado::sqlite {

inline constexpr std::string_view kProviderName = "SQLite";

/// The number a page sees for an extended result code; `message` tells a missing table from the
/// other mistakes that share its code.
std::int32_t number_of(int extended_code, std::string_view message) noexcept;

/// Raises `number` as this provider's error. `sql` is the statement as it was to run, if any.
[[noreturn]] void raise_provider_error(std::int32_t number, std::string description,
                                       std::string_view sql = {});

/// Raises the number that belongs to `extended_code`, with the engine's `message` first, then
/// `detail`, and diagnostics.
[[noreturn]] void raise_engine_error(int extended_code, const std::string& message,
                                     const std::string& detail, std::string_view sql);

/// Raises kErrorsInCommand: a character that no statement can hold.
[[noreturn]] void raise_stray_character(std::string_view character);

}  // namespace pelm::ado::sqlite
