// The engines, and a connection to each for a test.
#include "support/engine.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include <unistd.h>

#include "platform/ado/session_pool.h"
#include "platform/ado/sqlite/sqlite_provider.h"
#include "support/engine_gaps.h"
#include "support/engine_servers.h"

namespace pelm::test {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kTablesOnMariaDb =
    "select table_name from information_schema.tables where table_schema = database() and "
    "table_type = 'BASE TABLE'";
constexpr std::string_view kPublicTables =
    "select table_name from information_schema.tables where table_schema = 'public' and "
    "table_type = 'BASE TABLE'";

class TemporaryFile final : public FreshDatabase {
 public:
  TemporaryFile() {
    std::string name = (fs::temp_directory_path() / "pelm-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
      throw std::system_error(errno, std::generic_category(), "cannot make a temporary folder");
    }
    folder_ = name;
    ado::Connection().Open(connection_string() + ";Create=True");
  }
  ~TemporaryFile() override {
    ado::empty_session_pool();
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  std::string connection_string() const override {
    return "Provider=SQLite;Synchronous=Off;Data Source=" + (folder_ / "test.db").string();
  }

 private:
  fs::path folder_;
};

std::unique_ptr<FreshDatabase> create_sqlite() {
  ado::sqlite::register_sqlite_provider();
  return std::make_unique<TemporaryFile>();
}

void create_sqlite_counter(ado::Connection& connection) {
  connection.Execute("create table contador (valor integer not null)");
  connection.Execute("insert into contador (valor) values (5)");
  connection.Execute(
      "create table pelm_procedure (name varchar(128) primary key, parameters text, script text)");
  connection.Execute(
      "insert into pelm_procedure (name, parameters, script) values ('avancar', "
      "'@novo integer output', 'update contador set valor = valor + 1; "
      "select valor as novo from contador')");
}

}  // namespace

const std::vector<Engine>& engines() {
  static const std::vector<Engine> kEngines = {
      {.name = "SQLite",
       .provider = "SQLite",
       .create = create_sqlite,
       .create_counter = create_sqlite_counter,
       .numbered_key = "integer primary key",
       .number = "float",
       .refuses_writes_in_read_mode = true,
       .schema = "sqlite",
       .reads_under_one_view = true},
      {.name = "MariaDB",
       .provider = "MSDASQL",
       .create = create_mariadb,
       .create_counter = create_mariadb_counter,
       .numbered_key = "integer auto_increment primary key",
       .number = "double",
       .refuses_writes_in_read_mode = false,
       .schema = "mariadb",
       .list_tables = kTablesOnMariaDb,
       .restart_menu = "alter table Pelm_Menu auto_increment = 8"},
      {.name = "MariaDBOracle",
       .provider = "MSDASQL",
       .create = create_mariadb_oracle,
       .create_counter = create_mariadb_oracle_counter,
       .numbered_key = "integer auto_increment primary key",
       .number = "double",
       .refuses_writes_in_read_mode = false,
       .schema = "mariadb-oracle",
       .kind = 2,
       .list_tables = kTablesOnMariaDb,
       .restart_menu = "alter sequence Pelm_Menu_ID restart with 8"},
      {.name = "H2",
       .provider = "MSDASQL",
       .create = create_h2,
       .create_counter = create_h2_counter,
       .numbered_key = "integer identity(1, 1) primary key",
       .number = "float",
       .refuses_writes_in_read_mode = false,
       .schema = "h2",
       .list_tables = kPublicTables,
       .restart_menu = "alter table Pelm_Menu alter column id restart with 8",
       .takes_several_statements = true},
      {.name = "PostgreSql",
       .provider = "MSDASQL",
       .create = create_postgresql,
       .create_counter = create_postgresql_counter,
       .numbered_key = "serial primary key",
       .number = "double precision",
       .moment = "timestamp(0)",
       .truth = "boolean",
       .refuses_writes_in_read_mode = false,
       .schema = "postgresql",
       .kind = 2,
       .list_tables = kPublicTables,
       .restart_menu = "alter sequence Pelm_Menu_ID restart with 8",
       .takes_several_statements = true},
      {.name = "OdbcSQLite",
       .provider = "MSDASQL",
       .create = create_odbc_sqlite,
       .create_counter = create_odbc_sqlite_counter,
       .numbered_key = "integer primary key autoincrement",
       .number = "double",
       .refuses_writes_in_read_mode = false},
  };
  return kEngines;
}

DatabaseTest::DatabaseTest() = default;
DatabaseTest::~DatabaseTest() = default;

void DatabaseTest::SetUp() {
  if (const std::string gap = gap_of_running_test(GetParam().name); !gap.empty()) {
    GTEST_SKIP() << GetParam().name << ": " << gap;
  }
  database_ = GetParam().create();
  if (database_ == nullptr) GTEST_SKIP() << GetParam().name << " does not run here";
  connection = connect();
}

void DatabaseTest::TearDown() {
  connection.reset();
  EXPECT_EQ(ado::session_counts().in_use, 0U) << "a session was leaked";
  database_.reset();
}

std::shared_ptr<ado::Connection> DatabaseTest::connect() const {
  auto opened = std::make_shared<ado::Connection>();
  opened->Open(connection_string());
  return opened;
}

void DatabaseTest::create_pessoa() {
  run("create table pessoa (oid integer not null primary key, nome varchar(20) not null, "
      "peso " +
      std::string(GetParam().number) + ", nascido " + std::string(GetParam().moment) + ", ativo " +
      std::string(GetParam().truth) + ", notas text)");
}

void DatabaseTest::add_pessoa(int oid, std::string_view nome) {
  run("insert into pessoa (oid, nome) values (" + std::to_string(oid) + ", '" + std::string(nome) +
      "')");
}

std::shared_ptr<ado::Recordset> DatabaseTest::query(std::string_view sql,
                                                    ado::CursorTypeEnum cursor,
                                                    ado::LockTypeEnum lock) {
  auto rs = std::make_shared<ado::Recordset>();
  rs->Open(sql, connection, cursor, lock, ado::adCmdText);
  return rs;
}

std::shared_ptr<ado::Recordset> DatabaseTest::query_for_update(std::string_view sql) {
  return query(sql, ado::adOpenDynamic, ado::adLockOptimistic);
}

std::shared_ptr<ado::Recordset> DatabaseTest::open_table(std::string_view name) {
  auto rs = std::make_shared<ado::Recordset>();
  rs->Open(name, connection, ado::adOpenKeyset, ado::adLockOptimistic, ado::adCmdTable);
  return rs;
}

Variant DatabaseTest::stored(std::string_view sql) const {
  const auto rs = connect()->Execute(sql);
  return rs->Eof() ? Variant() : rs->Fields(0).Value();
}

}  // namespace pelm::test
