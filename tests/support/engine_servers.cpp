// Databases behind drivers, each made anew and dropped at its end.
#include "support/engine_servers.h"

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include <unistd.h>

#include "pelm/ado/connection.h"
#include "platform/ado/odbc/odbc_provider.h"
#include "platform/ado/session_pool.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace pelm::test {
namespace {

namespace fs = std::filesystem;

void register_providers() {
  ado::sqlite::register_sqlite_provider();  // some tests open a file beside
  ado::odbc::register_odbc_provider();
}

std::string unused_name() {
  static std::atomic<int> count{0};
  return "pelm_" + std::to_string(getpid()) + "_" + std::to_string(++count);
}

class MariaDbDatabase final : public FreshDatabase {
 public:
  /// `settings` go behind the connection string.
  MariaDbDatabase(const char* socket, const std::string& collation, std::string settings)
      : server_("Driver={MariaDB Unicode};Socket=" + std::string(socket) +
                ";UID=root;Charset=utf8mb4"),
        name_(unused_name()),
        settings_(std::move(settings)) {
    on_server("create database " + name_ + " character set utf8mb4 collate " + collation);
  }
  ~MariaDbDatabase() override {
    ado::empty_session_pool();
    try {
      on_server("drop database " + name_);
    } catch (const std::exception&) {
      return;  // a test has stopped the server
    }
    ado::empty_session_pool();
  }
  std::string connection_string() const override {
    return server_ + ";Database=" + name_ + settings_;
  }

 private:
  void on_server(const std::string& sql) const {
    ado::Connection connection;
    connection.Open(server_ + ";Database=mysql");
    connection.Execute(sql);
  }

  std::string server_;
  std::string name_;
  std::string settings_;
};

std::unique_ptr<FreshDatabase> create_on_mariadb(const char* collation, const char* settings) {
  register_providers();
  const char* const socket = std::getenv("PELM_TEST_MARIADB");
  if (socket == nullptr) return nullptr;
  return std::make_unique<MariaDbDatabase>(socket, collation, settings);
}

class H2Database final : public FreshDatabase {
 public:
  explicit H2Database(const std::string& port) : port_(port), name_(unused_name()) {
    run("set ignorecase true");  // texts compare as SQL Server's do
  }
  ~H2Database() override {
    ado::empty_session_pool();
    try {
      run("shutdown immediately");
    } catch (const std::exception&) {
      ado::empty_session_pool();  // it ends the connection too
    }
  }
  std::string connection_string() const override {
    return "Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=" + port_ +
           ";UID=sa;PWD=sa;Protocol=7.4-0;Database=" + name_;
  }

 private:
  void run(const std::string& sql) const {
    ado::Connection connection;
    connection.Open(connection_string());
    connection.Execute(sql);
  }

  std::string port_;
  std::string name_;
};

class PostgreSqlDatabase final : public FreshDatabase {
 public:
  explicit PostgreSqlDatabase(const std::string& folder)
      : server_("Driver={PostgreSQL Unicode};Server=" + folder + ";Port=5432;UID=postgres"),
        name_(unused_name()) {
    on_server("create database " + name_ + " template pelm_template");
  }
  ~PostgreSqlDatabase() override {
    ado::empty_session_pool();
    try {
      on_server("drop database " + name_ + " with (force)");
    } catch (const std::exception&) {
      return;  // a test has stopped the server
    }
    ado::empty_session_pool();
  }
  std::string connection_string() const override { return server_ + ";Database=" + name_; }

 private:
  void on_server(const std::string& sql) const {
    ado::Connection connection;
    connection.Open(server_ + ";Database=postgres");
    connection.Execute(sql);
  }

  std::string server_;
  std::string name_;
};

class OdbcSqliteFile final : public FreshDatabase {
 public:
  OdbcSqliteFile() : folder_(fs::temp_directory_path() / ("test-" + unused_name())) {
    fs::create_directory(folder_);
  }
  ~OdbcSqliteFile() override {
    ado::empty_session_pool();
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  std::string connection_string() const override {
    return "Driver={SQLite3};SyncPragma=OFF;Timeout=10000;Database=" +
           (folder_ / "test.db").string();
  }

 private:
  fs::path folder_;
};

bool has_driver(const std::string& name) {
  std::ifstream drivers("/etc/odbcinst.ini");
  for (std::string line; std::getline(drivers, line);) {
    if (line == "[" + name + "]") return true;
  }
  return false;
}

}  // namespace

std::unique_ptr<FreshDatabase> create_mariadb() {
  return create_on_mariadb(
      "utf8mb4_uca1400_as_ci",
      ";InitStmt={SET sql_mode=CONCAT(@@sql_mode, \",NO_BACKSLASH_ESCAPES\")}");
}

std::unique_ptr<FreshDatabase> create_mariadb_oracle() {
  return create_on_mariadb("utf8mb4_bin",
                           ";InitStmt={SET sql_mode=\"ORACLE,EMPTY_STRING_IS_NULL,"
                           "STRICT_TRANS_TABLES,ERROR_FOR_DIVISION_BY_ZERO,"
                           "NO_BACKSLASH_ESCAPES\"}");
}

void create_mariadb_counter(ado::Connection& connection) {
  connection.Execute("create table contador (valor integer not null)");
  connection.Execute("insert into contador (valor) values (5)");
  connection.Execute(
      "create procedure avancar(out novo integer) begin update contador set valor = valor + 1; "
      "select valor into novo from contador; end");
}

void create_mariadb_oracle_counter(ado::Connection& connection) {
  connection.Execute("create table contador (valor integer not null)");
  connection.Execute("insert into contador (valor) values (5)");
  connection.Execute(
      "create procedure avancar(novo out integer) as begin update contador set valor = valor + 1; "
      "select valor into novo from contador; end;");
}

std::unique_ptr<FreshDatabase> create_h2() {
  register_providers();
  const char* const port = std::getenv("PELM_TEST_H2");
  if (port == nullptr) return nullptr;
  return std::make_unique<H2Database>(port);
}

void create_h2_counter(ado::Connection& connection) {
  connection.Execute("create table contador (valor integer not null)");
  connection.Execute("insert into contador (valor) values (5)");
  connection.Execute("create table pelm_procedure (name varchar(128) primary key, script text)");
  connection.Execute(
      "insert into pelm_procedure (name, script) values ('avancar', 'select valor novo from final "
      "table (update contador set valor = valor + 1)')");
}

std::unique_ptr<FreshDatabase> create_postgresql() {
  register_providers();
  const char* const folder = std::getenv("PELM_TEST_POSTGRESQL");
  if (folder == nullptr) return nullptr;
  return std::make_unique<PostgreSqlDatabase>(folder);
}

void create_postgresql_counter(ado::Connection& connection) {
  connection.Execute("create table contador (valor integer not null)");
  connection.Execute("insert into contador (valor) values (5)");
  connection.Execute(
      "create function avancar(out novo integer) language sql as 'update contador set valor = "
      "valor + 1 returning valor'");
}

std::unique_ptr<FreshDatabase> create_odbc_sqlite() {
  register_providers();
  if (!has_driver("SQLite3")) return nullptr;
  return std::make_unique<OdbcSqliteFile>();
}

void create_odbc_sqlite_counter(ado::Connection& connection) {
  connection.Execute("create procedure avancar as begin select 1 as novo; end");
}

}  // namespace pelm::test
