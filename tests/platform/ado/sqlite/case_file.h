/// Cases kept in text files: a statement, what it becomes, what it gives.
///
///     # what the case shows
///     select top 1 oid from item
///     => select oid from item LIMIT 1
///     8
///
/// "=>" with nothing behind it does not compare the rewriting. A line after it is a row, as
/// scratch_database.h shows rows; a first line in brackets holds names and types of the columns;
/// "!! -2147217900 text" is an error with a part of its description; "(n rows changed)" is what a
/// statement without rows changed. Cases are parted by blank lines.
#pragma once

#include <string>
#include <vector>

namespace pelm::ado::sqlite::test {

struct Case {
  std::string title;
  std::string sql;
  std::string rewritten;
  std::vector<std::string> outcome;
  int line = 0;
};

/// `name` is a file beside this one. Throws when it cannot be read.
std::vector<Case> read_cases(const std::string& name);

}  // namespace pelm::ado::sqlite::test
