// Describing the columns of a result.

#include <algorithm>
#include <array>

#include "platform/ado/odbc/values.h"

namespace pelm::ado::odbc {
namespace {

// Types of one vendor, which the manager's headers do not name.
constexpr SQLSMALLINT kSqlServerVariant = -150;
constexpr SQLSMALLINT kSqlServerXml = -152;
constexpr SQLSMALLINT kSqlServerTimestampOffset = -155;

struct TypeRow {
  SQLSMALLINT sql;
  DataTypeEnum type;
  Fetch fetch;
};

constexpr std::array kTypes = {
    TypeRow{SQL_TINYINT, adSmallInt, Fetch::Whole},
    TypeRow{SQL_SMALLINT, adSmallInt, Fetch::Whole},
    TypeRow{SQL_INTEGER, adInteger, Fetch::Whole},
    TypeRow{SQL_BIGINT, adBigInt, Fetch::BigWhole},
    TypeRow{SQL_BIT, adBoolean, Fetch::Truth},
    TypeRow{SQL_REAL, adDouble, Fetch::Number},
    TypeRow{SQL_FLOAT, adDouble, Fetch::Number},
    TypeRow{SQL_DOUBLE, adDouble, Fetch::Number},
    TypeRow{SQL_DECIMAL, adDouble, Fetch::Number},
    TypeRow{SQL_NUMERIC, adDouble, Fetch::Number},
    TypeRow{SQL_TYPE_DATE, adDate, Fetch::Moment},
    TypeRow{SQL_TYPE_TIMESTAMP, adDate, Fetch::Moment},
    TypeRow{SQL_DATE, adDate, Fetch::Moment},
    TypeRow{SQL_TIMESTAMP, adDate, Fetch::Moment},
    TypeRow{kSqlServerTimestampOffset, adDate, Fetch::Moment},
    TypeRow{SQL_CHAR, adVarWChar, Fetch::Text},
    TypeRow{SQL_VARCHAR, adVarWChar, Fetch::Text},
    TypeRow{SQL_WCHAR, adVarWChar, Fetch::Text},
    TypeRow{SQL_WVARCHAR, adVarWChar, Fetch::Text},
    TypeRow{SQL_GUID, adVarWChar, Fetch::Text},
    TypeRow{kSqlServerVariant, adVarWChar, Fetch::Text},
    TypeRow{SQL_LONGVARCHAR, adLongVarWChar, Fetch::Text},
    TypeRow{SQL_WLONGVARCHAR, adLongVarWChar, Fetch::Text},
    TypeRow{kSqlServerXml, adLongVarWChar, Fetch::Text},
    TypeRow{SQL_BINARY, adBinary, Fetch::Bytes},
    TypeRow{SQL_VARBINARY, adBinary, Fetch::Bytes},
    TypeRow{SQL_LONGVARBINARY, adBinary, Fetch::Bytes},
};

constexpr SQLULEN kLongestPlainText = 8000;
/// Decimals of as many digits fit 64 bits.
constexpr SQLULEN kWholeDigits = 18;

SQLLEN attribute(SQLHSTMT statement, SQLUSMALLINT column, SQLUSMALLINT what) {
  SQLLEN value = 0;
  const SQLRETURN rc = SQLColAttributeW(statement, column, what, nullptr, 0, nullptr, &value);
  return SQL_SUCCEEDED(rc) ? value : 0;
}

void settle_type(Column& column, ResultColumn& how, SQLSMALLINT sql, SQLULEN size,
                 SQLSMALLINT digits) {
  const auto* const row = std::ranges::find(kTypes, sql, &TypeRow::sql);
  column.type = row == kTypes.end() ? adVarWChar : row->type;
  how.fetch = row == kTypes.end() ? Fetch::Text : row->fetch;
  const bool decimal = sql == SQL_DECIMAL || sql == SQL_NUMERIC;
  if (decimal && digits == 0 && size > 0 && size <= kWholeDigits) {
    column.type = adBigInt;
    how.whole = true;
  }
  if (column.type != adVarWChar) return;
  if (size > kLongestPlainText) {
    column.type = adLongVarWChar;
  } else {
    column.size = static_cast<std::int32_t>(size);
  }
}

}  // namespace

bool describe_result(SQLHSTMT statement, std::vector<Column>& columns,
                     std::vector<ResultColumn>& fetches) {
  SQLSMALLINT count = 0;
  if (!SQL_SUCCEEDED(SQLNumResultCols(statement, &count))) return false;
  std::array<char16_t, 256> name{};
  for (SQLUSMALLINT i = 1; i <= static_cast<SQLUSMALLINT>(count); ++i) {
    SQLSMALLINT length = 0;
    SQLSMALLINT sql = SQL_UNKNOWN_TYPE;
    SQLULEN size = 0;
    SQLSMALLINT digits = 0;
    SQLSMALLINT nullable = SQL_NULLABLE_UNKNOWN;
    const SQLRETURN rc =
        SQLDescribeColW(statement, i, wide(name.data()), static_cast<SQLSMALLINT>(name.size()),
                        &length, &sql, &size, &digits, &nullable);
    if (!SQL_SUCCEEDED(rc)) return false;
    Column& column = columns.emplace_back();
    const auto shown =
        std::min(name.size() - 1, static_cast<std::size_t>(std::max<int>(length, 0)));
    column.name = utf8({name.data(), shown});
    column.nullable = nullable != SQL_NO_NULLS;
    column.auto_number = attribute(statement, i, SQL_DESC_AUTO_UNIQUE_VALUE) == SQL_TRUE;
    settle_type(column, fetches.emplace_back(), sql, size, digits);
    const bool too_wide =
        (sql == SQL_INTEGER) && attribute(statement, i, SQL_DESC_UNSIGNED) == SQL_TRUE;
    if (too_wide) {
      column.type = adBigInt;
      fetches.back().fetch = Fetch::BigWhole;
    }
  }
  return true;
}

}  // namespace pelm::ado::odbc
