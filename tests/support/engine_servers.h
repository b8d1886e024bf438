/// The engines that are reached through their drivers.
#pragma once

#include <memory>

#include "support/engine.h"

namespace pelm::test {

/// A new database of the server whose socket PELM_TEST_MARIADB names
/// (tests/databases/with_server.py starts one); null without one. In the second, statements are
/// read as an Oracle server does.
std::unique_ptr<FreshDatabase> create_mariadb();
std::unique_ptr<FreshDatabase> create_mariadb_oracle();
void create_mariadb_counter(ado::Connection& connection);
void create_mariadb_oracle_counter(ado::Connection& connection);

/// A new database, read as SQL Server, of the H2 server whose port PELM_TEST_H2 names; null without
/// one. A procedure stands in the table pelm_procedure(name, script): statements with "; " between,
/// the last of which gives the output.
std::unique_ptr<FreshDatabase> create_h2();
void create_h2_counter(ado::Connection& connection);

/// A new database, with the functions that Oracle has, of the PostgreSQL server whose socket stands
/// in the folder that PELM_TEST_POSTGRESQL names; null without one.
std::unique_ptr<FreshDatabase> create_postgresql();
void create_postgresql_counter(ado::Connection& connection);

/// A file of SQLite behind its ODBC driver; null where the driver is not installed.
std::unique_ptr<FreshDatabase> create_odbc_sqlite();
/// Fails: the driver knows no procedures.
void create_odbc_sqlite_counter(ado::Connection& connection);

}  // namespace pelm::test
