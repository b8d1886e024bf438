// `pelm schema`: the SQL of the database objects that the component expects.
#include "schema/schema.h"

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "tools/pelm/commands.h"

namespace pelm::tool {
namespace {

constexpr const char* kAbout =
    "Prints the SQL that makes the tables, views and procedures which the component expects.\n"
    "It may be run again over a database that has them.\n\n"
    "  pelm schema sqlite | sqlite3 crm.db\n\n"
    "`pelm serve` does this by itself for the database that it keeps in its data folder.";

void print_scripts(const std::string& engine) {
  for (const SchemaScript& script : schema_scripts(engine)) std::cout << script.text << '\n';
}

}  // namespace

void add_schema(CLI::App& program, int& status) {
  CLI::App* command = program.add_subcommand("schema", "Print the SQL of the component's tables");
  auto engine = std::make_shared<std::string>();
  command->footer(kAbout);
  command->add_option("ENGINE", *engine, "The kind of database")
      ->required()
      ->check(CLI::IsMember(
          std::vector<std::string>(schema_engines().begin(), schema_engines().end())));
  command->callback([engine, &status] {
    print_scripts(*engine);
    status = kDone;
  });
}

}  // namespace pelm::tool
