// Values between pages and the engine.
#include "platform/ado/sqlite/values.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "pelm/error.h"
#include "platform/ado/sqlite/date_text.h"
#include "platform/ado/sqlite/errors.h"
#include "platform/ado/sqlite/function_call.h"
#include "platform/ado/sqlite/tokenizer.h"

namespace pelm::ado::sqlite {
namespace {

struct TypeName {
  std::string_view name;
  DataTypeEnum type;
};
constexpr std::array kTypes = {
    TypeName{"INTEGER", adInteger},    TypeName{"INT", adInteger},
    TypeName{"VARCHAR", adVarWChar},   TypeName{"DATETIME", adDate},
    TypeName{"SMALLINT", adSmallInt},  TypeName{"TINYINT", adSmallInt},
    TypeName{"MEDIUMINT", adInteger},  TypeName{"BIGINT", adBigInt},
    TypeName{"BIT", adBoolean},        TypeName{"BOOLEAN", adBoolean},
    TypeName{"FLOAT", adDouble},       TypeName{"REAL", adDouble},
    TypeName{"DOUBLE", adDouble},      TypeName{"DOUBLE PRECISION", adDouble},
    TypeName{"MONEY", adDouble},       TypeName{"SMALLMONEY", adDouble},
    TypeName{"DECIMAL", adDouble},     TypeName{"NUMERIC", adDouble},
    TypeName{"SMALLDATETIME", adDate}, TypeName{"DATE", adDate},
    TypeName{"TIMESTAMP", adDate},     TypeName{"CHAR", adVarWChar},
    TypeName{"NCHAR", adVarWChar},     TypeName{"NVARCHAR", adVarWChar},
    TypeName{"CHARACTER", adVarWChar}, TypeName{"TEXT", adLongVarWChar},
    TypeName{"NTEXT", adLongVarWChar}, TypeName{"CLOB", adLongVarWChar},
    TypeName{"BLOB", adBinary},        TypeName{"IMAGE", adBinary},
    TypeName{"BINARY", adBinary},      TypeName{"VARBINARY", adBinary},
};

std::string_view trimmed(std::string_view s) {
  while (!s.empty() && s.front() == ' ') s.remove_prefix(1);
  while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
  return s;
}

int bind_text(sqlite3_stmt* statement, int position, std::string_view s, bool stays) {
  return sqlite3_bind_text64(statement, position, s.data() == nullptr ? "" : s.data(), s.size(),
                             stays ? SQLITE_STATIC : SQLITE_TRANSIENT, SQLITE_UTF8);
}

[[noreturn]] void refuse_literal(const std::string& text, const char* type) {
  raise_provider_error(
      error_number::kCantConvertValue,
      std::string("Syntax error converting ") +
          (type[0] == 'd' ? "datetime from character string: '" + text + "'"
                          : "the varchar value '" + text + "' to a column of data type int."));
}

int bind_number_text(sqlite3_stmt* statement, int position, const std::string& text) {
  const auto v = read_number(text);
  if (!v) refuse_literal(text, "int");
  constexpr double kExact = 9e15;
  if (*v == std::trunc(*v) && std::fabs(*v) < kExact) {
    return sqlite3_bind_int64(statement, position, static_cast<std::int64_t>(*v));
  }
  return sqlite3_bind_double(statement, position, *v);
}

std::string_view text_of(sqlite3_value* value) {
  const auto* const s = reinterpret_cast<const char*>(sqlite3_value_text(value));
  if (s == nullptr) return {};
  return {s, static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

Variant integer_value(std::int64_t v, DataTypeEnum type) {
  if (type == adBoolean) return v != 0;
  if (type == adDouble) return static_cast<double>(v);
  using Integer = std::numeric_limits<std::int16_t>;
  using Long = std::numeric_limits<std::int32_t>;
  if (type == adSmallInt && v >= Integer::min() && v <= Integer::max()) {
    return static_cast<std::int16_t>(v);
  }
  if (v >= Long::min() && v <= Long::max()) return static_cast<std::int32_t>(v);
  return static_cast<double>(v);
}

Variant text_value(std::string_view s, DataTypeEnum type) {
  if (type == adDate) {
    auto t = read_stored_date(s);
    if (!t) t = read_date(s, DateOrder::YearMonthDay);
    if (t) return Date::from_civil(*t);
  }
  return s;
}

}  // namespace

Column column_of_declaration(std::string_view declaration) {
  Column column;
  const std::size_t open = declaration.find('(');
  const std::string_view name = trimmed(declaration.substr(0, open));
  const auto found = std::find_if(kTypes.begin(), kTypes.end(),
                                  [&](const TypeName& t) { return equal_names(t.name, name); });
  if (found == kTypes.end()) return column;
  column.type = found->type;
  if (column.type == adVarWChar && open != std::string_view::npos) {
    const std::string_view size = trimmed(declaration.substr(open + 1));
    std::from_chars(size.data(), size.data() + size.size(), column.size);
  }
  if (column.type == adVarWChar && column.size == 0) column.type = adLongVarWChar;
  return column;
}

int bind_value(sqlite3_stmt* statement, int position, const Variant& value, bool text_stays) {
  switch (value.type()) {
    case Variant::Type::Empty:
    case Variant::Type::Null:
      return sqlite3_bind_null(statement, position);
    case Variant::Type::Integer:
      return sqlite3_bind_int(statement, position, value.integer());
    case Variant::Type::Long:
      return sqlite3_bind_int(statement, position, value.long_value());
    case Variant::Type::Double:
      return sqlite3_bind_double(statement, position, value.double_value());
    case Variant::Type::Boolean:
      return sqlite3_bind_int(statement, position, value.boolean() ? 1 : 0);
    case Variant::Type::Date:
      return bind_text(statement, position, StoredDate(value.date().civil()).text(), false);
    case Variant::Type::Text:
      return bind_text(statement, position, value.text(), text_stays);
    case Variant::Type::Array:
    case Variant::Type::Object:
      break;
  }
  raise_provider_error(error_number::kCantConvertValue,
                       "value " + std::to_string(position) + " of the statement is of type " +
                           std::string(type_name(value.type())) + ", which no column can hold");
}

int bind_literal(sqlite3_stmt* statement, int position, const Literal& literal,
                 LiteralReading reading, DateOrder order, bool text_stays) {
  if (literal.kind == Literal::Kind::Number) {
    return sqlite3_bind_int64(statement, position, literal.number);
  }
  if (reading == LiteralReading::AsItIs) {
    return literal.doubled ? bind_text(statement, position, literal.content(), false)
                           : bind_text(statement, position, literal.text, text_stays);
  }
  const std::string text = literal.content();
  if (reading == LiteralReading::Number) return bind_number_text(statement, position, text);
  const bool escape = literal.kind == Literal::Kind::Date;  // always year, month, day
  const auto date = read_date(text, escape ? DateOrder::YearMonthDay : order);
  if (!date) refuse_literal(text, "datetime");
  return bind_text(statement, position, StoredDate(*date).text(), false);
}

Variant read_value(sqlite3_stmt* statement, int column, DataTypeEnum type) {
  // Of one thread alone, as a session is, an unprotected value may be read.
  sqlite3_value* const value = sqlite3_column_value(statement, column);
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      return integer_value(sqlite3_value_int64(value), type);
    case SQLITE_FLOAT:
      return sqlite3_value_double(value);
    case SQLITE_TEXT:
      return text_value(text_of(value), type);
    case SQLITE_BLOB:
      return text_of(value);
    default:
      return Null{};
  }
}

}  // namespace pelm::ado::sqlite
