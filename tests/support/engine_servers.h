/// The engines that are reached through their drivers.
#pragma once

#include <memory>

#include "support/engine.h"

namespace pelm::test {

/// A new database of the server whose socket PELM_TEST_MARIADB names (tests/support/with_mariadb
/// starts one); null without one. In the second, statements are read as an Oracle server does.
std::unique_ptr<FreshDatabase> create_mariadb();
std::unique_ptr<FreshDatabase> create_mariadb_oracle();
void create_mariadb_counter(ado::Connection& connection);
void create_mariadb_oracle_counter(ado::Connection& connection);

/// A file of SQLite behind its ODBC driver; null where the driver is not installed.
std::unique_ptr<FreshDatabase> create_odbc_sqlite();
/// Fails: the driver knows no procedures.
void create_odbc_sqlite_counter(ado::Connection& connection);

}  // namespace pelm::test
