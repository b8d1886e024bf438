/// What `serve` and `page` both ask for: which site, which database, and what pages learn of it.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <filesystem>
#include <string>

namespace pelm::page {
class Application;
}

namespace pelm::tool {

struct SiteOptions {
  std::string root;                   ///< empty: the sample CRM
  std::string database;               ///< a connection string; empty: an embedded file in `data`
  std::filesystem::path data;         ///< the folder of that file
  std::int16_t kind = 1;              ///< of database: 1 SQL Server or the embedded one, 2 Oracle
  std::int16_t connect_timeout = 60;  ///< seconds
  std::int16_t command_timeout = 60;  ///< seconds
};

/// Adds the options, with what they are when nobody gives them.
void add_site_options(CLI::App& command, SiteOptions& options);

/// A site that is ready to run.
struct Site {
  std::filesystem::path root;
  std::string connection_string;
  std::string database_shown;  ///< for messages: without passwords
};

/// Finds the pages in `root`, and makes the embedded database when it is missing (with the sample's
/// items for the sample's pages). Raises UserError for a folder that is not there or cannot be
/// written, and for a database that cannot be opened.
Site prepare_site(const SiteOptions& options, const std::filesystem::path& root);

/// `root` as given, else the sample's.
std::filesystem::path chosen_root(const SiteOptions& options);

/// The variables that `Conn.ConfigureConn` reads.
void set_application_variables(page::Application& application, const SiteOptions& options,
                               const Site& site);

}  // namespace pelm::tool
