// Reading the columns of a row.

#include <array>
#include <cmath>
#include <limits>

#include "platform/ado/odbc/values.h"

namespace pelm::ado::odbc {
namespace {

using Long = std::numeric_limits<std::int32_t>;

SQLUSMALLINT number_of(std::size_t column) { return static_cast<SQLUSMALLINT>(column + 1); }

/// A value of fixed size; `value` stays null where the column is.
template <class C, class Convert>
bool read_fixed(SQLHSTMT statement, std::size_t column, SQLSMALLINT type, Variant& value,
                Convert convert) {
  C read{};
  SQLLEN indicator = 0;
  const SQLRETURN rc =
      SQLGetData(statement, number_of(column), type, &read, sizeof read, &indicator);
  if (!SQL_SUCCEEDED(rc)) return false;
  if (indicator != SQL_NULL_DATA) value = convert(read);
  return true;
}

Variant whole(std::int64_t n) {
  if (n < Long::min() || n > Long::max()) return static_cast<double>(n);
  return static_cast<std::int32_t>(n);
}

/// Some servers give day zero for "no date".
Variant moment(const SQL_TIMESTAMP_STRUCT& t) {
  const CivilTime civil{t.year, t.month, t.day, t.hour, t.minute, t.second};
  return is_valid(civil) ? Variant(Date::from_civil(civil)) : Variant(Null{});
}

/// A text or bytes of any length, in pieces of one buffer.
template <class Unit>
bool read_pieces(SQLHSTMT statement, std::size_t column, SQLSMALLINT type,
                 std::basic_string<Unit>& all, bool& is_null) {
  constexpr std::size_t kUnits = 8192;
  constexpr std::size_t kEnd = std::is_same_v<Unit, char16_t> ? 1 : 0;  // texts end with a zero
  std::array<Unit, kUnits> piece;
  for (;;) {
    SQLLEN left = 0;
    const SQLRETURN rc =
        SQLGetData(statement, number_of(column), type, piece.data(), kUnits * sizeof(Unit), &left);
    if (rc == SQL_NO_DATA) return true;
    if (!SQL_SUCCEEDED(rc)) return false;
    if (left == SQL_NULL_DATA) {
      is_null = true;
      return true;
    }
    const std::size_t room = kUnits - kEnd;
    const bool more = left == SQL_NO_TOTAL || static_cast<std::size_t>(left) > room * sizeof(Unit);
    all.append(piece.data(), more ? room : static_cast<std::size_t>(left) / sizeof(Unit));
    if (!more) return true;
  }
}

bool read_text(SQLHSTMT statement, std::size_t column, Variant& value) {
  std::u16string all;
  bool is_null = false;
  if (!read_pieces(statement, column, SQL_C_WCHAR, all, is_null)) return false;
  if (!is_null) value = utf8(all);
  return true;
}

bool read_bytes(SQLHSTMT statement, std::size_t column, Variant& value) {
  std::string all;
  bool is_null = false;
  if (!read_pieces(statement, column, SQL_C_BINARY, all, is_null)) return false;
  if (!is_null) value = std::move(all);
  return true;
}

}  // namespace

bool read_value(SQLHSTMT statement, std::size_t column, const ResultColumn& how, Variant& value) {
  value = Null{};
  switch (how.fetch) {
    case Fetch::Whole:
      return read_fixed<SQLINTEGER>(statement, column, SQL_C_SLONG, value,
                                    [](SQLINTEGER n) { return Variant(std::int32_t{n}); });
    case Fetch::BigWhole:
      return read_fixed<std::int64_t>(statement, column, SQL_C_SBIGINT, value, whole);
    case Fetch::Number:
      return read_fixed<double>(statement, column, SQL_C_DOUBLE, value, [&](double n) {
        return how.whole ? whole(static_cast<std::int64_t>(n)) : Variant(n);
      });
    case Fetch::Truth:
      return read_fixed<SQLCHAR>(statement, column, SQL_C_BIT, value,
                                 [](SQLCHAR b) { return Variant(b != 0); });
    case Fetch::Moment:
      return read_fixed<SQL_TIMESTAMP_STRUCT>(statement, column, SQL_C_TYPE_TIMESTAMP, value,
                                              moment);
    case Fetch::Text:
      return read_text(statement, column, value);
    case Fetch::Bytes:
      return read_bytes(statement, column, value);
  }
  return false;
}

}  // namespace pelm::ado::odbc
