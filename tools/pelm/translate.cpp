// `pelm translate`: SQL Server SQL in, Oracle SQL out, as the component rewrites it.
#include <iostream>
#include <iterator>
#include <string>

#include "data/sql_translation.h"
#include "pelm/error.h"
#include "tools/pelm/commands.h"

namespace pelm::tool {
namespace {

constexpr const char* kAbout =
    "Rewrites SQL Server SQL as Oracle SQL: the text comes from standard input and goes to\n"
    "standard output, rewritten as the component rewrites it for an Oracle database.\n\n"
    "The translation is plain text surgery. Some texts never end in it: those with a form whose\n"
    "closing it cannot get past, such as GETDATE() at the end of a text. Such a text is refused\n"
    "with exit status 2. A text that it cannot take apart ends with exit status 1.\n\n"
    "  echo \"select isnull(a, 0) from t\" | pelm translate";

void translate() {
  std::string sql{std::istreambuf_iterator<char>(std::cin), {}};
  if (const auto form = data::endless_form(sql)) {
    throw UserError(
        "translate: refused, because the translation of this text would never end: it "
        "stays at \"" +
            std::string(*form) + "\" for ever. Write that form differently.",
        kRefused);
  }
  try {
    data::translate_sql(sql, "Oracle");
  } catch (const Error& error) {
    throw UserError("translate: this text cannot be taken apart (" + error.description() +
                    "). What had been rewritten: " + sql);
  }
  std::cout << sql;
}

}  // namespace

void add_translate(CLI::App& program, int& status) {
  CLI::App* command = program.add_subcommand("translate", "Rewrite SQL Server SQL as Oracle SQL");
  command->footer(kAbout);
  command->callback([&status] {
    translate();
    status = kDone;
  });
}

}  // namespace pelm::tool
