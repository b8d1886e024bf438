/// What a session knows of its database's tables, never older than the database itself.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/provider.h"
#include "platform/ado/sqlite/database.h"
#include "platform/ado/sqlite/dialect.h"
#include "platform/ado/sqlite/statement_cache.h"

namespace pelm::ado::sqlite {

using SharedColumns = std::shared_ptr<const std::vector<Column>>;

class Catalog : public SchemaNames {
 public:
  explicit Catalog(Database& database) : database_(database) {}

  /// One run of a kept statement that reads no row tells whether the table is still as it was.
  /// Raises kNoTable.
  SharedColumns describe(std::string_view written);

  /// Before `find`: reads the names again when the database's schema has changed.
  void refresh();
  const std::vector<NamedColumn>* find(std::string_view table) const override;

  /// The columns of a statement's result; types of expressions are known from its translation.
  SharedColumns result_columns(sqlite3_stmt* statement, const Translation& translation);

  /// After a statement of this session that may have changed temporary objects.
  void forget() { version_ = kUnknownVersion; }

 private:
  static constexpr std::int64_t kUnknownVersion = -1;
  struct Table {
    std::string name;
    std::string sql;
    std::unique_ptr<Prepared> probe;
    SharedColumns columns;
    int preparations = 0;
  };
  std::unique_ptr<Prepared> prepare(const std::string& sql) const;
  bool step(const Prepared& prepared, const std::string& sql) const;
  Table new_table(std::string_view written) const;
  SharedColumns read_columns(const std::string& name) const;
  std::vector<std::string> key_of(const std::string& name, bool& rowid_key) const;

  Database& database_;
  std::map<std::string, Table, std::less<>> tables_;  // by the name as it was written
  std::map<std::string, std::vector<NamedColumn>, std::less<>> names_;
  std::unique_ptr<Prepared> version_probe_;
  std::int64_t version_ = kUnknownVersion;
};

}  // namespace pelm::ado::sqlite
