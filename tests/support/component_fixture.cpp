// A real database with the whole schema, and the thread's shared objects open on it.
#include "support/component_fixture.h"

#include <array>
#include <map>
#include <stdexcept>

#include "frame/mod_principal.h"
#include "frame/thread_slots.h"
#include "identity/manipula_oid.h"
#include "pelm/ado/recordset.h"
#include "pelm/conversions.h"
#include "pelm/error.h"
#include "pelm/manipula_data.h"
#include "platform/ado/session_pool.h"
#include "support/engine_gaps.h"
#include "support/engine_schema.h"

namespace pelm::test {
namespace {

/// What operations of `Base` write.
constexpr std::array<std::string_view, 13> kWrittenTables = {
    "item",        "excluido",    "aditivo",         "agrupamento",  "classificacao",
    "categoria",   "chaveunica",  "pessoa",          "pessoafisica", "endereco",
    "comunicacao", "sessaodeuso", "sessaoaplicativo"};

constexpr std::int16_t kTimeout = 60;

std::shared_ptr<ado::Connection> opened(const std::string& connection_string) {
  auto connection = std::make_shared<ado::Connection>();
  connection->Open(connection_string);
  return connection;
}

/// Making a server's tables takes longer than most tests, so a program's tests have one database
/// after another. Never destroyed: the server ends with what is in it.
std::map<std::string_view, std::unique_ptr<FreshDatabase>>& used_databases() {
  static auto* const databases = new std::map<std::string_view, std::unique_ptr<FreshDatabase>>;
  return *databases;
}

/// What stands between the ";" outside of literals: servers take one statement at a time.
std::vector<std::string_view> statements_of(std::string_view sql) {
  std::vector<std::string_view> statements;
  bool in_literal = false;
  std::size_t begin = 0;
  for (std::size_t i = 0; i <= sql.size(); ++i) {
    if (i < sql.size() && sql[i] == '\'') in_literal = !in_literal;
    if (i < sql.size() && (in_literal || sql[i] != ';')) continue;
    if (i > begin) statements.push_back(sql.substr(begin, i - begin));
    begin = i + 1;
  }
  return statements;
}

std::string shown(const Variant& value) { return value.is_null() ? "null" : to_text(value); }

std::string shown_row(ado::Recordset& records) {
  std::string row;
  for (std::size_t i = 0; i < records.FieldCount(); ++i) {
    if (i > 0) row += '|';
    row += shown(records.Fields(i).Value());
  }
  return row;
}

}  // namespace

ComponentThread::ComponentThread(const std::string& connection_string, std::int16_t kind)
    : conn_(main_.CConn()), base_(main_.CBase()) {
  conn_->ConfigureConn(false, connection_string, kTimeout, kTimeout, kind);
  conn_->OpenConn();
}

ComponentThread::~ComponentThread() {
  try {
    main_.end();
  } catch (const Error& e) {
    ADD_FAILURE() << "ending the thread: " << e.what();
  }
  frame::thread_slots() = {};
}

void ComponentThread::reopen() {
  conn_->CloseConn();
  conn_->Conex(nullptr);
  conn_->OpenConn();
}

void ComponentThread::forget_oids() { frame::Main(); }

ComponentFixture::ComponentFixture() = default;
ComponentFixture::~ComponentFixture() = default;

void ComponentFixture::SetUp() {
  if (const std::string gap = gap_of_running_test(GetParam().name); !gap.empty()) {
    GTEST_SKIP() << GetParam().name << ": " << gap;
  }
  if (GetParam().schema.empty()) GTEST_SKIP() << GetParam().name << " cannot hold the schema";
  std::unique_ptr<FreshDatabase>& used = used_databases()[GetParam().name];
  const bool is_used = used != nullptr;
  database_ = is_used ? std::move(used) : GetParam().create();
  if (database_ == nullptr) GTEST_SKIP() << GetParam().name << " does not run here";
  inspector_ = opened(connection_string());
  if (is_used) empty_tables(*inspector_, GetParam());
  make_tables(*inspector_, GetParam());
  thread_ = std::make_unique<ComponentThread>(connection_string(), GetParam().kind);
}

void ComponentFixture::TearDown() {
  thread_.reset();
  inspector_.reset();
  EXPECT_EQ(ado::session_counts().in_use, 0U) << "a session was leaked";
  ado::empty_session_pool();
  if (database_ != nullptr && GetParam().provider == "MSDASQL" && !has_other_tables_) {
    used_databases()[GetParam().name] = std::move(database_);
  }
}

void ComponentFixture::inspect(const std::string& connection_string) {
  inspector_ = opened(connection_string);
}

std::vector<std::string> ComponentFixture::rows(std::string_view sql) const {
  std::vector<std::string> result;
  const auto records = inspector_->Execute(sql);
  for (; !records->Eof(); records->MoveNext()) result.push_back(shown_row(*records));
  return result;
}

std::string ComponentFixture::row(std::string_view sql) const {
  const std::vector<std::string> all = rows(sql);
  if (all.size() != 1) throw std::logic_error("not one row: " + std::string(sql));
  return all.front();
}

void ComponentFixture::run(std::string_view sql) const {
  const std::string_view verb = sql.substr(0, sql.find(' '));
  const bool defines = verb == "create" || verb == "drop" || verb == "alter";
  has_other_tables_ |= defines;
  if (defines) {
    inspector_->Execute(sql);  // the body of a procedure has its own ";"
    return;
  }
  for (const std::string_view statement : statements_of(sql)) inspector_->Execute(statement);
}

void ComponentFixture::run_together(std::initializer_list<std::string_view> texts) const {
  inspector_->BeginTrans();
  for (const std::string_view text : texts) {
    if (!text.empty()) run(text);
  }
  inspector_->CommitTrans();
}

std::string ComponentFixture::row_counts() const {
  std::string counts;
  for (const std::string_view table : kWrittenTables) {
    const std::string count = row("select count(*) from " + std::string(table));
    if (count == "0") continue;
    counts += counts.empty() ? "" : ", ";
    counts.append(table).append(" ").append(count);
  }
  return counts;
}

void ComponentFixture::oids_from(Oid first, std::int16_t delta) {
  run("update controlaoid set Delta = " + std::to_string(delta) +
      ", UltimoOID = " + std::to_string(first - 1));
  thread_->forget_oids();
}

}  // namespace pelm::test
