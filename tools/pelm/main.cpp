// The program: finds the subcommand, runs it, and tells a failure in one line.
#include <exception>
#include <iostream>
#include <string>

#include "pelm/error.h"
#include "pelm/version.h"
#include "tools/pelm/commands.h"

namespace pelm::tool {
namespace {

constexpr const char* kAbout =
    "Runs the pages and the business component of a web CRM.\n\n"
    "Start with `pelm serve`: it shows the sample CRM on this machine.";

int run(int argc, char** argv) {
  int status = kDone;
  CLI::App program(kAbout, "pelm");
  program.set_version_flag("--version", "pelm " + std::string(kVersion));
  program.set_help_flag("-h,--help", "Print this help; `pelm COMMAND --help` tells a command's own");
  program.get_formatter()->column_width(32);
  program.require_subcommand(1);
  add_serve(program, status);
  add_page(program, status);
  add_schema(program, status);
  add_translate(program, status);
  try {
    program.parse(argc, argv);
  } catch (const CLI::Success& asked) {
    return program.exit(asked);  // prints the help or the version
  } catch (const CLI::ParseError& wrong) {
    std::cerr << "pelm: " << wrong.what() << "\n`pelm --help` tells what there is.\n";
    return kRefused;
  }
  return status;
}

int tell(const std::string& what, int status) {
  std::cerr << "pelm: " << what << '\n';
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
