// What a session knows of its database's tables.
#include "platform/ado/sqlite/catalog.h"

#include <sqlite3.h>

#include <algorithm>
#include <atomic>
#include <ctime>
#include <utility>

#include "platform/ado/sqlite/collation.h"
#include "platform/ado/sqlite/values.h"

namespace pelm::ado::sqlite {
namespace {

constexpr std::size_t kMaxTables = 256;  // beyond it the catalogue starts over

std::string column_text(sqlite3_stmt* s, int i) {
  const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(s, i));
  return text == nullptr ? std::string() : std::string(text);
}

// The last part of a name as a statement may write it: dbo.[item].
std::string bare_name(std::string_view table) {
  const std::vector<Token> tokens = tokenize(table);
  if (tokens.empty() || !tokens.back().is_name()) return std::string(table);
  return content_of(tokens.back());
}

ValueType value_type(DataTypeEnum type) {
  switch (type) {
    case adDate:
      return ValueType::Date;
    case adDouble:
      return ValueType::Numeric;
    case adSmallInt:
    case adInteger:
    case adBigInt:
      return ValueType::Integer;
    default:
      return ValueType::Other;
  }
}

// False for the columns of views.
bool is_case_blind(sqlite3* db, const std::string& table, const std::string& column) {
  const char* collation = nullptr;
  const int code = sqlite3_table_column_metadata(db, nullptr, table.c_str(), column.c_str(),
                                                 nullptr, &collation, nullptr, nullptr, nullptr);
  return code == SQLITE_OK && collation != nullptr && equal_names(collation, kCollation);
}

// Changes of definitions by any session of the program.
std::atomic<std::uint64_t> g_changes = 0;

// Cheaper than std::chrono::steady_clock, and some milliseconds coarse.
std::chrono::nanoseconds coarse_now() noexcept {
  std::timespec now{};
  clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
  return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

}  // namespace

// True for a row.
bool Catalog::step(sqlite3_stmt* statement, std::string_view sql) const {
  const int code = sqlite3_step(statement);
  if (code == SQLITE_ROW) return true;
  if (code != SQLITE_DONE) {
    database_.watchdog().restart();
    database_.fail(code, sql);
  }
  return false;
}

bool Catalog::is_trusted() const {
  return version_ != kUnknownVersion && changes_seen_ == g_changes.load() &&
         coarse_now() - looked_at_ < kTrusted;
}

void Catalog::look_at_version() {
  const std::string sql = "PRAGMA schema_version";
  database_.watchdog().restart();
  if (version_probe_ == nullptr) version_probe_ = database_.prepare(sql);
  changes_seen_ = g_changes.load();  // before: a change meanwhile makes it look again
  looked_at_ = coarse_now();
  step(version_probe_.get(), sql);
  version_ = sqlite3_column_int64(version_probe_.get(), 0);
  sqlite3_reset(version_probe_.get());
}

void Catalog::definitions_changed() {
  g_changes.fetch_add(1);
  version_ = names_version_ = kUnknownVersion;
  tables_.clear();  // what was rolled back may have had the number of what comes
}

ColumnList Catalog::describe(std::string_view written) {
  if (!is_trusted()) look_at_version();
  const auto known = tables_.find(written);
  if (known != tables_.end() && known->second.version == version_) return known->second.columns;
  if (known != tables_.end()) tables_.erase(known);
  if (tables_.size() >= kMaxTables) tables_.clear();
  ColumnList columns = read_table(bare_name(written));
  return tables_.emplace(written, Table{std::move(columns), version_}).first->second.columns;
}

// A statement that reads no row tells what is wrong with the table, a view's too. It is run: when
// it is prepared, the engine goes by the definitions that it read last.
ColumnList Catalog::read_table(const std::string& name) const {
  database_.watchdog().restart();
  const std::string sql = "SELECT * FROM " + quoted_name(name) + " LIMIT 0";
  step(database_.prepare(sql).get(), sql);
  return read_columns(name);
}

// The columns of the primary key; else of the first unique key whose columns are never null.
std::vector<std::string> Catalog::key_of(const std::string& name, bool& rowid_key) const {
  const std::string sql =
      "SELECT l.origin, l.name, i.name, x.\"notnull\" FROM pragma_index_list(?1) AS l"
      " JOIN pragma_index_info(l.name) AS i"
      " LEFT JOIN pragma_table_info(?1) AS x ON x.name = i.name"
      " WHERE l.\"unique\" AND NOT l.partial ORDER BY l.origin <> 'pk', l.seq, i.seqno";
  const StatementHandle query = database_.prepare(sql);
  sqlite3_bind_text(query.get(), 1, name.c_str(), -1, SQLITE_TRANSIENT);
  std::vector<std::string> key;
  std::string index;
  bool usable = false;
  while (step(query.get(), sql)) {
    const std::string here = column_text(query.get(), 1);
    if (here != index) {
      if (usable) break;
      index = here;
      key.clear();
      usable = true;
    }
    const bool primary = column_text(query.get(), 0) == "pk";
    usable = usable && (primary || sqlite3_column_int(query.get(), 3) != 0);
    if (primary) rowid_key = false;
    key.push_back(column_text(query.get(), 2));
  }
  return usable ? key : std::vector<std::string>{};
}

ColumnList Catalog::read_columns(const std::string& name) const {
  // Hidden columns (1) are not part of "*"; generated ones are.
  const std::string sql =
      "SELECT name, type, \"notnull\", pk FROM pragma_table_xinfo(?1) WHERE hidden <> 1 ORDER BY "
      "cid";
  const StatementHandle query = database_.prepare(sql);
  sqlite3_bind_text(query.get(), 1, name.c_str(), -1, SQLITE_TRANSIENT);
  std::vector<Column> columns;
  std::size_t primary = 0;
  std::size_t rowid_column = 0;
  bool integer_key = false;
  while (step(query.get(), sql)) {
    const std::string type = column_text(query.get(), 1);
    Column column = column_of_declaration(type);
    column.name = column_text(query.get(), 0);
    column.nullable = sqlite3_column_int(query.get(), 2) == 0;
    if (sqlite3_column_int(query.get(), 3) > 0) {
      ++primary;
      column.key = true;
      rowid_column = columns.size();
      integer_key = equal_names(type, "INTEGER");
    }
    columns.push_back(std::move(column));
  }
  // A single INTEGER key without an index of its own is the row's number, given by the engine.
  bool rowid_key = primary == 1 && integer_key;
  const std::vector<std::string> key = key_of(name, rowid_key);
  if (rowid_key) {
    columns[rowid_column].auto_number = true;
    columns[rowid_column].nullable = false;
  } else if (primary == 0) {
    for (Column& c : columns) c.key = std::find(key.begin(), key.end(), c.name) != key.end();
  }
  return std::make_shared<const Columns>(std::move(columns));
}

void Catalog::refresh() {
  look_at_version();
  if (names_version_ == version_) return;
  names_.clear();
  const std::string tables =
      "SELECT name FROM sqlite_schema WHERE type IN ('table', 'view') UNION ALL "
      "SELECT name FROM sqlite_temp_schema WHERE type IN ('table', 'view')";
  const std::string columns = "SELECT name, type FROM pragma_table_info(?1)";
  const StatementHandle outer = database_.prepare(tables);
  const StatementHandle inner = database_.prepare(columns);
  while (step(outer.get(), tables)) {
    const std::string table = column_text(outer.get(), 0);
    std::vector<NamedColumn>& list = names_[capitals(table)];
    sqlite3_bind_text(inner.get(), 1, table.c_str(), -1, SQLITE_TRANSIENT);
    // A view over a table that is gone has no columns, and is no reason to know none at all.
    while (sqlite3_step(inner.get()) == SQLITE_ROW) {
      const Column column = column_of_declaration(column_text(inner.get(), 1));
      const std::string name = column_text(inner.get(), 0);
      list.push_back(
          {name, value_type(column.type), is_case_blind(database_.handle(), table, name)});
    }
    sqlite3_reset(inner.get());
  }
  names_version_ = version_;
}

const std::vector<NamedColumn>* Catalog::find(std::string_view table) const {
  const auto found = names_.find(capitals(table));
  return found == names_.end() ? nullptr : &found->second;
}

ColumnList Catalog::result_columns(sqlite3_stmt* statement, const Translation& translation) {
  std::vector<Column> columns;
  const auto count = static_cast<std::size_t>(sqlite3_column_count(statement));
  const auto& before = translation.types_before_star;
  const auto& after = translation.types_after_star;
  for (std::size_t i = 0; i < count; ++i) {
    const auto at = static_cast<int>(i);
    const char* const declaration = sqlite3_column_decltype(statement, at);
    Column column;
    if (declaration != nullptr) {
      column = column_of_declaration(declaration);
    } else {
      const std::size_t from_end = count - i;
      ValueType type = ValueType::Other;
      if (i < before.size())
        type = before[i];
      else if (from_end <= after.size())
        type = after[after.size() - from_end];
      if (type == ValueType::Date) column.type = adDate;
      if (type == ValueType::Numeric) column.type = adDouble;
    }
    column.name = sqlite3_column_name(statement, at);
    columns.push_back(std::move(column));
  }
  return std::make_shared<const Columns>(std::move(columns));
}

}  // namespace pelm::ado::sqlite
