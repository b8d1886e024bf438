/// What a session knows of tables: their columns and their keys.
#pragma once

#include <sql.h>

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/ado/provider.h"

namespace pelm::ado::odbc {

/// The columns that make up a table's key, by name; empty where there is none or the driver does
/// not tell. Asks the database.
std::vector<std::string> key_columns(SQLHSTMT statement, std::string_view table);

class Catalog {
 public:
  /// The description kept of a table, when its columns are still those in `found`; else null.
  ColumnList find(std::string_view table, std::span<const Column> found) const;
  ColumnList keep(std::string_view table, std::vector<Column> columns,
                  std::span<const std::string> key);

 private:
  std::unordered_map<std::string, ColumnList> tables_;
};

}  // namespace pelm::ado::odbc
