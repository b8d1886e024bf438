/// Reads a table of cases: one header line, columns parted by tabs, \t \n \r \\ \uXXXX inside.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pelm::cases {

struct Row {
  std::size_t line;                 ///< In the file, from 1.
  std::vector<std::string> fields;  ///< As many as the table has columns.
};

struct Table {
  std::vector<std::string> columns;
  std::vector<Row> rows;
};

/// Throws std::runtime_error, naming file and line, for a file that cannot be read, a row with
/// another number of columns than the header, or an unknown escape.
Table read_table(const std::string& path);

/// `s` between separators; always at least one piece.
std::vector<std::string> split(std::string_view s, std::string_view separator);

}  // namespace pelm::cases
