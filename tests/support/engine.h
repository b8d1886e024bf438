/// The database engines that a suite over the database objects runs on.
///
///     class RecordsetRead : public pelm::test::DatabaseTest {};
///     TEST_P(RecordsetRead, …) { auto rs = query("select * from pessoa"); … }
///     PELM_ON_EVERY_ENGINE(RecordsetRead);
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"

namespace pelm::test {

/// A new, empty database, gone when this goes.
class FreshDatabase {
 public:
  virtual ~FreshDatabase() = default;
  virtual std::string connection_string() const = 0;
};

struct Engine {
  std::string_view name;
  std::string_view provider;
  /// Null where the engine does not run on this machine.
  std::unique_ptr<FreshDatabase> (*create)();
  /// Makes a table contador(valor) that holds 5 and a procedure "avancar" that adds one to it and
  /// gives it in its output parameter @novo.
  void (*create_counter)(ado::Connection&);
  /// The type of a whole-number key that the engine numbers itself, as a column is declared.
  std::string_view numbered_key;
  /// The type of a number of double precision, as a column is declared.
  std::string_view number;
  /// The types of a moment and of a truth value, as columns are declared.
  std::string_view moment = "datetime";
  std::string_view truth = "bit";
  /// A connection can be read-only.
  bool refuses_writes_in_read_mode;
  /// Whose scripts of schema/ make the component's tables; empty where it cannot work.
  std::string_view schema = {};
  /// `Conn.Database`: 1 reads SQL Server's dialect, 2 Oracle's.
  std::int16_t kind = 1;
  /// The names of a database's tables; empty where each test has a database of its own.
  std::string_view list_tables = {};
  /// Has menu options numbered from 8 on again.
  std::string_view restart_menu = {};
  /// What a ReadSnapshot reads is as its first statement found it.
  bool reads_under_one_view = false;
  /// A text may hold statements with ";" between, which saves the way to the server.
  bool takes_several_statements = false;
};

/// By its name, in the reports of tests.
inline void PrintTo(const Engine& engine, std::ostream* out) { *out << engine.name; }

const std::vector<Engine>& engines();

/// One connection to a fresh database of the engine. Fails where a session is still in use after
/// the test.
class DatabaseTest : public ::testing::TestWithParam<Engine> {
 public:
  DatabaseTest();
  ~DatabaseTest() override;

 protected:
  void SetUp() override;
  void TearDown() override;

  /// A further open connection to the same database.
  std::shared_ptr<ado::Connection> connect() const;
  std::string connection_string() const { return database_->connection_string(); }

  void run(std::string_view sql) { connection->Execute(sql); }
  /// The table pessoa(oid key, nome varchar(20) not null, peso, nascido, ativo, notas), empty.
  void create_pessoa();
  /// Adds a person through a plain statement.
  void add_pessoa(int oid, std::string_view nome);
  /// Static and read-only unless said otherwise.
  std::shared_ptr<ado::Recordset> query(std::string_view sql,
                                        ado::CursorTypeEnum cursor = ado::adOpenStatic,
                                        ado::LockTypeEnum lock = ado::adLockReadOnly);
  /// As the component opens a row that it will change: dynamic, optimistic.
  std::shared_ptr<ado::Recordset> query_for_update(std::string_view sql);
  /// As the component opens a table that it adds to: keyset, optimistic.
  std::shared_ptr<ado::Recordset> open_table(std::string_view name);
  /// The first value of the first row, read on a connection of its own; empty without a row.
  Variant stored(std::string_view sql) const;

  std::shared_ptr<ado::Connection> connection;

 private:
  std::unique_ptr<FreshDatabase> database_;
};

#define PELM_ON_EVERY_ENGINE(Suite)                                                      \
  INSTANTIATE_TEST_SUITE_P(, Suite, ::testing::ValuesIn(::pelm::test::engines()),        \
                           [](const ::testing::TestParamInfo<::pelm::test::Engine>& i) { \
                             return std::string(i.param.name);                           \
                           })

}  // namespace pelm::test
