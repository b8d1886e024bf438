// The engines that come with the library.
#include "c_api/providers.h"

#include <mutex>

#include "platform/ado/odbc/odbc_provider.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace pelm::c_api {

void register_providers() {
  static std::once_flag once;
  std::call_once(once, [] {
    ado::sqlite::register_sqlite_provider();
    ado::odbc::register_odbc_provider();
  });
}

}  // namespace pelm::c_api
