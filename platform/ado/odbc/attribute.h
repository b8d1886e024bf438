/// Numbers as the driver manager takes them: in the place of a pointer.
#pragma once

#include <sql.h>

#include <cstdint>

namespace pelm::ado::odbc {

inline SQLPOINTER attribute_value(std::uintptr_t value) {
  return reinterpret_cast<SQLPOINTER>(value);  // NOLINT(performance-no-int-to-ptr)
}

}  // namespace pelm::ado::odbc
