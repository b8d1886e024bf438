/// A driver's connection: opened within a time limit, its attributes, its transactions.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/ado/odbc/server_kind.h"
#include "platform/ado/provider.h"

namespace pelm::ado::odbc {

class Link {
 public:
  /// Raises kTimeout when the driver does not answer in time, kLoginFailed, or what the server
  /// says.
  explicit Link(const SessionSettings& settings);
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;
  ~Link();

  SQLHDBC handle() const noexcept { return dbc_; }
  ServerKind kind() const noexcept { return kind_; }
  /// The mark that encloses names; "" where the server has none.
  const std::string& quote() const noexcept { return quote_; }

  /// The nearest level that the server has; unspecified leaves what is set.
  void isolation(IsolationLevelEnum level);
  void begin();
  void commit() { end(SQL_COMMIT); }
  void rollback() { end(SQL_ROLLBACK); }
  bool in_transaction() const noexcept { return in_transaction_; }

  /// What the driver knows without asking the server.
  bool known_dead() const noexcept;
  /// Asks servers that can to forget what the last user set; others are left as they are.
  void forget_settings() noexcept;

  /// Raises the error of the connection's last call.
  [[noreturn]] void fail(std::string_view what);
  bool lost() const noexcept { return lost_; }
  void lose() noexcept;
  /// How many connections of the process were lost or could not be opened: when one is, others may
  /// be dead.
  static std::uint64_t losses() noexcept;

 private:
  void learn();
  void end(SQLSMALLINT how);
  void set_attribute(SQLINTEGER attribute, std::uintptr_t value, std::string_view what);
  std::string info_text(SQLUSMALLINT what) const;

  SQLHDBC dbc_ = SQL_NULL_HDBC;
  ServerKind kind_ = ServerKind::Other;
  std::string quote_;
  SQLUINTEGER isolation_offered_ = 0;
  SQLUINTEGER isolation_ = 0;  // 0: not known
  bool in_transaction_ = false;
  bool lost_ = false;
};

}  // namespace pelm::ado::odbc
