// Asking a database what it is.
#include "schema/server_engine.h"

#include <array>
#include <string_view>

#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/value/text.h"

namespace pelm {
namespace {

/// A question that some engines answer, and a part of the answer that tells one.
struct Question {
  std::string_view sql;
  std::string_view part;  // in small letters
  std::string_view engine;
};

// In this order: MariaDB tells its dialect before its name.
constexpr std::array kQuestions = {
    Question{"select @@version", "microsoft sql server", "sqlserver"},
    Question{"select @@sql_mode", "oracle", "mariadb-oracle"},
    Question{"select @@version", "mariadb", "mariadb"},
    Question{"select banner from v$version", "oracle", "oracle"},
};

std::string answer(ado::Connection& connection, std::string_view sql) {
  try {
    const auto rows = connection.Execute(sql);
    return rows->Eof() ? std::string() : text::lower(to_text(rows->Fields(0).Value()));
  } catch (const Error&) {
    return {};  // another engine's question
  }
}

}  // namespace

std::string engine_of(ado::Connection& connection) {
  if (text::equal_case_blind(connection.Provider(), "SQLite")) return "sqlite";
  for (const Question& q : kQuestions) {
    if (answer(connection, q.sql).find(q.part) != std::string::npos) return std::string(q.engine);
  }
  return {};
}

}  // namespace pelm
