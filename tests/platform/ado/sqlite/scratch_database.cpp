// A database to test on.
#include "platform/ado/sqlite/scratch_database.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "platform/ado/sqlite/date_text.h"
#include "platform/ado/sqlite/sqlite_provider.h"
#include "schema/schema.h"

namespace pelm::ado::sqlite::test {
namespace {

std::string contents(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

}  // namespace

std::unique_ptr<Session> open_session(std::string_view connection_string, ConnectModeEnum mode,
                                      std::int32_t connection_timeout) {
  register_sqlite_provider();
  SessionSettings settings;
  settings.properties = ConnectionString::parse(connection_string);
  settings.mode = mode;
  settings.connection_timeout = connection_timeout;
  return find_provider("sqlite")->connect(settings);
}

void fill(Session& session) {
  for (const SchemaScript& script : schema_scripts("sqlite")) run(session, script.text);
  run(session, contents(PELM_TESTS_DIR "/platform/ado/sqlite/tables_to_test.sql"));
}

std::string shown(const Variant& value) {
  char buffer[40];
  switch (value.type()) {
    case Variant::Type::Null:
      return "null";
    case Variant::Type::Integer:
      return std::to_string(value.integer()) + "i";
    case Variant::Type::Long:
      return std::to_string(value.long_value());
    case Variant::Type::Double: {
      std::snprintf(buffer, sizeof buffer, "%.15g", value.double_value());
      std::string out = buffer;
      if (out.find_first_of(".en") == std::string::npos) out += ".0";
      return out;
    }
    case Variant::Type::Boolean:
      return value.boolean() ? "True" : "False";
    case Variant::Type::Date:
      return "#" + stored_date(value.date()) + "#";
    case Variant::Type::Text:
      return "'" + value.text() + "'";
    default:
      return "?";
  }
}

std::vector<std::string> rows_of(Cursor& cursor) {
  std::vector<std::string> out;
  while (cursor.next()) {
    std::string row;
    for (std::size_t i = 0; i < cursor.columns()->size(); ++i) {
      row += (i == 0 ? "" : " | ") + shown(cursor.value(i));
    }
    out.push_back(std::move(row));
  }
  return out;
}

std::vector<std::string> rows_of(Session& session, std::string_view sql,
                                 std::span<const Variant> values) {
  return rows_of(*session.execute(sql, values));
}

std::int64_t run(Session& session, std::string_view sql, std::span<const Variant> values) {
  return session.execute(sql, values)->rows_affected();
}

TemporaryFolder::TemporaryFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "pelm-sqlite-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace pelm::ado::sqlite::test
