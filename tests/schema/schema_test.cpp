// The scripts as a library: their order, who knows them, all of them or none.
#include "schema/schema.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace pelm {
namespace {

std::shared_ptr<ado::Connection> connection() {
  ado::sqlite::register_sqlite_provider();
  auto c = std::make_shared<ado::Connection>();
  c->Open("Provider=SQLite;Data Source=:memory:");
  return c;
}

std::int32_t count(ado::Connection& c, const std::string& sql) {
  return to_long(c.Execute(sql)->Fields(0).Value());
}

std::int32_t objects(ado::Connection& c) {
  return count(c, "select count(*) from sqlite_schema where name not like 'sqlite!_%' escape '!'");
}

Error raised(const std::function<void()>& what) {
  try {
    what();
  } catch (const Error& e) {
    return e;
  }
  return Error(0, "", "nothing was raised");
}

TEST(SchemaScripts, ComeInTheOrderInWhichTheyRun) {
  std::vector<std::string> names;
  for (const SchemaScript& s : schema_scripts("SQLite")) names.emplace_back(s.name);
  ASSERT_GE(names.size(), 3U);
  EXPECT_EQ("tables.sql", names.front());
  EXPECT_EQ("procedures.sql", names[names.size() - 2]);
  EXPECT_EQ("first_rows.sql", names.back());
}

TEST(SchemaScripts, SayWhatTheyAreFor) {
  for (const std::string_view engine : schema_engines()) {
    for (const SchemaScript& s : schema_scripts(engine)) {
      EXPECT_TRUE(s.text.starts_with("-- ")) << engine << "/" << s.name;
    }
  }
}

TEST(SchemaScripts, AreNoneForAnEngineThatIsNotKnown) {
  EXPECT_TRUE(schema_scripts("dbase").empty());
}

TEST(CreateSchema, MakesWhatTheComponentExpects) {
  const auto c = connection();
  create_schema(*c, "sqlite");
  for (const char* name : {"item", "excluido", "controlaoid", "pelm_procedure"}) {
    EXPECT_EQ(1, count(*c, std::string("select count(*) from sqlite_schema where name = '") + name +
                               "'"));
  }
  EXPECT_EQ(1, count(*c, "select count(*) from controlaoid where Delta > 0 and UltimoOID > 12493"));
  EXPECT_EQ(1, count(*c, "select count(*) from pelm_procedure where name = 'atualoid'"));
}

TEST(CreateSchema, ChangesNothingTheSecondTime) {
  const auto c = connection();
  create_schema(*c, "sqlite");
  c->Execute("insert into item (oid, cid) values (8, 20)");
  c->Execute("update controlaoid set UltimoOID = 123456");
  const std::int32_t before = objects(*c);
  create_schema(*c, "sqlite");
  EXPECT_EQ(before, objects(*c));
  EXPECT_EQ(1, count(*c, "select count(*) from item"));
  EXPECT_EQ(1, count(*c, "select count(*) from controlaoid"));
  EXPECT_EQ(123456, count(*c, "select UltimoOID from controlaoid"));
}

TEST(CreateSchema, PutsTheProceduresBack) {
  const auto c = connection();
  create_schema(*c, "sqlite");
  c->Execute("update pelm_procedure set script = 'select 1'");
  create_schema(*c, "sqlite");
  EXPECT_EQ(0, count(*c, "select count(*) from pelm_procedure where script = 'select 1'"));
}

TEST(CreateSchema, MakesAllOrNothing) {
  const auto c = connection();
  c->Execute("create view controlaoid as select 1 Delta, 1 UltimoOID where 1 = 0");
  const Error e = raised([&] { create_schema(*c, "sqlite"); });
  EXPECT_EQ(error_number::kErrorsInCommand, e.number());
  EXPECT_TRUE(e.description().starts_with("first_rows.sql: ")) << e.description();
  EXPECT_EQ(1, objects(*c));
  EXPECT_NO_THROW(c->BeginTrans());  // no transaction was left open
}

TEST(CreateSchema, RefusesAnUnknownEngineAndSaysWhichItKnows) {
  const auto c = connection();
  const Error e = raised([&] { create_schema(*c, "dbase"); });
  EXPECT_EQ(error_number::kInvalidCall, e.number());
  EXPECT_NE(std::string::npos, e.description().find("sqlite"));
}

TEST(CreateSchema, NeedsAnOpenConnection) {
  const auto c = connection();
  c->Close();
  EXPECT_EQ(error_number::kInvalidConnection,
            raised([&] { create_schema(*c, "sqlite"); }).number());
}

}  // namespace
}  // namespace pelm
