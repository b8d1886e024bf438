// Reading diagnostics and mapping them.
#include "platform/ado/odbc/errors.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/ado/odbc/wide_text.h"

namespace pelm::ado::odbc {
namespace {

namespace number = error_number;
using enum ServerKind;

constexpr std::int32_t kAnyCode = 0;

struct Mapping {
  ServerKind kind;         // Other: any server
  std::string_view state;  // its beginning; empty: any
  std::int32_t code;       // kAnyCode: any
  std::int32_t error;
};

// The first that fits counts. A server's own codes stand before the classes that they refine.
constexpr std::array kMappings = {
    // MariaDB
    Mapping{MariaDb, "", 1205, number::kTimeout},             // lock wait
    Mapping{MariaDb, "", 1969, number::kTimeout},             // max_statement_time
    Mapping{MariaDb, "", 1213, number::kProviderFailure},     // deadlock victim
    Mapping{MariaDb, "", 1146, number::kNoTable},             // no such table
    Mapping{MariaDb, "", 1051, number::kNoTable},             // no such table to drop
    Mapping{MariaDb, "", 1048, number::kIntegrityViolation},  // column cannot be null
    Mapping{MariaDb, "", 1364, number::kIntegrityViolation},  // no default value
    Mapping{MariaDb, "", 1062, number::kIntegrityViolation},  // duplicate key
    Mapping{MariaDb, "", 1451, number::kIntegrityViolation},  // parent row
    Mapping{MariaDb, "", 1452, number::kIntegrityViolation},  // child row
    Mapping{MariaDb, "", 4025, number::kIntegrityViolation},  // CHECK
    Mapping{MariaDb, "", 1264, number::kDataOverflow},        // number out of range
    Mapping{MariaDb, "", 1406, number::kDataOverflow},        // text too long
    Mapping{MariaDb, "", 1265, number::kCantConvertValue},    // data truncated
    Mapping{MariaDb, "", 1292, number::kCantConvertValue},    // incorrect date
    Mapping{MariaDb, "", 1366, number::kCantConvertValue},    // incorrect value
    Mapping{MariaDb, "", 1045, number::kLoginFailed},
    Mapping{MariaDb, "", 1698, number::kLoginFailed},
    Mapping{MariaDb, "", 1044, number::kPermissionDenied},  // database
    Mapping{MariaDb, "", 1142, number::kPermissionDenied},  // table
    Mapping{MariaDb, "", 1143, number::kPermissionDenied},  // column
    Mapping{MariaDb, "", 1227, number::kPermissionDenied},  // privilege
    Mapping{MariaDb, "", 1290, number::kPermissionDenied},  // --read-only
    Mapping{MariaDb, "", 1370, number::kPermissionDenied},  // procedure
    Mapping{MariaDb, "", 1792, number::kPermissionDenied},  // read-only transaction
    Mapping{MariaDb, "", 1836, number::kPermissionDenied},  // read-only mode
    // SQL Server
    Mapping{SqlServer, "", 208, number::kNoTable},
    Mapping{SqlServer, "", 1222, number::kTimeout},          // lock request time-out
    Mapping{SqlServer, "", 1205, number::kProviderFailure},  // deadlock victim
    Mapping{SqlServer, "", 515, number::kIntegrityViolation},
    Mapping{SqlServer, "", 547, number::kIntegrityViolation},
    Mapping{SqlServer, "", 2601, number::kIntegrityViolation},
    Mapping{SqlServer, "", 2627, number::kIntegrityViolation},
    Mapping{SqlServer, "", 8152, number::kDataOverflow},
    Mapping{SqlServer, "", 2628, number::kDataOverflow},
    Mapping{SqlServer, "", 220, number::kDataOverflow},
    Mapping{SqlServer, "", 8115, number::kDataOverflow},
    Mapping{SqlServer, "", 241, number::kCantConvertValue},
    Mapping{SqlServer, "", 245, number::kCantConvertValue},
    Mapping{SqlServer, "", 8114, number::kCantConvertValue},
    Mapping{SqlServer, "", 229, number::kPermissionDenied},
    Mapping{SqlServer, "", 230, number::kPermissionDenied},
    Mapping{SqlServer, "", 262, number::kPermissionDenied},
    Mapping{SqlServer, "", 3906, number::kPermissionDenied},  // read-only database
    Mapping{SqlServer, "", 18456, number::kLoginFailed},
    Mapping{SqlServer, "", 4060, number::kLoginFailed},
    // Oracle
    Mapping{Oracle, "", 942, number::kNoTable},
    Mapping{Oracle, "", 1, number::kIntegrityViolation},
    Mapping{Oracle, "", 1400, number::kIntegrityViolation},
    Mapping{Oracle, "", 1407, number::kIntegrityViolation},
    Mapping{Oracle, "", 2290, number::kIntegrityViolation},
    Mapping{Oracle, "", 2291, number::kIntegrityViolation},
    Mapping{Oracle, "", 2292, number::kIntegrityViolation},
    Mapping{Oracle, "", 1438, number::kDataOverflow},
    Mapping{Oracle, "", 12899, number::kDataOverflow},
    Mapping{Oracle, "", 1722, number::kCantConvertValue},
    Mapping{Oracle, "", 1861, number::kCantConvertValue},
    Mapping{Oracle, "", 1013, number::kTimeout},   // cancelled
    Mapping{Oracle, "", 54, number::kTimeout},     // busy
    Mapping{Oracle, "", 30006, number::kTimeout},  // lock wait
    Mapping{Oracle, "", 1031, number::kPermissionDenied},
    Mapping{Oracle, "", 1456, number::kPermissionDenied},   // read-only transaction
    Mapping{Oracle, "", 16000, number::kPermissionDenied},  // read-only database
    Mapping{Oracle, "", 1017, number::kLoginFailed},
    Mapping{Oracle, "", 1005, number::kLoginFailed},
    Mapping{Oracle, "", 28000, number::kLoginFailed},
    // SQLite: the engine's own result codes
    Mapping{Sqlite, "", 5, number::kTimeout},
    Mapping{Sqlite, "", 6, number::kTimeout},
    Mapping{Sqlite, "", 8, number::kPermissionDenied},
    Mapping{Sqlite, "", 9, number::kTimeout},
    Mapping{Sqlite, "", 19, number::kIntegrityViolation},
    Mapping{Sqlite, "", 1, number::kErrorsInCommand},
    // Any server, by class
    Mapping{Other, "42S02", kAnyCode, number::kNoTable},
    Mapping{Other, "S0002", kAnyCode, number::kNoTable},
    Mapping{Other, "42P01", kAnyCode, number::kNoTable},
    Mapping{Other, "HYT", kAnyCode, number::kTimeout},
    Mapping{Other, "S1T00", kAnyCode, number::kTimeout},
    Mapping{Other, "57014", kAnyCode, number::kTimeout},
    Mapping{Other, "55P03", kAnyCode, number::kTimeout},
    Mapping{Other, "23", kAnyCode, number::kIntegrityViolation},
    Mapping{Other, "40002", kAnyCode, number::kIntegrityViolation},
    Mapping{Other, "22001", kAnyCode, number::kDataOverflow},
    Mapping{Other, "22003", kAnyCode, number::kDataOverflow},
    Mapping{Other, "22", kAnyCode, number::kCantConvertValue},
    Mapping{Other, "28", kAnyCode, number::kLoginFailed},
    Mapping{Other, "25006", kAnyCode, number::kPermissionDenied},
    Mapping{Other, "42501", kAnyCode, number::kPermissionDenied},
    Mapping{Other, "42", kAnyCode, number::kErrorsInCommand},
    Mapping{Other, "37", kAnyCode, number::kErrorsInCommand},
    Mapping{Other, "S00", kAnyCode, number::kErrorsInCommand},
    Mapping{Other, "07", kAnyCode, number::kErrorsInCommand},
    Mapping{Other, "21", kAnyCode, number::kErrorsInCommand},
};

constexpr std::array<std::int32_t, 5> kLostOnMariaDb = {2006, 2013, 2055, 1053, 1927};
constexpr std::array<std::int32_t, 6> kLostOnOracle = {28, 1012, 1089, 3113, 3114, 12571};

bool is_warning(const DiagnosticRecord& record) { return record.sqlstate.starts_with("01"); }

template <std::size_t N>
bool among(const std::array<std::int32_t, N>& codes, std::int32_t code) {
  return std::ranges::find(codes, code) != codes.end();
}

}  // namespace

std::vector<DiagnosticRecord> diagnostics_of(SQLSMALLINT handle_type, SQLHANDLE handle) {
  constexpr SQLSMALLINT kMostRecords = 50;  // a driver that repeats itself ends somewhere
  constexpr SQLSMALLINT kRoom = 2048;
  std::vector<DiagnosticRecord> records;
  std::array<char16_t, 6> state{};
  std::array<char16_t, kRoom> message{};
  for (SQLSMALLINT i = 1; i <= kMostRecords; ++i) {
    SQLINTEGER code = 0;
    SQLSMALLINT length = 0;
    const SQLRETURN rc = SQLGetDiagRecW(handle_type, handle, i, wide(state.data()), &code,
                                        wide(message.data()), kRoom, &length);
    if (!SQL_SUCCEEDED(rc)) break;
    const auto size = static_cast<std::size_t>(std::clamp<int>(length, 0, kRoom - 1));
    records.push_back({utf8({state.data(), 5}), code, utf8({message.data(), size})});
  }
  return records;
}

std::int32_t number_of(ServerKind kind, const DiagnosticRecord& record) {
  // The driver for SQLite has one code for every mistake in a statement.
  if (kind == Sqlite && record.message.find("no such table") != std::string::npos) {
    return number::kNoTable;
  }
  const auto* const found = std::ranges::find_if(kMappings, [&](const Mapping& m) {
    return (m.kind == Other || m.kind == kind) && record.sqlstate.starts_with(m.state) &&
           (m.code == kAnyCode || m.code == record.native_code);
  });
  return found == kMappings.end() ? number::kProviderFailure : found->error;
}

bool says_lost(ServerKind kind, const DiagnosticRecord& record) {
  if (record.sqlstate.starts_with("08") || record.sqlstate == "57P01") return true;
  if (kind == MariaDb) return among(kLostOnMariaDb, record.native_code);
  if (kind == Oracle) return among(kLostOnOracle, record.native_code);
  return false;
}

std::string_view server_text(std::string_view message) {
  std::string_view rest = message;
  while (rest.starts_with('[')) {
    const std::size_t end = rest.find(']');
    if (end == std::string_view::npos) break;
    rest.remove_prefix(end + 1);
  }
  while (rest.starts_with(' ')) rest.remove_prefix(1);
  return rest.empty() ? message : rest;
}

Error error_of(ServerKind kind, std::vector<DiagnosticRecord> records, std::string_view sql,
               std::int32_t number) {
  const auto first = std::ranges::find_if_not(records, is_warning);
  std::string description = "the driver gave no diagnostic";
  std::int32_t found = number::kProviderFailure;
  if (first != records.end()) {
    description = server_text(first->message);
    found = number_of(kind, *first);
  }
  auto kept = std::make_shared<Diagnostics>();
  kept->provider = kProviderName;
  kept->sql = sql;
  kept->records = std::move(records);
  return Error(number != 0 ? number : found, std::string(kProviderName), std::move(description),
               std::move(kept));
}

void raise_provider_error(std::int32_t number, std::string description, std::string_view sql) {
  auto diagnostics = std::make_shared<Diagnostics>();
  diagnostics->provider = kProviderName;
  diagnostics->sql = sql;
  throw Error(number, std::string(kProviderName), std::move(description), std::move(diagnostics));
}

}  // namespace pelm::ado::odbc
