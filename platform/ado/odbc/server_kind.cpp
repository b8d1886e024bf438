// Servers by name, and the forms that differ.
#include "platform/ado/odbc/server_kind.h"

#include <algorithm>
#include <array>

#include "platform/value/text.h"

namespace pelm::ado::odbc {
namespace {

struct NamedKind {
  std::string_view part;  // of the name, in small letters
  ServerKind kind;
};

constexpr std::array kKinds = {NamedKind{"sql server", ServerKind::SqlServer},
                               NamedKind{"oracle", ServerKind::Oracle},
                               NamedKind{"mariadb", ServerKind::MariaDb},
                               NamedKind{"mysql", ServerKind::MariaDb},
                               NamedKind{"sqlite", ServerKind::Sqlite},
                               NamedKind{"postgresql", ServerKind::PostgreSql}};

enum class Form { Text, LongText, Date };

struct Condition {
  ServerKind kind;
  Form form;
  std::string_view before;  // of the column
  std::string_view after;
};

// What is not here compares by "=". A column of the old type "text" cannot be compared at all on
// SQL Server, nor a CLOB on Oracle.
constexpr std::array kConditions = {
    Condition{ServerKind::SqlServer, Form::Text, "", " COLLATE Latin1_General_BIN = ?"},
    Condition{ServerKind::SqlServer, Form::LongText, "CONVERT(nvarchar(max), ",
              ") COLLATE Latin1_General_BIN = ?"},
    Condition{ServerKind::SqlServer, Form::Date, "CONVERT(datetime, CONVERT(varchar(19), ",
              ", 120), 120) = ?"},
    Condition{ServerKind::Oracle, Form::LongText, "DBMS_LOB.COMPARE(", ", ?) = 0"},
    Condition{ServerKind::Oracle, Form::Date, "TO_DATE(TO_CHAR(",
              ", 'YYYY-MM-DD HH24:MI:SS'), 'YYYY-MM-DD HH24:MI:SS') = ?"},
    Condition{ServerKind::MariaDb, Form::Text, "CONVERT(",
              " USING utf8mb4) COLLATE utf8mb4_bin = ?"},
    Condition{ServerKind::MariaDb, Form::LongText, "CONVERT(",
              " USING utf8mb4) COLLATE utf8mb4_bin = ?"},
    Condition{ServerKind::MariaDb, Form::Date, "CAST(", " AS DATETIME) = ?"},
    Condition{ServerKind::Sqlite, Form::Text, "", " COLLATE BINARY = ?"},
    Condition{ServerKind::Sqlite, Form::LongText, "", " COLLATE BINARY = ?"},
    Condition{ServerKind::Sqlite, Form::Date, "datetime(", ") = datetime(?)"},
    Condition{ServerKind::PostgreSql, Form::Date, "date_trunc('second', ", ") = ?"},
};

}  // namespace

ServerKind server_kind_of(std::string_view dbms_name) {
  const std::string name = text::lower(dbms_name);
  const auto* const found = std::ranges::find_if(
      kKinds, [&](const NamedKind& k) { return name.find(k.part) != std::string::npos; });
  return found == kKinds.end() ? ServerKind::Other : found->kind;
}

std::string same_value_condition(ServerKind kind, const std::string& quoted, DataTypeEnum type) {
  const bool long_text = type == adLongVarWChar || type == adLongVarChar;
  const bool text = type == adVarWChar || type == adVarChar;
  if (long_text || text || type == adDate) {
    const Form form = long_text ? Form::LongText : text ? Form::Text : Form::Date;
    for (const Condition& c : kConditions) {
      if (c.kind != kind || c.form != form) continue;
      std::string condition(c.before);
      condition += quoted;
      condition += c.after;
      return condition;
    }
  }
  return quoted + " = ?";
}

std::string_view probe_statement(ServerKind kind) {
  return kind == ServerKind::Oracle ? "select 1 from dual" : "select 1";
}

}  // namespace pelm::ado::odbc
