// Runs every table in cases/: every row and every result column of each.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "pelm/error.h"
#include "platform/value/case_runner.h"
#include "platform/value/case_table.h"

namespace pelm::cases {
namespace {

const std::filesystem::path kFolder =
    std::filesystem::path(PELM_TESTS_DIR) / "platform/value/cases";

std::vector<std::string> table_names() {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(kFolder)) {
    names.insert(entry.path().stem().string());
  }
  return {names.begin(), names.end()};
}

bool is_inapplicable(const std::string& file, const Row& row) {
  return std::ranges::any_of(inapplicable_rows(), [&](const Inapplicable& i) {
    return i.file == file && i.function == row.fields[0] && i.input == row.fields[1];
  });
}

const Evaluation* find_evaluation(const std::string& file, const std::string& function,
                                  const std::string& column) {
  const auto found = std::ranges::find_if(evaluations(), [&](const Evaluation& e) {
    return e.file == file && e.function == function && e.column == column;
  });
  return found == evaluations().end() ? nullptr : &*found;
}

std::string result_of(const Evaluation& evaluation, const std::string& input) {
  try {
    return evaluation.result(input);
  } catch (const Error& e) {
    return "#" + std::to_string(e.number());
  } catch (const std::exception& e) {
    return std::string("the row cannot be read: ") + e.what();
  }
}

void check_row(const std::string& file, const Table& table, const Row& row) {
  for (std::size_t column = 2; column < table.columns.size(); ++column) {
    SCOPED_TRACE(file + ".tsv:" + std::to_string(row.line) + " " + table.columns[column] + " of " +
                 row.fields[0] + "(" + row.fields[1] + ")");
    const Evaluation* evaluation = find_evaluation(file, row.fields[0], table.columns[column]);
    if (!evaluation) {
      ADD_FAILURE() << "no function is known for this column";
      continue;
    }
    const auto comparable =
        evaluation->comparable ? evaluation->comparable : [](const std::string& s) { return s; };
    EXPECT_EQ(comparable(result_of(*evaluation, row.fields[1])), comparable(row.fields[column]));
  }
}

class Cases : public testing::TestWithParam<std::string> {};

TEST_P(Cases, EveryRowHolds) {
  const Table table = read_table((kFolder / (GetParam() + ".tsv")).string());
  ASSERT_GE(table.columns.size(), 3U);
  ASSERT_FALSE(table.rows.empty());
  for (const Row& row : table.rows) {
    if (!is_inapplicable(GetParam(), row)) check_row(GetParam(), table, row);
  }
}

INSTANTIATE_TEST_SUITE_P(Table, Cases, testing::ValuesIn(table_names()),
                         [](const auto& named) { return named.param; });

TEST(CaseRunner, EveryFunctionAndEveryExceptionIsInATable) {
  const auto names = table_names();
  for (const Evaluation& e : evaluations()) {
    ASSERT_TRUE(std::ranges::count(names, e.file)) << e.file;
    const Table table = read_table((kFolder / (std::string(e.file) + ".tsv")).string());
    EXPECT_TRUE(std::ranges::count(table.columns, e.column)) << e.file << " " << e.column;
    EXPECT_TRUE(
        std::ranges::any_of(table.rows, [&](const Row& r) { return r.fields[0] == e.function; }))
        << e.file << " " << e.function;
  }
  for (const Inapplicable& i : inapplicable_rows()) {
    const Table table = read_table((kFolder / (std::string(i.file) + ".tsv")).string());
    EXPECT_TRUE(std::ranges::any_of(
        table.rows,
        [&](const Row& r) { return r.fields[0] == i.function && r.fields[1] == i.input; }))
        << i.function << " " << i.input;
  }
}

}  // namespace
}  // namespace pelm::cases
