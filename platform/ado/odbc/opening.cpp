// Connecting on a thread that may be left behind.
#include "platform/ado/odbc/opening.h"

#include <sqlext.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <thread>
#include <utility>

#include "pelm/error.h"
#include "platform/ado/error_source.h"
#include "platform/ado/odbc/attribute.h"
#include "platform/ado/odbc/errors.h"
#include "platform/ado/odbc/wide_text.h"

namespace pelm::ado::odbc {
namespace {

/// One for the process; the manager frees nothing of it before the process ends.
SQLHENV environment() {
  static const SQLHENV the_one = [] {
    SQLHENV handle = SQL_NULL_HENV;
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &handle))) {
      throw std::runtime_error("the ODBC driver manager does not start");
    }
    SQLSetEnvAttr(handle, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    return handle;
  }();
  return the_one;
}

/// What the opening thread and the one that waits for it share.
struct Opening {
  std::string string;
  std::int32_t seconds = 0;
  bool read_only = false;

  std::mutex mutex;
  std::condition_variable changed;
  bool done = false;
  bool left = false;  // nobody waits any more
  SQLHDBC handle = SQL_NULL_HDBC;
  std::optional<Error> error;
};

void close(SQLHDBC handle) {
  SQLDisconnect(handle);
  SQLFreeHandle(SQL_HANDLE_DBC, handle);
}

/// Drivers that do not know an attribute say so here, which is all the same: the limit holds.
void prepare(const Opening& opening, SQLHDBC handle) {
  const auto seconds = static_cast<std::uintptr_t>(opening.seconds);
  SQLSetConnectAttrW(handle, SQL_ATTR_LOGIN_TIMEOUT, attribute_value(seconds), SQL_IS_UINTEGER);
  if (opening.read_only) {
    SQLSetConnectAttrW(handle, SQL_ATTR_ACCESS_MODE, attribute_value(SQL_MODE_READ_ONLY),
                       SQL_IS_UINTEGER);
  }
}

void connect(Opening& opening) {
  SQLHDBC handle = SQL_NULL_HDBC;
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_DBC, environment(), &handle))) {
    opening.error = error_of(ServerKind::Other, diagnostics_of(SQL_HANDLE_ENV, environment()), {});
    return;
  }
  prepare(opening, handle);
  WideText string(opening.string);
  const SQLRETURN rc =
      SQLDriverConnectW(handle, nullptr, string.data(), static_cast<SQLSMALLINT>(string.size()),
                        nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
  if (SQL_SUCCEEDED(rc)) {
    opening.handle = handle;
    return;
  }
  // No server has named itself yet; a driver of MariaDB tells its own codes.
  const ServerKind kind = server_kind_of(opening.string);
  opening.error = error_of(kind, diagnostics_of(SQL_HANDLE_DBC, handle), {});
  SQLFreeHandle(SQL_HANDLE_DBC, handle);
}

void run(const std::shared_ptr<Opening>& opening) {
  connect(*opening);
  const std::lock_guard lock(opening->mutex);
  opening->done = true;
  if (opening->left && opening->handle != SQL_NULL_HDBC) close(opening->handle);
  opening->changed.notify_all();
}

[[noreturn]] void raise_late(const std::string& shown, std::int32_t seconds) {
  const std::string limit = std::to_string(seconds);
  raise_provider_error(error_number::kTimeout,
                       in_language("O servidor não respondeu em " + limit + " s: " + shown,
                                   "The server did not answer within " + limit + " s: " + shown));
}

}  // namespace

SQLHDBC open_link(const std::string& string, const std::string& shown, std::int32_t seconds,
                  bool read_only) {
  const auto opening = std::make_shared<Opening>();
  opening->string = string;
  opening->seconds = seconds;
  opening->read_only = read_only;
  if (seconds <= 0) {
    run(opening);
  } else {
    std::thread(run, opening).detach();
  }
  std::unique_lock lock(opening->mutex);
  const auto done = [&] { return opening->done; };
  if (!opening->done && !opening->changed.wait_for(lock, std::chrono::seconds(seconds), done)) {
    opening->left = true;
    raise_late(shown, seconds);
  }
  if (opening->error) throw Error(*opening->error);
  return opening->handle;
}

}  // namespace pelm::ado::odbc
