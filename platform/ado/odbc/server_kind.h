/// Which server stands behind a driver, and what its SQL needs that another's does not.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/ado/provider.h"

namespace pelm::ado::odbc {

enum class ServerKind { Other, SqlServer, Oracle, MariaDb, Sqlite, PostgreSql };

/// From the name that a driver gives its server (SQL_DBMS_NAME).
ServerKind server_kind_of(std::string_view dbms_name);

/// A condition with one `?` that holds while the column `quoted`, no key, has the value read from
/// it: letter by letter in a text, to the second in a date.
std::string same_value_condition(ServerKind kind, const std::string& quoted, DataTypeEnum type);

/// A statement that costs next to nothing and fails only on a lost connection.
std::string_view probe_statement(ServerKind kind);

}  // namespace pelm::ado::odbc
