// Keys of tables, and descriptions kept.
#include "platform/ado/odbc/catalog.h"

#include <sqlext.h>

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "platform/ado/name_compare.h"
#include "platform/ado/odbc/values.h"
#include "platform/ado/odbc/wide_text.h"
#include "platform/value/text.h"

namespace pelm::ado::odbc {
namespace {

/// Pages name a few dozen tables; a program that names more starts over now and then.
constexpr std::size_t kMostTables = 256;

struct TableName {
  std::string qualifier;  // empty: the session's own
  std::string name;
};

/// The last two parts of a name, without the marks around them.
TableName parts_of(std::string_view table) {
  TableName parts;
  std::string part;
  char closing = '\0';
  for (const char c : table) {
    if (closing != '\0' && c == closing) {
      closing = '\0';
    } else if (closing == '\0' && (c == '"' || c == '`' || c == '[')) {
      closing = c == '[' ? ']' : c;
    } else if (closing == '\0' && c == '.') {
      parts.qualifier = std::exchange(part, {});
    } else {
      part += c;
    }
  }
  parts.name = std::move(part);
  return parts;
}

/// A name for a catalogue function; null where there is none.
struct NameArgument {
  explicit NameArgument(std::string_view name) : text(name) {}
  SQLWCHAR* data() { return text.size() == 0 ? nullptr : text.data(); }
  SQLSMALLINT size() const { return static_cast<SQLSMALLINT>(text.size()); }
  WideText text;
};

std::string text_of(SQLHSTMT statement, std::size_t column) {
  Variant value;
  const bool read = read_value(statement, column, {Fetch::Text, false}, value);
  return read && value.is_text() ? value.text() : std::string();
}

// A server has schemas or catalogues or both: the qualifier is tried as the one it may be.
std::vector<std::string> primary_key(SQLHSTMT statement, const TableName& table) {
  constexpr std::size_t kColumnName = 3;
  constexpr SQLSMALLINT kNone = 0;
  NameArgument qualifier(table.qualifier);
  NameArgument name(table.name);
  std::vector<std::string> key;
  for (const bool as_schema : {true, false}) {
    const SQLRETURN rc = SQLPrimaryKeysW(
        statement, as_schema ? nullptr : qualifier.data(), as_schema ? kNone : qualifier.size(),
        as_schema ? qualifier.data() : nullptr, as_schema ? qualifier.size() : kNone, name.data(),
        name.size());
    while (SQL_SUCCEEDED(rc) && SQL_SUCCEEDED(SQLFetch(statement))) {
      key.push_back(text_of(statement, kColumnName));
    }
    SQLFreeStmt(statement, SQL_CLOSE);
    if (!key.empty() || table.qualifier.empty()) break;
  }
  return key;
}

std::vector<std::string> unique_index(SQLHSTMT statement, const TableName& table) {
  constexpr std::size_t kIndexName = 5;
  constexpr std::size_t kColumnName = 8;
  NameArgument qualifier(table.qualifier);
  NameArgument name(table.name);
  std::map<std::string, std::vector<std::string>> indexes;
  const SQLRETURN rc = SQLStatisticsW(statement, nullptr, 0, qualifier.data(), qualifier.size(),
                                      name.data(), name.size(), SQL_INDEX_UNIQUE, SQL_QUICK);
  while (SQL_SUCCEEDED(rc) && SQL_SUCCEEDED(SQLFetch(statement))) {
    const std::string index = text_of(statement, kIndexName);
    if (!index.empty()) indexes[index].push_back(text_of(statement, kColumnName));
  }
  SQLFreeStmt(statement, SQL_CLOSE);
  return indexes.empty() ? std::vector<std::string>() : indexes.begin()->second;
}

bool same_column(const Column& a, const Column& b) {
  return a.name == b.name && a.type == b.type && a.size == b.size && a.nullable == b.nullable &&
         a.auto_number == b.auto_number;
}

}  // namespace

// Catalogue functions know a name only in the letters that the server stores.
std::vector<std::string> key_columns(SQLHSTMT statement, std::string_view table) {
  const TableName written = parts_of(table);
  const std::array spellings = {
      written, TableName{text::lower(written.qualifier), text::lower(written.name)},
      TableName{text::upper(written.qualifier), text::upper(written.name)}};
  for (const auto find : {&primary_key, &unique_index}) {
    for (const TableName& name : spellings) {
      std::vector<std::string> key = find(statement, name);
      if (!key.empty()) return key;
    }
  }
  return {};
}

ColumnList Catalog::find(std::string_view table, std::span<const Column> found) const {
  const auto known = tables_.find(text::lower(table));
  if (known == tables_.end() || !std::ranges::equal(*known->second, found, same_column)) {
    return nullptr;
  }
  return known->second;
}

ColumnList Catalog::keep(std::string_view table, std::vector<Column> columns,
                         std::span<const std::string> key) {
  for (Column& c : columns) {
    c.key = std::ranges::any_of(key, [&](const std::string& k) { return same_name(k, c.name); });
  }
  if (tables_.size() >= kMostTables) tables_.clear();
  auto kept = std::make_shared<const Columns>(std::move(columns));
  tables_[text::lower(table)] = kept;
  return kept;
}

}  // namespace pelm::ado::odbc
