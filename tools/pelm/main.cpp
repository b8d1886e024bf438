// The program: finds the subcommand, runs it, and tells a failure in one line.
#include <exception>
#include <iostream>
#include <string>

#include "pelm/error.h"
#include "pelm/version.h"
#include "platform/ado/odbc/odbc_provider.h"
#include "platform/ado/sqlite/sqlite_provider.h"
#include "tools/pelm/commands.h"

namespace pelm::tool {
namespace {

constexpr const char* kAbout =
    "Runs the pages and the business component of a web CRM.\n\n"
    "Start with `pelm serve`: it shows the sample CRM on this machine.";

constexpr const char* kSeeHelp = " (`pelm --help` tells what there is)";

int tell(const std::string& what, int status) {
  std::cerr << "pelm: " << what << '\n';
  return status;
}

int run(int argc, char** argv) {
  ado::sqlite::register_sqlite_provider();
  ado::odbc::register_odbc_provider();
  int status = kDone;
  CLI::App program(kAbout, "pelm");
  program.set_version_flag("--version", "pelm " + std::string(kVersion));
  program.set_help_flag("-h,--help",
                        "Print this help; `pelm COMMAND --help` tells a command's own");
  program.set_config("--config", "", "Read options from FILE; see `pelm serve --help`")
      ->type_name("FILE");
  program.get_formatter()->column_width(32);
  program.require_subcommand(0, 1);  // none is told below: the library would not name a wrong one
  add_serve(program, status);
  add_page(program, status);
  add_schema(program, status);
  add_translate(program, status);
  add_init(program, status);
  add_check(program, status);
  add_barcode(program, status);
  add_describe(program, status);
  try {
    program.parse(argc, argv);
  } catch (const CLI::Success& asked) {
    return program.exit(asked);  // prints the help or the version
  } catch (const CLI::ParseError& wrong) {
    return tell(std::string(wrong.what()) + kSeeHelp, kRefused);
  }
  if (program.get_subcommands().empty()) {
    return tell(std::string("which command?") + kSeeHelp, kRefused);
  }
  return status;
}

}  // namespace
}  // namespace pelm::tool

int main(int argc, char** argv) {
  using namespace pelm::tool;
  try {
    return run(argc, argv);
  } catch (const UserError& error) {
    return tell(error.what(), error.status());
  } catch (const pelm::Error& error) {
    return tell(error.what(), kFailed);
  } catch (const std::exception& error) {
    return tell(error.what(), kFailed);
  }
}
