/// The connection string as the driver manager takes it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/ado/provider.h"

namespace pelm::ado::odbc {

/// `Provider` goes; the words of other bridges become ODBC's ("Data Source" is DSN, "User ID" is
/// UID, "Password" PWD, "Initial Catalog" and "Database" Database); `Extended Properties` is taken
/// apart. What the driver in the string is known to need is added where the string does not say it.
/// Raises kProviderFailure for a string that names neither driver nor source.
std::string driver_string(const SessionSettings& settings);

/// A value as it must stand after "=": between braces where it would not be read whole.
std::string braced(std::string_view value);

}  // namespace pelm::ado::odbc
