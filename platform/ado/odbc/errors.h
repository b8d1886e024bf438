/// How failures of drivers and servers become the errors that pages know.
#pragma once

#include <sql.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "pelm/error.h"
#include "platform/ado/odbc/server_kind.h"

namespace pelm::ado::odbc {

/// As pages know the platform's bridge to ODBC.
inline constexpr std::string_view kProviderName = "MSDASQL";

/// Every record that a handle holds of its last call.
std::vector<DiagnosticRecord> diagnostics_of(SQLSMALLINT handle_type, SQLHANDLE handle);

/// The number a page sees, by SQLSTATE and the server's own code together: neither tells alone.
std::int32_t number_of(ServerKind kind, const DiagnosticRecord& record);

/// True where the record says that the conversation with the server is over.
bool says_lost(ServerKind kind, const DiagnosticRecord& record);

/// What the server said, without the names of manager, driver and server that stand in brackets
/// before it.
std::string_view server_text(std::string_view message);

/// The error of a failed call: number and text of the first record that is no mere warning, all
/// records kept. `number` other than 0 overrides. `sql` is the statement, if any.
Error error_of(ServerKind kind, std::vector<DiagnosticRecord> records, std::string_view sql,
               std::int32_t number = 0);

/// Raises `number` as this provider's error.
[[noreturn]] void raise_provider_error(std::int32_t number, std::string description,
                                       std::string_view sql = {});

}  // namespace pelm::ado::odbc
