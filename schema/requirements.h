/// What the component needs to find in a database, whatever the engine: tables, views, columns and
/// the kind of value each holds.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pelm::ado {
class Connection;
}

namespace pelm {

enum class ValueNeeded { Whole, Number, Text, DateTime };

struct RequiredColumn {
  std::string_view name;
  ValueNeeded value = ValueNeeded::Whole;
};

/// A table or a view; the component does not ask which.
struct RequiredTable {
  std::string_view name;
  std::vector<RequiredColumn> columns;
};

/// In the order in which they are best read: items first.
std::span<const RequiredTable> required_tables();

/// How a column of a database stands against what is needed.
struct ColumnFinding {
  enum class Verdict { Good, Missing, WrongType };
  std::string_view column;
  Verdict verdict = Verdict::Good;
  std::string detail;  ///< for people: what was found instead
};

struct TableFinding {
  std::string_view table;
  bool found = false;
  std::string detail;  ///< what the database said when it is not there
  std::vector<ColumnFinding> columns;

  bool good() const;
};

/// Looks at one table without reading or changing a row. Raises what the database raises other
/// than a missing table.
TableFinding examine(ado::Connection& connection, const RequiredTable& table);

/// What was tried in a transaction that is rolled back, and how it went.
struct Trial {
  std::string_view what;
  bool good = false;
  std::string detail;
};

/// Tries what cannot be seen from outside: that "atualoid" gives a range, and that a number of a
/// sequence can be recorded once only. Leaves nothing behind.
std::vector<Trial> try_out(ado::Connection& connection);

}  // namespace pelm
