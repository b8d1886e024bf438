// `pelm check`: whether a database has what the component needs.
#include <iostream>
#include <memory>
#include <string>

#include "pelm/ado/connection.h"
#include "platform/ado/connection_string.h"
#include "schema/requirements.h"
#include "tools/pelm/commands.h"

namespace pelm::tool {
namespace {

constexpr const char* kAbout =
    "Connects to a database and says, table by table and column by column, what the component\n"
    "needs and what is missing. Nothing is changed. Exit status 0: all is there; 1: something is\n"
    "missing, or the database cannot be opened.\n\n"
    "With --try it also tries, in transactions that are rolled back, that a range of OIDs can be\n"
    "reserved and that a number of a sequence can be recorded once only.\n\n"
    "  pelm check \"Provider=SQLite;Data Source=crm.db\"";

struct CheckOptions {
  std::string database;
  bool try_out = false;
  bool only_problems = false;
};

struct Count {
  int good = 0;
  int bad = 0;
  void add(bool is_good) { ++(is_good ? good : bad); }
};

void print_table(const TableFinding& table, bool only_problems) {
  if (!table.found) {
    std::cout << table.table << ": MISSING (" << table.detail << ")\n";
    return;
  }
  if (table.good()) {
    if (!only_problems) {
      std::cout << table.table << ": good, " << table.columns.size()
                << (table.columns.size() == 1 ? " column\n" : " columns\n");
    }
    return;
  }
  std::cout << table.table << ":\n";
  for (const ColumnFinding& column : table.columns) {
    switch (column.verdict) {
      case ColumnFinding::Verdict::Good:
        if (!only_problems) std::cout << "  " << column.column << ": good\n";
        break;
      case ColumnFinding::Verdict::Missing:
        std::cout << "  " << column.column << ": MISSING, " << column.detail << '\n';
        break;
      case ColumnFinding::Verdict::WrongType:
        std::cout << "  " << column.column << ": WRONG TYPE, " << column.detail << '\n';
        break;
    }
  }
}

int check(const CheckOptions& options) {
  const auto connection = std::make_shared<ado::Connection>();
  connection->Open(options.database);

  Count tables;
  for (const RequiredTable& table : required_tables()) {
    const TableFinding finding = examine(*connection, table);
    print_table(finding, options.only_problems);
    tables.add(finding.good());
  }
  if (options.try_out) {
    for (const Trial& trial : try_out(*connection)) {
      if (!trial.good || !options.only_problems) {
        std::cout << trial.what << ": " << (trial.good ? "good" : "FAILS, " + trial.detail) << '\n';
      }
      tables.add(trial.good);
    }
  }
  connection->Close();

  if (tables.bad == 0) {
    std::cout << "The database has what the component needs.\n";
    return kDone;
  }
  std::cout << tables.bad << " of " << tables.good + tables.bad
            << " are not as the component needs them; `pelm schema` prints the SQL that makes "
               "them.\n";
  return kFailed;
}

}  // namespace

void add_check(CLI::App& program, int& status) {
  CLI::App* command =
      program.add_subcommand("check", "Say whether a database has what the component needs");
  auto options = std::make_shared<CheckOptions>();
  command->footer(kAbout);
  command->add_option("STRING", options->database, "Connection string")->required();
  command->add_flag("--try", options->try_out,
                    "Try ranges and unique numbers too, leaving nothing behind");
  command->add_flag("--problems", options->only_problems, "Print only what is not good");
  command->callback([options, &status] { status = check(*options); });
}

}  // namespace pelm::tool
