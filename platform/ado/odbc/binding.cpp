// Binding parameters.

#include <algorithm>
#include <string>

#include "pelm/error.h"
#include "platform/ado/odbc/errors.h"
#include "platform/ado/odbc/values.h"

namespace pelm::ado::odbc {
namespace {

using Type = Variant::Type;

/// Texts of more units go to the driver in pieces of as many.
constexpr std::size_t kPiece = 8000;
/// What every server takes as a plain text; beyond it a parameter is a long one.
constexpr std::size_t kPlainText = 4000;
constexpr SQLULEN kOutputText = 4000;
constexpr SQLULEN kBytesACharacter = 4;

constexpr SQLULEN kMomentSize = 19;  // yyyy-mm-dd hh:mm:ss
constexpr SQLULEN kIntegerSize = 10;
constexpr SQLULEN kDoubleSize = 15;

SQL_TIMESTAMP_STRUCT timestamp(Date date) {
  const CivilTime t = date.civil();
  return {static_cast<SQLSMALLINT>(t.year),
          static_cast<SQLUSMALLINT>(t.month),
          static_cast<SQLUSMALLINT>(t.day),
          static_cast<SQLUSMALLINT>(t.hour),
          static_cast<SQLUSMALLINT>(t.minute),
          static_cast<SQLUSMALLINT>(t.second),
          0};
}

SQLULEN at_least_one(std::size_t n) { return n == 0 ? 1 : static_cast<SQLULEN>(n); }

}  // namespace

SQLRETURN BoundValue::bind(SQLHSTMT statement, SQLUSMALLINT position, SQLSMALLINT direction,
                           SQLSMALLINT c, SQLSMALLINT sql, SQLULEN size, SQLSMALLINT digits,
                           SQLPOINTER at, SQLLEN room) {
  return SQLBindParameter(statement, position, direction, c, sql, size, digits, at, room,
                          &indicator_);
}

SQLRETURN BoundValue::bind_null(SQLHSTMT statement, SQLUSMALLINT position, SQLSMALLINT sql) {
  indicator_ = SQL_NULL_DATA;
  return bind(statement, position, SQL_PARAM_INPUT, SQL_C_WCHAR, sql, 1, 0, nullptr, 0);
}

SQLRETURN BoundValue::bind_text(SQLHSTMT statement, SQLUSMALLINT position, std::string_view text) {
  auto& wide = value_.emplace<WideText>(text);
  const std::size_t units = wide.size();
  const auto bytes = static_cast<SQLLEN>(units * sizeof(SQLWCHAR));
  const SQLSMALLINT sql = units > kPlainText ? SQL_WLONGVARCHAR : SQL_WVARCHAR;
  if (units > kPiece) {
    indicator_ = SQL_LEN_DATA_AT_EXEC(bytes);
    return bind(statement, position, SQL_PARAM_INPUT, SQL_C_WCHAR, sql, units, 0, this, 0);
  }
  indicator_ = bytes;
  return bind(statement, position, SQL_PARAM_INPUT, SQL_C_WCHAR, sql, at_least_one(units), 0,
              wide.data(), bytes);
}

SQLRETURN BoundValue::bind_input(SQLHSTMT statement, SQLUSMALLINT position, const Variant& value) {
  indicator_ = 0;
  switch (value.type()) {
    case Type::Empty:
    case Type::Null:
      return bind_null(statement, position, SQL_WVARCHAR);
    case Type::Integer:
      return bind(statement, position, SQL_PARAM_INPUT, SQL_C_SLONG, SQL_INTEGER, kIntegerSize, 0,
                  &value_.emplace<SQLINTEGER>(value.integer()), 0);
    case Type::Long:
      return bind(statement, position, SQL_PARAM_INPUT, SQL_C_SLONG, SQL_INTEGER, kIntegerSize, 0,
                  &value_.emplace<SQLINTEGER>(value.long_value()), 0);
    case Type::Double:
      return bind(statement, position, SQL_PARAM_INPUT, SQL_C_DOUBLE, SQL_DOUBLE, kDoubleSize, 0,
                  &value_.emplace<SQLDOUBLE>(value.double_value()), 0);
    case Type::Boolean:
      return bind(statement, position, SQL_PARAM_INPUT, SQL_C_BIT, SQL_BIT, 1, 0,
                  &value_.emplace<SQLCHAR>(static_cast<SQLCHAR>(value.boolean() ? 1 : 0)), 0);
    case Type::Date:
      return bind(statement, position, SQL_PARAM_INPUT, SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP,
                  kMomentSize, 0, &value_.emplace<SQL_TIMESTAMP_STRUCT>(timestamp(value.date())),
                  0);
    case Type::Text:
      return bind_text(statement, position, value.text());
    case Type::Array:
    case Type::Object:
      break;
  }
  raise_provider_error(error_number::kCantConvertValue,
                       "parameter " + std::to_string(position) + ": a value of type " +
                           std::string(type_name(value.type())) + " cannot be stored");
}

SQLRETURN BoundValue::bind_argument(SQLHSTMT statement, SQLUSMALLINT position,
                                    const ProcedureArgument& argument, TextOutput texts) {
  if (argument.direction == adParamInput) return bind_input(statement, position, argument.value);
  const bool both = argument.direction == adParamInputOutput && !argument.value.is_null();
  const SQLSMALLINT direction =
      argument.direction == adParamInputOutput ? SQL_PARAM_INPUT_OUTPUT : SQL_PARAM_OUTPUT;
  // Null would do for an output, but MariaDB's driver then takes its type for a text.
  const bool null_input = argument.direction == adParamInputOutput && !both;
  indicator_ = null_input ? SQL_NULL_DATA : 0;
  switch (argument.type) {
    case adSmallInt:
    case adInteger:
    case adBoolean: {
      SQLINTEGER& at = value_.emplace<SQLINTEGER>();
      if (both) {
        at = argument.value.type() == Type::Integer   ? argument.value.integer()
             : argument.value.type() == Type::Boolean ? (argument.value.boolean() ? 1 : 0)
                                                      : argument.value.long_value();
        indicator_ = 0;
      }
      return bind(statement, position, direction, SQL_C_SLONG, SQL_INTEGER, kIntegerSize, 0, &at,
                  sizeof at);
    }
    case adDouble: {
      SQLDOUBLE& at = value_.emplace<SQLDOUBLE>();
      if (both) {
        at = argument.value.double_value();
        indicator_ = 0;
      }
      return bind(statement, position, direction, SQL_C_DOUBLE, SQL_DOUBLE, kDoubleSize, 0, &at,
                  sizeof at);
    }
    case adDate: {
      auto& at = value_.emplace<SQL_TIMESTAMP_STRUCT>();
      if (both) {
        at = timestamp(argument.value.date());
        indicator_ = sizeof at;
      }
      return bind(statement, position, direction, SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP,
                  kMomentSize, 0, &at, sizeof at);
    }
    default: {
      const SQLULEN room = argument.size > 0 ? static_cast<SQLULEN>(argument.size) : kOutputText;
      if (texts == TextOutput::Utf8) {
        auto& bytes = value_.emplace<std::string>(kBytesACharacter * room + 1, '\0');
        if (both && argument.value.is_text()) {
          const std::string& given = argument.value.text();
          const std::size_t size = std::min(given.size(), bytes.size() - 1);
          std::copy_n(given.begin(), size, bytes.begin());
          indicator_ = static_cast<SQLLEN>(size);
        }
        return bind(statement, position, direction, SQL_C_CHAR, SQL_VARCHAR, room, 0, bytes.data(),
                    static_cast<SQLLEN>(bytes.size()));
      }
      auto& at = value_.emplace<std::u16string>(room + 1, u'\0');
      if (both && argument.value.is_text()) {
        const WideText given(argument.value.text());
        const std::size_t units = std::min<std::size_t>(given.size(), room);
        std::copy_n(given.units().begin(), units, at.begin());
        indicator_ = static_cast<SQLLEN>(units * sizeof(char16_t));
      }
      return bind(statement, position, direction, SQL_C_WCHAR, SQL_WVARCHAR, room, 0, at.data(),
                  static_cast<SQLLEN>(at.size() * sizeof(char16_t)));
    }
  }
}

Variant BoundValue::output() const {
  if (indicator_ == SQL_NULL_DATA) return Null{};
  if (const auto* n = std::get_if<SQLINTEGER>(&value_)) return std::int32_t{*n};
  if (const auto* n = std::get_if<SQLDOUBLE>(&value_)) return *n;
  if (const auto* t = std::get_if<SQL_TIMESTAMP_STRUCT>(&value_)) {
    const CivilTime civil{t->year, t->month, t->day, t->hour, t->minute, t->second};
    return is_valid(civil) ? Variant(Date::from_civil(civil)) : Variant(Null{});
  }
  if (const auto* s = std::get_if<std::u16string>(&value_)) {
    const auto units = std::min(s->size() - 1, static_cast<std::size_t>(indicator_) / 2);
    return utf8(std::u16string_view(*s).substr(0, units));
  }
  if (const auto* s = std::get_if<std::string>(&value_)) {
    return s->substr(0, std::min(s->size() - 1, static_cast<std::size_t>(indicator_)));
  }
  return Null{};
}

SQLRETURN BoundValue::put(SQLHSTMT statement) {
  auto& text = std::get<WideText>(value_);
  for (std::size_t at = 0; at < text.size(); at += kPiece) {
    const std::size_t units = std::min(kPiece, text.size() - at);
    const SQLRETURN rc =
        SQLPutData(statement, text.data() + at, static_cast<SQLLEN>(units * sizeof(SQLWCHAR)));
    if (!SQL_SUCCEEDED(rc)) return rc;
  }
  return SQL_SUCCESS;
}

}  // namespace pelm::ado::odbc
