/// Values between the system and a driver: columns described, rows read, parameters bound.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "pelm/variant.h"
#include "platform/ado/odbc/wide_text.h"
#include "platform/ado/provider.h"

namespace pelm::ado::odbc {

/// How a column is fetched.
enum class Fetch { Whole, BigWhole, Number, Truth, Moment, Text, Bytes };

struct ResultColumn {
  Fetch fetch = Fetch::Text;
  bool whole = false;  ///< a decimal without places: Long where it fits
};

/// The columns of a statement that has run or is prepared; `fetches` is how to read each. False
/// when the driver fails, which its diagnostics tell.
bool describe_result(SQLHSTMT statement, std::vector<Column>& columns,
                     std::vector<ResultColumn>& fetches);

/// Reads the column (from 0) of the current row. False when the driver fails. A column is read
/// once, and columns in their order: some drivers allow nothing else.
bool read_value(SQLHSTMT statement, std::size_t column, const ResultColumn& how, Variant& value);

/// How a driver gives the texts that a procedure writes.
enum class TextOutput {
  Wide,
  Utf8,  ///< MariaDB's driver writes them narrow whatever was asked for
};

/// What a value is bound from, alive while the statement runs.
class BoundValue {
 public:
  /// Binds to parameter `position` (from 1). A long text is given to the driver in pieces
  /// afterwards. Raises kCantConvertValue for arrays and objects.
  SQLRETURN bind_input(SQLHSTMT statement, SQLUSMALLINT position, const Variant& value);
  /// Binds a parameter of a procedure that the server writes, and reads too when it is both.
  SQLRETURN bind_argument(SQLHSTMT statement, SQLUSMALLINT position,
                          const ProcedureArgument& argument, TextOutput texts);
  /// What the server wrote, of the kind that `bind_argument` asked for.
  Variant output() const;
  /// Gives the driver the pieces of a long text.
  SQLRETURN put(SQLHSTMT statement);

 private:
  SQLRETURN bind(SQLHSTMT statement, SQLUSMALLINT position, SQLSMALLINT direction, SQLSMALLINT c,
                 SQLSMALLINT sql, SQLULEN size, SQLSMALLINT digits, SQLPOINTER at, SQLLEN room);
  SQLRETURN bind_null(SQLHSTMT statement, SQLUSMALLINT position, SQLSMALLINT sql);
  SQLRETURN bind_text(SQLHSTMT statement, SQLUSMALLINT position, std::string_view text);

  std::variant<std::monostate, SQLINTEGER, SQLDOUBLE, SQLCHAR, SQL_TIMESTAMP_STRUCT, WideText,
               std::u16string, std::string>
      value_;
  SQLLEN indicator_ = SQL_NULL_DATA;
};

/// They stay where they are while others are added.
using BoundValues = std::deque<BoundValue>;

}  // namespace pelm::ado::odbc
