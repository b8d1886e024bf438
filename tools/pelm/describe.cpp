// `pelm describe`: the type library, for people and for tools.
#include "automation/describe.h"

#include <iostream>
#include <memory>
#include <string>

#include "pelm/error.h"
#include "tools/pelm/commands.h"

namespace pelm::tool {
namespace {

constexpr const char* kAbout =
    "Prints what pages may call: the classes, a class with its members, or a member with its\n"
    "arguments. Names in any case. In a signature, & marks an argument that comes back changed\n"
    "and [ ] one that may be left out.\n\n"
    "  pelm describe\n"
    "  pelm describe Base\n"
    "  pelm describe Base.cadastrar_item";

std::string description(const std::string& name, bool as_json) {
  if (name.empty()) {
    return as_json ? automation::describe_all_as_json() : automation::describe_classes();
  }
  try {
    return as_json ? automation::describe_as_json(name) : automation::describe(name);
  } catch (const Error& e) {
    throw UserError("describe: " + e.description(), kRefused);
  }
}

}  // namespace

void add_describe(CLI::App& program, int& status) {
  CLI::App* command = program.add_subcommand("describe", "Print what pages may call");
  auto name = std::make_shared<std::string>();
  auto as_json = std::make_shared<bool>(false);
  command->footer(kAbout);
  command->add_option("CLASS[.MEMBER]", *name, "What to describe; all classes when left out");
  command->add_flag("--json", *as_json, "As JSON");
  command->callback([name, as_json, &status] {
    std::cout << description(*name, *as_json);
    status = kDone;
  });
}

}  // namespace pelm::tool
