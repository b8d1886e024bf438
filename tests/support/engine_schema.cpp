// The scripts of schema/; those of SQL Server as H2 reads them, those of Oracle as PostgreSQL does.
#include "support/engine_schema.h"

#include <algorithm>
#include <array>
#include <regex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pelm/ado/recordset.h"
#include "pelm/conversions.h"
#include "schema/batches.h"
#include "schema/schema.h"

namespace pelm::test {
namespace {

std::vector<std::string> tables_of(ado::Connection& connection, const Engine& engine) {
  std::vector<std::string> tables;
  const auto names = connection.Execute(engine.list_tables);
  for (; !names->Eof(); names->MoveNext()) tables.push_back(to_text(names->Fields(0).Value()));
  return tables;
}

bool has_menu(const std::vector<std::string>& tables) {
  return std::ranges::find(tables, "pelm_menu") != tables.end();
}

/// A part of SQL Server's scripts without the condition under which it runs, which stands on its
/// first line and is no statement of SQL.
std::string_view unconditional(std::string_view part) {
  if (!part.starts_with("IF ")) return part;
  const std::size_t line = part.find('\n');
  const bool in_exec = part.substr(0, line).ends_with("EXEC(N'");
  part.remove_prefix(line + 1);
  return in_exec ? part.substr(0, part.rfind("')")) : part;
}

/// SQL Server's own scripts, but for the procedure.
void make_h2_tables(ado::Connection& connection, bool is_made) {
  for (const SchemaScript& script : schema_scripts("sqlserver")) {
    if (script.name == "procedures.sql" || (is_made && script.name != "first_rows.sql")) continue;
    for (const std::string& part : batches(script.text)) connection.Execute(unconditional(part));
  }
  connection.Execute(
      "create table if not exists pelm_procedure (name varchar(128) primary key, script text)");
  connection.Execute(
      "insert into pelm_procedure (name, script) values ('atualoid', 'select UltimoOID novooid "
      "from final table (update controlaoid set UltimoOID = UltimoOID + Delta)')");
}

/// The statement that a part of Oracle's scripts runs when its object is not there yet, with
/// PostgreSQL's names of types.
std::string as_postgresql(const std::string& part) {
  static const std::vector<std::pair<std::regex, const char*>> kWords = {
      {std::regex(R"(NUMBER\(\d+\))"), "integer"},
      {std::regex(R"(\bNUMBER\b)"), "double precision"},
      {std::regex(R"(VARCHAR2\((\d+) CHAR\))"), "varchar($1)"},
      {std::regex(R"(\bCLOB\b)"), "text"},
      {std::regex(R"(\bDATE\b)"), "timestamp(0)"},
      {std::regex(R"(\bNOCYCLE\b)"), "no cycle"},
  };
  constexpr std::string_view kBegin = "EXECUTE IMMEDIATE '";
  const std::size_t begin = part.find(kBegin);
  if (begin == std::string::npos) return part;
  const std::size_t end = part.find("';", begin);
  std::string sql = part.substr(begin + kBegin.size(), end - begin - kBegin.size());
  for (const auto& [word, becomes] : kWords) sql = std::regex_replace(sql, word, becomes);
  return sql;
}

/// Oracle's own scripts, but for what is written in its own language.
void make_postgresql_tables(ado::Connection& connection, bool is_made) {
  constexpr std::array kOwnLanguage = {"functions.sql", "procedures.sql"};
  for (const SchemaScript& script : schema_scripts("oracle")) {
    if (std::ranges::find(kOwnLanguage, script.name) != kOwnLanguage.end()) continue;
    if (is_made && script.name != "first_rows.sql") continue;
    for (const std::string& part : batches(script.text)) {
      const bool is_trigger = part.find(" TRIGGER ") != std::string::npos;
      if (is_trigger || part == "COMMIT\n") continue;
      connection.Execute(as_postgresql(part));
    }
  }
  if (!is_made) {
    connection.Execute("alter table Pelm_Menu alter id set default nextval('Pelm_Menu_ID')");
    connection.Execute(
        "create function len(texto text) returns integer language sql immutable as 'select "
        "length(rtrim(texto))'");
  }
  connection.Execute(
      "create or replace function atualoid(out novooid integer) language sql as 'update "
      "controlaoid set UltimoOID = UltimoOID + Delta returning UltimoOID'");
}

}  // namespace

void make_tables(ado::Connection& connection, const Engine& engine) {
  if (engine.schema == "h2") {
    make_h2_tables(connection, has_menu(tables_of(connection, engine)));
  } else if (engine.schema == "postgresql") {
    make_postgresql_tables(connection, has_menu(tables_of(connection, engine)));
  } else {
    create_schema(connection, engine.schema);
  }
}

void empty_tables(ado::Connection& connection, const Engine& engine) {
  const std::vector<std::string> tables = tables_of(connection, engine);
  std::string at_once;
  for (const std::string& table : tables) {
    const std::string sql = "delete from " + table;
    if (engine.takes_several_statements) {
      at_once += sql + ";";
    } else {
      connection.Execute(sql);
    }
  }
  if (!at_once.empty()) connection.Execute(at_once);
  if (has_menu(tables)) connection.Execute(engine.restart_menu);
}

}  // namespace pelm::test
