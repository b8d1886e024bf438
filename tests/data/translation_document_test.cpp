// docs/translation.md is true: every example in its tables is tried.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "data/sql_translation.h"
#include "pelm/error.h"

namespace pelm::data {
namespace {

using Cells = std::vector<std::string>;

std::string without_blanks_around(const std::string& s) {
  const std::size_t first = s.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  return s.substr(first, s.find_last_not_of(' ') - first + 1);
}

// The cells of a line of a table; none for any other line. "\|" is a bar inside a cell.
Cells cells_of(const std::string& line) {
  Cells cells;
  if (!line.starts_with('|')) return cells;
  std::string cell;
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (line[i] == '\\' && i + 1 < line.size() && line[i + 1] == '|') {
      cell += line[++i];
    } else if (line[i] == '|') {
      cells.push_back(without_blanks_around(cell));
      cell.clear();
    } else {
      cell += line[i];
    }
  }
  return cells;
}

// The SQL of a cell that is one quoted text and nothing else.
std::optional<std::string> sql_of(const std::string& cell) {
  if (cell.size() < 2 || cell.front() != '`' || cell.find('`', 1) != cell.size() - 1) return {};
  return cell.substr(1, cell.size() - 2);
}

std::string translated(std::string sql) {
  translate_sql(sql, "Oracle");
  return sql;
}

// "`sql` gives `oracle`" or "`sql`".
void check_ending(const std::string& cell) {
  const std::string gives = "` gives `";
  const std::size_t at = cell.find(gives);
  if (at == std::string::npos) {
    const auto sql = sql_of(cell);
    EXPECT_TRUE(!sql || translation_ends(*sql)) << cell;
    return;
  }
  const std::string sql = cell.substr(1, at - 1);
  const std::size_t begin = at + gives.size();
  ASSERT_TRUE(translation_ends(sql)) << sql;
  EXPECT_EQ(translated(sql), cell.substr(begin, cell.size() - begin - 1));
}

void check_row(const std::string& table, const Cells& row) {
  const std::optional<std::string> sql = sql_of(row[0]);
  if (!sql) return;
  SCOPED_TRACE(*sql);
  if (table == "never ends") {
    EXPECT_FALSE(translation_ends(*sql));
    check_ending(row[2]);
  } else if (table == "statement") {
    EXPECT_THROW(translated(*sql), Error);
  } else if (const auto oracle = sql_of(row[1])) {
    ASSERT_TRUE(translation_ends(*sql));
    EXPECT_EQ(translated(*sql), *oracle);
  } else if (row[1].empty()) {
    EXPECT_FALSE(translation_ends(*sql));
  } else if (row[1] == "unchanged") {
    EXPECT_EQ(translated(*sql), *sql);
  }
}

TEST(TranslationDocument, HasOnlyTrueExamples) {
  std::ifstream file(PELM_TESTS_DIR "/../docs/translation.md");
  ASSERT_TRUE(file);
  std::map<std::string, int> rows;
  std::string table;
  for (std::string line; std::getline(file, line);) {
    const Cells cells = cells_of(line);
    if (cells.empty()) {
      table.clear();
    } else if (table.empty()) {
      table = cells[0];
    } else if (!cells[0].starts_with("--")) {
      check_row(table, cells);
      ++rows[table];
    }
  }
  EXPECT_GE(rows["SQL Server"], 30);
  EXPECT_GE(rows["statement"], 4);
  EXPECT_GE(rows["never ends"], 8);
}

}  // namespace
}  // namespace pelm::data
