/// The component's connection: settings, opening and closing, running queries, opening tables.
///
///     auto conn = main.CConn();
///     conn->ConfigureConn(false, "Provider=SQLite;Data Source=crm.db");
///     conn->OpenConn();
///     auto rs = conn->RunSQL("select nome from item");
///
/// `CMain::CConn` hands out the one that a thread's `Base` works with; a `Conn` of your own is
/// apart from it. One thread at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "pelm/ado/connection.h"
#include "pelm/ado/constants.h"
#include "pelm/ado/recordset.h"
#include "pelm/object.h"

namespace pelm {

namespace data {
class AllRows;
class FirstRow;
}  // namespace data

class Conn : public Object {
 public:
  /// Time-outs of 60 seconds, SQL Server, no connection.
  Conn();

  /// The main connection: null until `OpenConn`; stays, closed, after `CloseConn`.
  const std::shared_ptr<ado::Connection>& Conex() const { return Conex_; }
  void Conex(std::shared_ptr<ado::Connection> connection) { Conex_ = std::move(connection); }
  /// The second connection, opened from the same settings by `OpenConn2`.
  const std::shared_ptr<ado::Connection>& Conex2() const { return Conex2_; }
  void Conex2(std::shared_ptr<ado::Connection> connection) { Conex2_ = std::move(connection); }

  /// Seconds a statement run directly on `Conex` may take.
  std::int16_t ODBC_COM_TIMEOUT() const { return ODBC_COM_TIMEOUT_; }
  void ODBC_COM_TIMEOUT(std::int16_t seconds) { ODBC_COM_TIMEOUT_ = seconds; }
  /// Seconds that opening may take.
  std::int16_t ODBC_CONN_TIMEOUT() const { return ODBC_CONN_TIMEOUT_; }
  void ODBC_CONN_TIMEOUT(std::int16_t seconds) { ODBC_CONN_TIMEOUT_ = seconds; }
  /// The connection string; see `ado::Connection::ConnectionString`. Default empty.
  const std::string& ODBC_STR() const { return ODBC_STR_; }
  void ODBC_STR(std::string connection_string) { ODBC_STR_ = std::move(connection_string); }
  /// The last text handed to the database by `RunSQL` or `OpenTable`.
  const std::string& LastSQL() const { return LastSQL_; }
  void LastSQL(std::string sql) { LastSQL_ = std::move(sql); }
  /// Stored for callers; plays no part in opening.
  const std::string& AuxDatabase() const { return AuxDatabase_; }
  void AuxDatabase(std::string name) { AuxDatabase_ = std::move(name); }
  /// 1 is SQL Server (and the embedded engine), 2 is Oracle. Any other value raises 1001 with the
  /// source "PelmComum2008.Conn.PropertyDatabase" and leaves the old one.
  std::int16_t Database() const { return Database_; }
  void Database(std::int16_t kind);

  /// Fills the settings: from the application variables "dataconn_…" when `pWeb` (the other
  /// arguments are then ignored), else from the arguments. What was stored before a failure stays.
  /// Raises 91 outside a page when `pWeb`, 13, 6 or 94 for a variable that does not convert, 1001
  /// for a database kind other than 1 or 2 (a missing variable is 0).
  void ConfigureConn(bool pWeb = true, std::string_view pODBC_STR = "",
                     std::int16_t pODBC_CONN_TIMEOUT = 60, std::int16_t pODBC_COM_TIMEOUT = 60,
                     std::int16_t pDatabase = 1, std::string_view pAuxDatabase = "");

  /// Opens `Conex` and returns True; True at once when its object exists, open or not. With an
  /// empty `ODBC_STR` it configures itself from the application variables first, outside the
  /// error trap. `pCursorLocation` is not used: record sets choose their own. After a failure the
  /// unopened object stays in `Conex`. Source of its errors: "PelmComum2008.Conn.OpenConn".
  bool OpenConn(ado::CursorLocationEnum pCursorLocation = ado::adUseServer);
  bool OpenConn2(ado::CursorLocationEnum pCursorLocation = ado::adUseServer);
  /// Closes an open connection; its object stays, so `OpenConn` does not reopen it: a page sets
  /// `Conex` to nothing first.
  void CloseConn();
  void CloseConn2();

  /// Runs SQL Server text on `Conex`; on Oracle it is translated first, and `Query` comes back
  /// translated. A statement without rows gives a closed record set. `PageSize` and `CacheSize`
  /// count only with adUseClient; `MaxRecords` 0 is no limit. The caller closes the record set.
  /// Source of its errors: "PelmComum2008.Conn.RunSQL"; `LastSQL` then holds the text that failed.
  std::shared_ptr<ado::Recordset> RunSQL(std::string& Query,
                                         ado::CursorTypeEnum CursorType = ado::adOpenStatic,
                                         ado::LockTypeEnum LockType = ado::adLockReadOnly,
                                         ado::CursorLocationEnum CursorLocation = ado::adUseServer,
                                         std::int32_t MaxRecords = 0, std::int32_t CacheSize = 1,
                                         std::int32_t PageSize = 10);
  /// For a text that nobody needs back.
  std::shared_ptr<ado::Recordset> RunSQL(std::string&& Query,
                                         ado::CursorTypeEnum CursorType = ado::adOpenStatic,
                                         ado::LockTypeEnum LockType = ado::adLockReadOnly,
                                         ado::CursorLocationEnum CursorLocation = ado::adUseServer,
                                         std::int32_t MaxRecords = 0, std::int32_t CacheSize = 1,
                                         std::int32_t PageSize = 10) {
    return RunSQL(Query, CursorType, LockType, CursorLocation, MaxRecords, CacheSize, PageSize);
  }

  /// Opens a whole table for adding and changing rows, reading none before it is asked to. Source
  /// of its errors: "PelmComum2008.Conn.OpenTable".
  std::shared_ptr<ado::Recordset> OpenTable(std::string_view pTableName,
                                            ado::CursorTypeEnum pCursorType = ado::adOpenKeyset,
                                            ado::LockTypeEnum pLockType = ado::adLockOptimistic);

  /// Rewrites SQL Server text as Oracle text in place and returns True. A `pservidor` of exactly
  /// "SQLSERVER" changes nothing. Some texts never end: docs/translation.md lists them. Source of
  /// its errors: "PelmComum2008.Conn.traduzsql"; the text then stays as far as it had come.
  bool traduzsql(std::string& psqlstat, std::string_view pservidor);

 private:
  friend class data::AllRows;
  friend class data::FirstRow;
  bool open(std::string_view procedure, std::shared_ptr<ado::Connection>& connection);
  void about_to_run(std::string& query);

  std::shared_ptr<ado::Connection> Conex_;
  std::shared_ptr<ado::Connection> Conex2_;
  std::string sql_server_session_statement_;
  std::string oracle_session_statement_;
  std::int16_t Database_ = 1;
  std::string ODBC_STR_;
  std::int16_t ODBC_CONN_TIMEOUT_ = 60;
  std::int16_t ODBC_COM_TIMEOUT_ = 60;
  std::string LastSQL_;
  std::string AuxDatabase_;
};

}  // namespace pelm
