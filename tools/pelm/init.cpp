// `pelm init`: makes the component's tables in an empty database.
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "pelm/conversions.h"
#include "pelm/error.h"
#include "schema/requirements.h"
#include "schema/schema.h"
#include "schema/server_engine.h"
#include "tools/pelm/commands.h"
#include "tools/pelm/sample_crm.h"

namespace pelm::tool {
namespace {

constexpr const char* kAbout =
    "Makes the tables, views and procedures that the component expects in a database that has\n"
    "none of them, or has them without a row. A database with data is refused and not touched.\n"
    "The database tells by itself what it is; --engine says it where it does not.\n\n"
    "  pelm init \"Driver={ODBC Driver 18 for SQL Server};Server=db.example;Database=crm;…\"\n"
    "  pelm init --sample \"DSN=crm\"";

struct InitOptions {
  std::string database;
  std::string engine;
  bool sample = false;
};

/// Rows of one table or view; none where it is not there.
std::int32_t rows_in(ado::Connection& connection, std::string_view table) {
  try {
    const auto rows = connection.Execute("select count(*) from " + std::string(table));
    return to_long(rows->Fields(0).Value());
  } catch (const Error& error) {
    if (error.number() == error_number::kNoTable) return 0;
    throw;
  }
}

/// The counter of OIDs has its row from the beginning.
void refuse_data(ado::Connection& connection) {
  std::string found;
  for (const RequiredTable& table : required_tables()) {
    if (table.name == "controlaoid") continue;
    if (rows_in(connection, table.name) == 0) continue;
    found += (found.empty() ? "" : ", ") + std::string(table.name);
  }
  if (found.empty()) return;
  throw UserError("the database has data already (" + found + "); nothing was changed", kRefused);
}

/// The statements of a script, each with ";" at the end of its last line.
std::vector<std::string> statements_of(const std::string& file) {
  std::ifstream stream(file);
  if (!stream) throw UserError("the file " + file + " cannot be read");
  std::vector<std::string> statements(1);
  for (std::string line; std::getline(stream, line);) {
    if (line.empty() || line.starts_with("--")) continue;
    const bool last = line.ends_with(';');
    if (last) line.pop_back();
    statements.back() += line + "\n";
    if (last) statements.emplace_back();
  }
  if (statements.back().empty()) statements.pop_back();
  return statements;
}

std::int32_t number(ado::Connection& connection, std::string_view sql) {
  const auto rows = connection.Execute(sql);
  return to_long(rows->Fields(0).Value());
}

/// The sample numbers its menu options itself; the engine's own numbers go on behind them.
void pass_sample_keys(ado::Connection& connection) {
  const std::int32_t last = number(connection, "select max(id) from Pelm_Menu");
  while (number(connection, "select Pelm_Menu_ID.NEXTVAL from dual") < last) continue;
}

void sow_sample(ado::Connection& connection, std::string_view engine) {
  const std::vector<std::string> statements = statements_of(find_sample_crm().seed.string());
  connection.BeginTrans();
  if (engine == "sqlserver") connection.Execute("set identity_insert Pelm_Menu on");
  for (const std::string& sql : statements) connection.Execute(sql);
  if (engine == "sqlserver") connection.Execute("set identity_insert Pelm_Menu off");
  connection.CommitTrans();
  if (engine.ends_with("oracle")) pass_sample_keys(connection);
}

int init(const InitOptions& options) {
  const auto connection = std::make_shared<ado::Connection>();
  connection->Open(options.database);
  const std::string engine = options.engine.empty() ? engine_of(*connection) : options.engine;
  if (engine.empty()) {
    throw UserError("the database does not say what it is; --engine names it", kRefused);
  }
  refuse_data(*connection);
  create_schema(*connection, engine);
  if (options.sample) sow_sample(*connection, engine);
  connection->Close();
  std::cout << "The database has the tables now (" << engine << ")"
            << (options.sample ? " and the data of the sample.\n" : ".\n");
  return kDone;
}

}  // namespace

void add_init(CLI::App& program, int& status) {
  CLI::App* command = program.add_subcommand("init", "Make the component's tables in a database");
  auto options = std::make_shared<InitOptions>();
  command->footer(kAbout);
  command->add_option("STRING", options->database, "Connection string")->required();
  command->add_option("--engine", options->engine, "The kind of database")
      ->check(CLI::IsMember(
          std::vector<std::string>(schema_engines().begin(), schema_engines().end())));
  command->add_flag("--sample", options->sample, "Put the sample's data into them");
  command->callback([options, &status] { status = init(*options); });
}

}  // namespace pelm::tool
