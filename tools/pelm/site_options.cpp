// From what a user gave, or did not, to a site with an open door to its database.
#include "tools/pelm/site_options.h"

#include "pelm/ado/connection.h"
#include "pelm/error.h"
#include "platform/ado/connection_string.h"
#include "platform/page/application.h"
#include "tools/pelm/commands.h"
#include "tools/pelm/embedded_database.h"
#include "tools/pelm/sample_crm.h"

namespace pelm::tool {
namespace {

namespace fs = std::filesystem;

fs::path database_file(const SiteOptions& options) {
  return (options.data.empty() ? default_data_folder() : fs::absolute(options.data)) / "crm.db";
}

/// The sample's items belong to the sample's pages alone.
fs::path seed_for(const fs::path& root) {
  try {
    const SampleCrm sample = find_sample_crm();
    std::error_code failure;
    if (fs::equivalent(sample.site, root, failure)) return sample.seed;
  } catch (const UserError&) {
    // No sample is installed here.
  }
  return {};
}

/// A wrong string or an unreachable database is told now, not by every page.
void try_to_open(const std::string& connection_string, std::int16_t timeout) {
  const auto connection = std::make_shared<ado::Connection>();
  try {
    connection->ConnectionString(connection_string);
    connection->ConnectionTimeout(timeout);
    connection->Open();
    connection->Close();
  } catch (const Error& error) {
    throw UserError("the database that --database names cannot be opened: " + error.description());
  }
}

}  // namespace

void add_site_options(CLI::App& command, SiteOptions& options) {
  command.add_option("--root", options.root, "Folder of the pages (default: the sample CRM)")
      ->type_name("DIR");
  command
      .add_option("--data", options.data,
                  "Folder of the embedded database crm.db, which is made when it is missing\n"
                  "(default: ~/.local/share/pelm)")
      ->type_name("DIR");
  command
      .add_option("--database", options.database,
                  "Connection string of another database, for example\n"
                  "\"Provider=SQLite;Data Source=/srv/crm.db\"")
      ->type_name("STRING");
  command.add_option("--kind", options.kind, "1: SQL Server or embedded; 2: Oracle")
      ->type_name("N")
      ->capture_default_str()
      ->check(CLI::IsMember({1, 2}).description(""));
  command.add_option("--connect-timeout", options.connect_timeout, "Seconds to open a connection")
      ->type_name("N")
      ->capture_default_str()
      ->check(CLI::Range(0, 32767).description(""));
  command.add_option("--command-timeout", options.command_timeout, "Seconds to run a statement")
      ->type_name("N")
      ->capture_default_str()
      ->check(CLI::Range(0, 32767).description(""));
}

fs::path chosen_root(const SiteOptions& options) {
  return options.root.empty() ? find_sample_crm().site : fs::path(options.root);
}

Site prepare_site(const SiteOptions& options, const fs::path& root) {
  std::error_code failure;
  if (!fs::is_directory(root, failure)) {
    throw UserError("the folder " + root.string() + " is not there; --root names another");
  }
  const fs::path real_root = fs::canonical(root);
  if (options.database.empty()) {
    const fs::path file = database_file(options);
    make_embedded_database(file, seed_for(real_root));
    return {real_root, connection_string_of(file), file.string()};
  }
  try_to_open(options.database, options.connect_timeout);
  return {real_root, options.database,
          ado::ConnectionString::parse(options.database).for_display()};
}

void set_application_variables(page::Application& application, const SiteOptions& options,
                               const Site& site) {
  application.Value("dataconn_ConnectionString", site.connection_string);
  application.Value("dataconn_ConnectionTimeout", options.connect_timeout);
  application.Value("dataconn_CommandTimeout", options.command_timeout);
  application.Value("dataconn_Database", options.kind);
  application.Value("dataconn_AuxDatabase", "");
}

}  // namespace pelm::tool
