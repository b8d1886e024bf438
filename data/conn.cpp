// Connection settings, opening and closing.
#include "pelm/conn.h"

#include <memory>

#include "frame/error_trap.h"
#include "frame/mod_principal.h"
#include "frame/page_context.h"
#include "pelm/conversions.h"
#include "pelm/error.h"

namespace pelm {
namespace {

constexpr std::string_view kSqlServerSession = "set language portuguese";
constexpr std::string_view kOracleSession =
    "ALTER SESSION SET NLS_DATE_FORMAT = 'YYYY MM DD HH24:MI:SS' NLS_NUMERIC_CHARACTERS = ',.'";
constexpr std::int16_t kDefaultTimeout = 60;
constexpr std::int16_t kSqlServer = 1;
constexpr std::int16_t kOracle = 2;

void close_if_open(const std::shared_ptr<ado::Connection>& connection) {
  if (connection && connection->State() == ado::adStateOpen) connection->Close();
}

}  // namespace

Conn::Conn()
    : sql_server_session_statement_(kSqlServerSession), oracle_session_statement_(kOracleSession) {
  frame::start_thread();
  ODBC_CONN_TIMEOUT(kDefaultTimeout);
  ODBC_COM_TIMEOUT(kDefaultTimeout);
  Database(kSqlServer);
}

void Conn::Database(std::int16_t kind) {
  if (kind != kSqlServer && kind != kOracle) {
    throw Error(error_number::kComponent, "PelmComum2008.Conn.PropertyDatabase",
                "Valor da propriedade pode ser apenas 1 para SQLServer e 2 para Oracle");
  }
  Database_ = kind;
}

void Conn::ConfigureConn(bool pWeb, std::string_view pODBC_STR, std::int16_t pODBC_CONN_TIMEOUT,
                         std::int16_t pODBC_COM_TIMEOUT, std::int16_t pDatabase,
                         std::string_view pAuxDatabase) {
  if (pWeb) {
    using frame::application_variable;
    ODBC_CONN_TIMEOUT(to_integer(application_variable("dataconn_ConnectionTimeout")));
    ODBC_COM_TIMEOUT(to_integer(application_variable("dataconn_CommandTimeout")));
    ODBC_STR(to_text(application_variable("dataconn_ConnectionString")));
    Database(to_integer(application_variable("dataconn_Database")));
    AuxDatabase(to_text(application_variable("dataconn_AuxDatabase")));
    return;
  }
  ODBC_CONN_TIMEOUT(pODBC_CONN_TIMEOUT);
  ODBC_COM_TIMEOUT(pODBC_COM_TIMEOUT);
  ODBC_STR(std::string(pODBC_STR));
  Database(pDatabase);
  AuxDatabase(std::string(pAuxDatabase));
}

bool Conn::OpenConn(ado::CursorLocationEnum) { return open("OpenConn", Conex_); }

bool Conn::OpenConn2(ado::CursorLocationEnum) { return open("OpenConn2", Conex2_); }

bool Conn::open(std::string_view procedure, std::shared_ptr<ado::Connection>& connection) {
  // kept: an object that exists is taken for an open connection, closed or not.
  if (connection) return true;
  // kept: before the trap is armed, so its failures keep their own source.
  if (ODBC_STR_.empty()) ConfigureConn();

  return frame::error_trap("Conn", procedure, [&] {
    connection = std::make_shared<ado::Connection>();
    connection->ConnectionString(ODBC_STR_);
    connection->ConnectionTimeout(ODBC_CONN_TIMEOUT_);
    connection->CommandTimeout(ODBC_COM_TIMEOUT_);
    connection->Open();
    try {
      // kept: sent to Oracle too, where it fails; the Oracle statement is never sent.
      connection->Execute(sql_server_session_statement_);
    } catch (const Error&) {
      // A database that does not know the statement serves as well without it.
    }
    return true;
  });
}

void Conn::CloseConn() { close_if_open(Conex_); }

void Conn::CloseConn2() { close_if_open(Conex2_); }

}  // namespace pelm
