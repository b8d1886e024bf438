/// Opening a driver's connection within a time limit that no driver can stretch.
#pragma once

#include <sql.h>

#include <cstdint>
#include <string>

namespace pelm::ado::odbc {

/// The connected handle, the caller's to disconnect and free. `seconds` 0 waits for ever. Raises
/// kTimeout, or what manager, driver and server say; messages show `shown` instead of the string,
/// which may hold a password.
SQLHDBC open_link(const std::string& string, const std::string& shown, std::int32_t seconds,
                  bool read_only);

}  // namespace pelm::ado::odbc
