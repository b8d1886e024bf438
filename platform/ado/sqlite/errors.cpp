// How failures of the engine become the errors that pages know.
#include "platform/ado/sqlite/errors.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "pelm/error.h"

namespace pelm::ado::sqlite {
namespace {

struct Mapping {
  int code;  ///< extended, or primary for all of its kind
  std::int32_t number;
};

// The first that fits counts, so extended codes stand before the primary code of their kind.
constexpr std::array kMappings = {
    Mapping{SQLITE_CONSTRAINT_TRIGGER, error_number::kErrorsInCommand},
    Mapping{SQLITE_CONSTRAINT_DATATYPE, error_number::kCantConvertValue},
    Mapping{SQLITE_CONSTRAINT, error_number::kIntegrityViolation},
    Mapping{SQLITE_ERROR, error_number::kErrorsInCommand},
    Mapping{SQLITE_RANGE, error_number::kErrorsInCommand},
    Mapping{SQLITE_SCHEMA, error_number::kErrorsInCommand},
    Mapping{SQLITE_MISMATCH, error_number::kCantConvertValue},
    Mapping{SQLITE_TOOBIG, error_number::kDataOverflow},
    Mapping{SQLITE_BUSY, error_number::kTimeout},
    Mapping{SQLITE_LOCKED, error_number::kTimeout},
    Mapping{SQLITE_INTERRUPT, error_number::kTimeout},
    Mapping{SQLITE_READONLY, error_number::kPermissionDenied},
    Mapping{SQLITE_PERM, error_number::kPermissionDenied},
    Mapping{SQLITE_AUTH, error_number::kPermissionDenied},
};

constexpr int kPrimaryCode = 0xFF;
constexpr std::string_view kNoSuchTable = "no such table";

}  // namespace

std::int32_t number_of(int extended_code, std::string_view message) noexcept {
  if (extended_code == SQLITE_ERROR && message.starts_with(kNoSuchTable)) {
    return error_number::kNoTable;
  }
  const auto found = std::find_if(kMappings.begin(), kMappings.end(), [&](const Mapping& m) {
    return m.code == extended_code || m.code == (extended_code & kPrimaryCode);
  });
  return found == kMappings.end() ? error_number::kProviderFailure : found->number;
}

void raise_provider_error(std::int32_t number, std::string description, std::string_view sql) {
  auto diagnostics = std::make_shared<Diagnostics>();
  diagnostics->provider = kProviderName;
  diagnostics->sql = sql;
  throw Error(number, std::string(kProviderName), std::move(description), std::move(diagnostics));
}

void raise_engine_error(int extended_code, const std::string& message, const std::string& detail,
                        std::string_view sql) {
  auto diagnostics = std::make_shared<Diagnostics>();
  diagnostics->provider = kProviderName;
  diagnostics->sql = sql;
  diagnostics->records.push_back({{}, extended_code, message});
  throw Error(number_of(extended_code, message), std::string(kProviderName), message + detail,
              std::move(diagnostics));
}

void raise_stray_character(std::string_view character) {
  raise_provider_error(error_number::kErrorsInCommand,
                       "unrecognized character (code " +
                           std::to_string(static_cast<unsigned char>(character.front())) +
                           ") in the statement");
}

}  // namespace pelm::ado::sqlite
