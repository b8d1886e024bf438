/// What a session knows of its database's tables.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/provider.h"
#include "platform/ado/sqlite/database.h"
#include "platform/ado/sqlite/dialect.h"

namespace pelm::ado::sqlite {

/// What it says is as new as the database: the engine is asked for the number of its definitions,
/// which costs as much as a short query. So `describe` asks again only after `kTrusted`: until then
/// a table that another program has altered is described as it was. What any session of this
/// program alters is seen at once.
class Catalog : public SchemaNames {
 public:
  static constexpr std::chrono::milliseconds kTrusted{10};

  explicit Catalog(Database& database) : database_(database) {}

  /// Raises kNoTable.
  ColumnList describe(std::string_view written);

  /// Before `find`: reads the names again when the definitions have changed.
  void refresh();
  const std::vector<NamedColumn>* find(std::string_view table) const override;

  /// The columns of a statement's result; types of expressions are known from its translation.
  ColumnList result_columns(sqlite3_stmt* statement, const Translation& translation);

  /// After a statement of this session that may have changed definitions, and after the end of a
  /// transaction in which one did.
  void definitions_changed();

 private:
  static constexpr std::int64_t kUnknownVersion = -1;
  struct Table {
    ColumnList columns;
    std::int64_t version;  // of the definitions that it was read from
  };
  bool step(sqlite3_stmt* statement, std::string_view sql) const;
  bool is_trusted() const;
  void look_at_version();
  ColumnList read_table(const std::string& name) const;
  ColumnList read_columns(const std::string& name) const;
  std::vector<std::string> key_of(const std::string& name, bool& rowid_key) const;

  Database& database_;
  std::map<std::string, Table, std::less<>> tables_;  // by the name as it was written
  std::map<std::string, std::vector<NamedColumn>, std::less<>> names_;
  std::int64_t names_version_ = kUnknownVersion;
  StatementHandle version_probe_;
  std::int64_t version_ = kUnknownVersion;  // of the definitions, when it was last looked at
  std::chrono::nanoseconds looked_at_{0};   // on the coarse clock
  std::uint64_t changes_seen_ = 0;          // of all sessions of the program, up to then
};

}  // namespace pelm::ado::sqlite
