// The embedded engine's tables: what they refuse, and that the scripts are plain to the engine.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

#include "schema/schema.h"

namespace pelm {
namespace {

struct Closer {
  void operator()(sqlite3* db) const { sqlite3_close(db); }
};

// The engine by itself, without the functions and the collation that `pelm` adds to it.
class PlainEngine : public testing::Test {
 protected:
  PlainEngine() {
    sqlite3* db = nullptr;
    sqlite3_open(":memory:", &db);
    db_.reset(db);
    for (const SchemaScript& s : schema_scripts("sqlite"))
      EXPECT_TRUE(runs(std::string(s.text))) << s.name;
  }
  bool runs(const std::string& sql) {
    char* error = nullptr;
    const bool done = sqlite3_exec(db_.get(), sql.c_str(), nullptr, nullptr, &error) == SQLITE_OK;
    error_ = error == nullptr ? "" : error;
    sqlite3_free(error);
    return done;
  }
  std::string error_;
  std::unique_ptr<sqlite3, Closer> db_;
};

TEST_F(PlainEngine, TakesTheScripts) {
  EXPECT_TRUE(runs("SELECT Delta, UltimoOID FROM controlaoid"));
  EXPECT_TRUE(runs("PRAGMA integrity_check"));
}

TEST_F(PlainEngine, TakesTheScriptsAgain) {
  for (const SchemaScript& s : schema_scripts("sqlite")) {
    EXPECT_TRUE(runs(std::string(s.text))) << s.name << ": " << error_;
  }
}

TEST_F(PlainEngine, StoresAnItemOfEveryColumn) {
  EXPECT_TRUE(
      runs("INSERT INTO item VALUES (-2147483648, 2147483647, 'João', '', 7, 1, '2008-03-05 "
           "14:07:09', 1, "
           "'9999-12-31 23:59:59', '', -32768)"))
      << error_;
  EXPECT_TRUE(runs("INSERT INTO item (OID, CID) VALUES (8, 20)")) << error_;
}

TEST_F(PlainEngine, RefusesWrongValues) {
  const std::string long_name(256, 'x');
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"OID", "NULL"},
      {"OID", "'abc'"},
      {"OID", "1.5"},
      {"OID", "2147483648"},
      {"OID", "-2147483649"},
      {"CID", "NULL"},
      {"CID", "'x'"},
      {"RESCOPO", "'x'"},
      {"RESCOPO", "5000000000"},
      {"CRIADOPOR", "0.5"},
      {"CRIADOEM", "'05/03/2008'"},
      {"CRIADOEM", "39512"},
      {"CRIADOEM", "39512.5"},
      {"CRIADOEM", "'2008-03-05'"},
      {"ATUALIZADOEM", "''"},
      {"EXCLUIDO", "32768"},
      {"EXCLUIDO", "'x'"},
      {"NOME", "'" + long_name + "'"},
      {"CODIGO", "'" + long_name + "'"},
  };
  for (const auto& [column, value] : cases) {
    const bool key = column == "OID", kind = column == "CID";
    std::string sql = "INSERT INTO item (" + column;
    if (!key) sql += ", OID";
    if (!kind) sql += ", CID";
    sql += ") VALUES (" + value;
    if (!key) sql += ", 8";
    if (!kind) sql += ", 20";
    EXPECT_FALSE(runs(sql + ")")) << sql;
    EXPECT_NE(std::string::npos, error_.find("constraint failed")) << sql << ": " << error_;
  }
}

TEST_F(PlainEngine, KeepsOneItemOfAnOidAndManyDeletionsOfIt) {
  EXPECT_TRUE(runs("INSERT INTO item (OID, CID) VALUES (8, 20)"));
  EXPECT_FALSE(runs("INSERT INTO item (OID, CID) VALUES (8, 20)"));
  EXPECT_FALSE(runs("INSERT INTO item (CID) VALUES (20)"));  // no OID is made up
  EXPECT_TRUE(runs("INSERT INTO excluido (OID, CID) VALUES (8, 20), (8, 20)"));
}

TEST_F(PlainEngine, CountsOidsUpwardsOnly) {
  EXPECT_FALSE(runs("UPDATE controlaoid SET Delta = 0"));
  EXPECT_FALSE(runs("UPDATE controlaoid SET Delta = 40000"));
  EXPECT_FALSE(
      runs("UPDATE controlaoid SET UltimoOID = 2147483647 + Delta"));  // never a wrapped number
}

}  // namespace
}  // namespace pelm
