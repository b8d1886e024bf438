/// The database objects that the component expects, as scripts, engine by engine.
///
///     for (const auto& script : pelm::schema_scripts("sqlite")) std::cout << script.text;
///     pelm::create_schema(connection, "sqlite");
///
/// Each engine has a folder of the same name with the same files in it: tables, views where it has
/// any, functions where it lacks some, procedures, first_rows. They are part of the program; no
/// file is read. A script may be run again over a database that has its objects already.
#pragma once

#include <span>
#include <string_view>

namespace pelm::ado {
class Connection;
}

namespace pelm {

struct SchemaScript {
  std::string_view name;  ///< "tables.sql"
  std::string_view text;
};

/// In the order in which they are to be run. Empty for an engine that is not known; names compare
/// without case.
std::span<const SchemaScript> schema_scripts(std::string_view engine) noexcept;

/// The engines that have scripts.
std::span<const std::string_view> schema_engines() noexcept;

/// Runs the scripts in one transaction: all objects are made or none, but for servers that commit
/// whenever an object is made (Oracle, MariaDB): there a second run goes on where one failed.
/// Raises invalid call (5) for an engine that is not known, 3709 when the connection is closed, the
/// provider's errors with the script's name before their description.
void create_schema(ado::Connection& connection, std::string_view engine);

}  // namespace pelm
