/// A connection to a database.
///
///     auto c = std::make_shared<pelm::ado::Connection>();
///     c->ConnectionString("Provider=SQLite;Data Source=crm.db");
///     c->Open();
///     c->Execute("delete from excluido where oid = 8");
///     c->Close();
///
/// Opening takes a pooled session of the same connection string where one is idle, closing gives
/// it back. One thread at a time. Must be owned by a shared_ptr before a command or a record set
/// uses it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "pelm/ado/constants.h"
#include "pelm/object.h"

namespace pelm::ado {

class Recordset;
class ConnectionImpl;

class Connection : public Object {
 public:
  Connection();
  ~Connection() override;  ///< An open transaction is rolled back. Never throws.

  /// `Keyword=Value;` pairs. `Provider=SQLite;Data Source=PATH` is the embedded engine; a string
  /// without `Provider` is an ODBC one. Assigning raises 3705 while open.
  const std::string& ConnectionString() const;
  void ConnectionString(std::string value);

  /// Seconds, 0 waits for ever; default 15. Assigning raises 3705 while open, 3001 below 0.
  std::int32_t ConnectionTimeout() const;
  void ConnectionTimeout(std::int32_t seconds);
  /// Seconds, 0 waits for ever; default 30. Used by `Execute` and by record sets opened from a
  /// text; a command has its own. Raises 3001 below 0.
  std::int32_t CommandTimeout() const;
  void CommandTimeout(std::int32_t seconds);
  /// Default adModeUnknown. adModeRead refuses writes. Assigning raises 3705 while open.
  ConnectModeEnum Mode() const;
  void Mode(ConnectModeEnum mode);
  /// Default adUseServer; the default of record sets opened on this connection.
  CursorLocationEnum CursorLocation() const;
  void CursorLocation(CursorLocationEnum location);
  /// Default adXactReadCommitted. Used by the next `BeginTrans`.
  IsolationLevelEnum IsolationLevel() const;
  void IsolationLevel(IsolationLevelEnum level);
  /// The provider's name, "SQLite" or "MSDASQL" (ODBC).
  std::string Provider() const;
  /// Of the database objects whose behaviour this is: "2.5".
  std::string Version() const;
  ObjectStateEnum State() const;

  /// Raises 3705 when open; the provider's error when the database cannot be reached; 3706 for an
  /// unknown provider. `connection_string` replaces the property when not empty; user and
  /// password join the string when not empty.
  void Open(std::string_view connection_string = {}, std::string_view user = {},
            std::string_view password = {}, std::int32_t options = adOptionUnspecified);
  /// Closes the record sets on it, dropping their pending edits, and detaches its commands.
  /// Raises 3704 when closed, 3246 inside a transaction.
  void Close();

  /// Runs a statement at once. Returns its rows (forward-only, read-only), or a closed record set
  /// when it has none. `records_affected`, where given, receives the count of changed rows, -1 for
  /// a statement that changes none by its nature. `options`: a CommandTypeEnum, and
  /// adExecuteNoRecords to drop the rows. Raises 3709 when closed.
  std::shared_ptr<Recordset> Execute(std::string_view command_text,
                                     std::int32_t* records_affected = nullptr,
                                     std::int32_t options = adOptionUnspecified);

  /// Returns the nesting level, always 1: a transaction inside a transaction is refused by the
  /// provider. Raises 3704 when closed.
  std::int32_t BeginTrans();
  /// Raise the provider's error when no transaction is open, 3704 when closed.
  void CommitTrans();
  void RollbackTrans();

 private:
  friend class ConnectionImpl;
  std::unique_ptr<ConnectionImpl> impl_;
};

}  // namespace pelm::ado
