// Makes the embedded database through the same doors that pages use.
#include "tools/pelm/embedded_database.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <system_error>

#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/ado/connection_string.h"
#include "schema/schema.h"
#include "tools/pelm/commands.h"

namespace pelm::tool {
namespace {

namespace fs = std::filesystem;

void make_folder(const fs::path& folder) {
  std::error_code failure;
  fs::create_directories(folder, failure);
  if (failure) {
    throw UserError("the data folder " + folder.string() + " cannot be made: " + failure.message() +
                    "; --data names another");
  }
}

std::string read_file(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(stream), {}};
  if (!stream) throw UserError("the file " + file.string() + " cannot be read");
  return text;
}

bool has_items(ado::Connection& connection) {
  const auto rows = connection.Execute("select count(*) n from item");
  const bool found = to_long(rows->Fields("n").Value()) > 0;
  rows->Close();
  return found;
}

/// Looks and writes in one transaction: of several programs that start at once, one is first.
void sow(ado::Connection& connection, const std::string& sql) {
  connection.IsolationLevel(ado::adXactSerializable);
  connection.BeginTrans();
  if (!has_items(connection)) connection.Execute(sql);
  connection.CommitTrans();
}

}  // namespace

fs::path default_data_folder() {
  if (const char* data = std::getenv("XDG_DATA_HOME"); data != nullptr && *data == '/') {
    return fs::path(data) / "pelm";
  }
  const char* home = std::getenv("HOME");
  if (home == nullptr || *home == '\0') {
    throw UserError("there is no home folder to keep the database in; name a folder with --data");
  }
  return fs::path(home) / ".local/share/pelm";
}

std::string connection_string_of(const fs::path& file) {
  ado::ConnectionString settings;
  settings.set("Provider", "SQLite");
  settings.set("Data Source", file.string());
  return settings.canonical();
}

void make_embedded_database(const fs::path& file, const fs::path& seed) {
  make_folder(file.parent_path());
  const auto connection = std::make_shared<ado::Connection>();
  try {
    connection->Open(connection_string_of(file) + "Create=True");
    create_schema(*connection, "sqlite");
    if (!seed.empty()) sow(*connection, read_file(seed));
    connection->Close();
  } catch (const Error& error) {
    throw UserError("the database " + file.string() + " cannot be made or used: " +
                    error.description() + " (--data names another folder)");
  }
}

}  // namespace pelm::tool
