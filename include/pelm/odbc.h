/// Database servers through their ODBC drivers, as a provider.
///
///     Driver={ODBC Driver 18 for SQL Server};Server=db.example;Database=crm;UID=pelm;PWD=…
///     DSN=crm
///
/// What a connection string without `Provider` means. Drivers are registered with unixODBC
/// (`odbcinst -q -d` lists them), sources in odbc.ini. Statements go to the server as they are
/// written; its own dialect counts. No cursor of a driver is used to change rows, and a time limit
/// holds whether or not the driver knows of it. docs/databases.md tells how to set up each server.
#pragma once

namespace pelm::ado::odbc {

/// Registers the provider "MSDASQL". Thread-safe; done once, when a program starts.
void register_odbc_provider();

}  // namespace pelm::ado::odbc
