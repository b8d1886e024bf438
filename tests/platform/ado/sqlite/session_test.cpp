// Sessions: values, descriptions, kept statements, time limits, locks, the state of a user.
#include "platform/ado/sqlite/session.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <functional>

#include "pelm/error.h"
#include "platform/ado/sqlite/scratch_database.h"

namespace pelm::ado::sqlite::test {
namespace {

using Rows = std::vector<std::string>;

std::int32_t number_raised(const std::function<void()>& what, std::string* description = nullptr) {
  try {
    what();
  } catch (const Error& e) {
    if (description != nullptr) *description = e.description();
    EXPECT_EQ("SQLite", e.source());
    return e.number();
  }
  return 0;
}

class SqliteSessionTest : public testing::Test {
 protected:
  SqliteSessionTest() { fill(*session_); }
  SqliteSession& own() { return dynamic_cast<SqliteSession&>(*session_); }
  std::unique_ptr<Session> session_ = open_session("Data Source=:memory:");
};

TEST_F(SqliteSessionTest, BindsEveryTypeAndReadsItBackByTheColumn) {
  const std::vector<Variant> values = {std::int32_t{-5},
                                       std::int16_t{7},
                                       5e9,
                                       1.5,
                                       10.25,
                                       true,
                                       Date::from_civil({2008, 3, 5, 14, 7, 9}),
                                       "Olá",
                                       "longo"};
  run(*session_,
      "insert into tipos (inteiro, curto, grande, numero, moeda, marca, quando, texto, memo) "
      "values (?, ?, ?, ?, ?, ?, ?, ?, ?)",
      values);
  EXPECT_EQ(
      (Rows{
          "-5 | 7i | 5000000000.0 | 1.5 | 10.25 | True | #2008-03-05 14:07:09# | 'Olá' | 'longo'"}),
      rows_of(*session_,
              "select inteiro, curto, grande, numero, moeda, marca, quando, texto, memo "
              "from tipos where id = @@identity"));
}

TEST_F(SqliteSessionTest, BindsEmptyAndNullAsNull) {
  const std::vector<Variant> values = {Variant(), Null{}};
  run(*session_, "insert into tipos (inteiro, texto) values (?, ?)", values);
  EXPECT_EQ((Rows{"null | null"}),
            rows_of(*session_, "select inteiro, texto from tipos where id = @@identity"));
}

TEST_F(SqliteSessionTest, RefusesAnArrayAsAValue) {
  const std::vector<Variant> values = {Variant::Elements{}};
  EXPECT_EQ(error_number::kCantConvertValue,
            number_raised([&] { run(*session_, "select ?", values); }));
}

TEST_F(SqliteSessionTest, MixesQuestionMarksAndLiterals) {
  const std::vector<Variant> values = {std::int32_t{8}, "João%"};
  EXPECT_EQ(
      (Rows{"8 | 'x'"}),
      rows_of(*session_, "select oid, 'x' from item where oid = ? and cid = 20 and nome like ?",
              values));
}

TEST_F(SqliteSessionTest, RefusesTooFewAndTooManyValues) {
  const std::vector<Variant> one = {std::int32_t{8}};
  EXPECT_EQ(error_number::kErrorsInCommand,
            number_raised([&] { run(*session_, "select ? + ?", one); }));
  EXPECT_EQ(error_number::kErrorsInCommand,
            number_raised([&] { run(*session_, "select 1", one); }));
}

TEST_F(SqliteSessionTest, GivesEachStatementOfAnotherItsOwnValues) {
  const std::vector<Variant> values = {"a", std::int32_t{8}, std::int32_t{9}};
  EXPECT_EQ((Rows{"'a'"}),
            rows_of(*session_,
                    "update item set nome = ? where oid = ? select nome from item where "
                    "oid = ? - 1",
                    values));
}

TEST_F(SqliteSessionTest, KeepsATextWithCharacterZeroWhole) {
  const std::string text("a\0b", 3);
  const std::vector<Variant> values = {text};
  run(*session_, "update item set nome = ? where oid = 8", values);
  EXPECT_EQ((Rows{"'" + text + "'"}), rows_of(*session_, "select nome from item where oid = 8"));
  EXPECT_EQ(error_number::kErrorsInCommand,
            number_raised([&] { run(*session_, std::string("select '") + text + "'"); }));
}

TEST_F(SqliteSessionTest, DescribesKeysNumbersAndSizes) {
  struct Expected {
    const char* table;
    const char* column;
    DataTypeEnum type;
    int size;
    bool nullable, key, auto_number;
  };
  for (const Expected& e : {
           Expected{"item", "OID", adInteger, 0, false, true, false},
           Expected{"item", "NOME", adVarWChar, 255, true, false, false},
           Expected{"item", "CRIADOEM", adDate, 0, true, false, false},
           Expected{"item", "EXCLUIDO", adSmallInt, 0, true, false, false},
           Expected{"excluido", "OID", adInteger, 0, false, false, false},
           Expected{"Pelm_Menu", "id", adInteger, 0, false, true, true},
           Expected{"tipos", "id", adInteger, 0, false, true, true},
           Expected{"tipos", "memo", adLongVarWChar, 0, true, false, false},
           Expected{"tipos", "grande", adBigInt, 0, true, false, false},
           Expected{"item_r", "OID", adInteger, 0, true, false, false},
       }) {
    const auto columns = session_->describe(e.table);
    const auto found = std::find_if(columns->begin(), columns->end(),
                                    [&](const Column& c) { return c.name == e.column; });
    ASSERT_NE(columns->end(), found) << e.table << "." << e.column;
    EXPECT_EQ(e.type, found->type) << e.table << "." << e.column;
    EXPECT_EQ(e.size, found->size) << e.table << "." << e.column;
    EXPECT_EQ(e.nullable, found->nullable) << e.table << "." << e.column;
    EXPECT_EQ(e.key, found->key) << e.table << "." << e.column;
    EXPECT_EQ(e.auto_number, found->auto_number) << e.table << "." << e.column;
  }
}

TEST_F(SqliteSessionTest, TakesTheFirstUniqueKeyWithoutNullsWhereThereIsNoPrimaryOne) {
  run(*session_,
      "create table k (a int unique, b int not null, c int not null, d int not null unique, unique "
      "(b, c))");
  std::string keys;
  for (const Column& c : *session_->describe("k")) keys += c.key ? c.name : "";
  EXPECT_TRUE(keys == "bc" || keys == "d") << keys;
  EXPECT_NE("a", keys);
}

TEST_F(SqliteSessionTest, DescribesATableAsAStatementMayNameIt) {
  for (const char* name : {"item", "ITEM", "[item]", "\"Item\"", "dbo.item", "dbo.[item]"}) {
    EXPECT_EQ(11U, session_->describe(name)->size()) << name;
  }
}

TEST_F(SqliteSessionTest, RaisesNoTableForATableThatIsNotThere) {
  std::string description;
  EXPECT_EQ(error_number::kNoTable,
            number_raised([&] { session_->describe("nada"); }, &description));
  EXPECT_EQ("no such table: nada", description);
  EXPECT_EQ(error_number::kNoTable,
            number_raised([&] { session_->execute("select * from nada", {}); }));
}

TEST_F(SqliteSessionTest, SharesADescriptionUntilTheTableChanges) {
  const auto before = session_->describe("rotulo");
  EXPECT_EQ(before, session_->describe("rotulo"));
  run(*session_, "alter table rotulo add extra int");
  EXPECT_EQ(before->size() + 1, session_->describe("rotulo")->size());
  run(*session_, "drop table rotulo");
  EXPECT_EQ(error_number::kNoTable, number_raised([&] { session_->describe("rotulo"); }));
}

TEST_F(SqliteSessionTest, UsesOneStatementForAShape) {
  own().cache().clear();
  for (int oid = 0; oid < 50; ++oid) {
    rows_of(*session_, "select nome from item where oid = " + std::to_string(oid));
  }
  EXPECT_EQ(1U, own().cache().size());
}

TEST_F(SqliteSessionTest, KeepsTheShapesThatAreUsedAgainAndAgain) {
  const std::string often = "select nome from item order by oid";
  const std::string once = "select oid from item order by oid";
  rows_of(*session_, once);
  const Rows names = rows_of(*session_, often);
  const auto kept = own().cache().find(often);
  ASSERT_NE(nullptr, kept);
  ASSERT_NE(nullptr, own().cache().find(once));
  for (int i = 0; i < 500; ++i) {
    rows_of(*session_, "select " + std::to_string(i) + " from item");
    EXPECT_EQ(names, rows_of(*session_, often));
  }
  EXPECT_EQ(kept, own().cache().find(often));
  EXPECT_EQ(nullptr, own().cache().find(once));
}

TEST_F(SqliteSessionTest, AShapeThatWasForgottenIsMadeAnew) {
  const std::string sql = "select nome from item where oid = ";
  const Rows name = rows_of(*session_, sql + "8");
  own().cache().clear();
  EXPECT_EQ(name, rows_of(*session_, sql + "8"));
  EXPECT_EQ(1U, own().cache().size());
}

TEST_F(SqliteSessionTest, GivesAShapeInUseAnotherStatement) {
  const std::string sql = "select oid from item where oid >= ";
  const auto outer = session_->execute(sql + "8 order by oid", {});
  ASSERT_TRUE(outer->next());
  const auto inner = session_->execute(sql + "100 order by oid", {});
  ASSERT_TRUE(inner->next());
  EXPECT_EQ("100", shown(inner->value(0)));
  EXPECT_EQ("8", shown(outer->value(0)));
  EXPECT_TRUE(outer->next());
  EXPECT_EQ("9", shown(outer->value(0)));
}

TEST_F(SqliteSessionTest, ForgetsTheShapesUsedLongestAgo) {
  const auto held = session_->execute("select oid from item where oid = 8 and 1 = 1", {});
  for (int i = 0; i < 500; ++i) {
    rows_of(*session_, "select " + std::to_string(i) + " from item where oid = 8");
  }
  EXPECT_LE(own().cache().size(), StatementCache::kMaxShapes);
  EXPECT_TRUE(held->next());  // what is in use outlives its place in the cache
}

TEST_F(SqliteSessionTest, SeesNewColumnsThroughAKeptStatement) {
  const std::string sql = "select * from rotulo where raplicativo = 5";
  EXPECT_EQ(3U, session_->execute(sql, {})->columns()->size());
  run(*session_, "alter table rotulo add extra int");
  const auto cursor = session_->execute(sql, {});
  ASSERT_EQ(4U, cursor->columns()->size());
  ASSERT_TRUE(cursor->next());
  EXPECT_TRUE(cursor->value(3).is_null());
}

TEST_F(SqliteSessionTest, EndsACursorForEver) {
  const auto cursor = session_->execute("select oid from item where oid = 8", {});
  EXPECT_TRUE(cursor->next());
  EXPECT_FALSE(cursor->next());
  EXPECT_FALSE(cursor->next());
  EXPECT_EQ(-1, cursor->rows_affected());
}

TEST_F(SqliteSessionTest, RunsAStatementAfterItsTextIsGone) {
  auto text =
      std::make_unique<std::string>("select oid from item where nome = 'João da Silva' or oid = 9");
  const auto cursor = session_->execute(*text, {});
  text->assign(text->size(), '?');
  text.reset();
  EXPECT_EQ((Rows{"8", "9"}), rows_of(*cursor));
}

TEST_F(SqliteSessionTest, UndoesATransactionThatIsRolledBack) {
  session_->begin(adXactReadCommitted);
  run(*session_, "delete from item");
  session_->rollback();
  EXPECT_EQ((Rows{"7"}), rows_of(*session_, "select count(*) from item"));
  session_->begin(adXactReadCommitted);
  run(*session_, "delete from item where oid = 8");
  session_->commit();
  EXPECT_EQ((Rows{"6"}), rows_of(*session_, "select count(*) from item"));
}

TEST_F(SqliteSessionTest, ACommitThatFailsSaysWhyAndMayBeTriedAgain) {
  run(*session_, "create table dono (id int primary key)");
  run(*session_,
      "create table coisa (dono int references dono (id) deferrable initially deferred)");
  session_->begin(adXactReadCommitted);
  run(*session_, "insert into coisa (dono) values (1)");
  for (int attempt = 0; attempt < 2; ++attempt) {
    std::string description;
    EXPECT_NE(0, number_raised([&] { session_->commit(); }, &description));
    EXPECT_NE(std::string::npos, description.find("FOREIGN KEY constraint failed")) << description;
  }
  run(*session_, "insert into dono (id) values (1)");
  session_->commit();
  EXPECT_EQ((Rows{"1"}), rows_of(*session_, "select count(*) from coisa"));
}

TEST_F(SqliteSessionTest, RefusesTransactionsOutOfTurn) {
  EXPECT_EQ(error_number::kProviderFailure, number_raised([&] { session_->commit(); }));
  EXPECT_EQ(error_number::kProviderFailure, number_raised([&] { session_->rollback(); }));
  session_->begin(adXactReadCommitted);
  EXPECT_EQ(error_number::kProviderFailure,
            number_raised([&] { session_->begin(adXactReadCommitted); }));
}

TEST_F(SqliteSessionTest, ATransactionMayEndWithoutAWrite) {
  for (const bool reads : {false, true}) {
    session_->begin(adXactReadCommitted);
    if (reads) rows_of(*session_, "select count(*) from item");
    session_->commit();
    EXPECT_EQ(error_number::kProviderFailure, number_raised([&] { session_->commit(); }));
    session_->begin(adXactReadCommitted);
    if (reads) rows_of(*session_, "select count(*) from item");
    session_->rollback();
    EXPECT_EQ(error_number::kProviderFailure, number_raised([&] { session_->rollback(); }));
  }
  session_->begin(adXactReadCommitted);
  EXPECT_TRUE(session_->reset());
  run(*session_, "delete from item where oid = 8");
  EXPECT_EQ(error_number::kProviderFailure, number_raised([&] { session_->rollback(); }));
}

TEST_F(SqliteSessionTest, EndsAStatementAtItsTimeOut) {
  session_->command_timeout(1);
  std::string description;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(error_number::kTimeout,
            number_raised(
                [&] {
                  rows_of(*session_,
                          "with n(i) as (select 1 union all select i + 1 from n) "
                          "select count(*) from n");
                },
                &description));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  EXPECT_NE(std::string::npos, description.find("time-out of 1 s")) << description;
  EXPECT_EQ((Rows{"7"}), rows_of(*session_, "select count(*) from item"));
}

TEST_F(SqliteSessionTest, LeavesNothingOfItsUserBehind) {
  session_->begin(adXactReadCommitted);
  run(*session_, "delete from item");
  run(*session_, "set language us_english");
  run(*session_, "insert into Pelm_Menu (nome) values ('x')");
  EXPECT_TRUE(session_->reset());
  EXPECT_EQ(
      (Rows{"7 | null | 'março'"}),
      rows_of(*session_, "select count(*), @@identity, datename(mm, '2008-03-05') from item"));
}

TEST_F(SqliteSessionTest, GoesWhenItsUserLeftTracesInIt) {
  run(*session_, "create table #t (a int)");
  EXPECT_FALSE(session_->reset());
  const auto other = open_session("Data Source=:memory:");
  run(*other, "pragma foreign_keys = off");
  EXPECT_FALSE(other->reset());
}

TEST_F(SqliteSessionTest, KeepsTheStatementAndTheEnginesWordsInTheDiagnostics) {
  try {
    run(*session_, "insert into item (oid, cid) values (8, 20)");
    FAIL() << "a second row was stored";
  } catch (const Error& e) {
    ASSERT_NE(nullptr, e.diagnostics());
    EXPECT_EQ("SQLite", e.diagnostics()->provider);
    EXPECT_EQ("insert INTO item (\"oid\", \"cid\") values (?1, ?2)", e.diagnostics()->sql);
    ASSERT_EQ(1U, e.diagnostics()->records.size());
    EXPECT_EQ(SQLITE_CONSTRAINT_PRIMARYKEY, e.diagnostics()->records[0].native_code);
  }
}

TEST_F(SqliteSessionTest, FindsTheSameValueLetterByLetter) {
  const auto columns = session_->describe("item");
  const auto same = [&](const char* name, const Variant& value) {
    const auto c = std::find_if(columns->begin(), columns->end(),
                                [&](const Column& x) { return x.name == name; });
    const std::vector<Variant> values = {value};
    return rows_of(*session_, "select oid from item where oid < 11 and " + session_->same_value(*c),
                   values);
  };
  EXPECT_EQ((Rows{"8"}), same("NOME", "João da Silva"));
  EXPECT_EQ((Rows{}), same("NOME", "JOÃO DA SILVA"));
  EXPECT_EQ((Rows{"8"}), same("CRIADOEM", Date::from_civil({2008, 3, 5, 14, 7, 9})));
  EXPECT_EQ((Rows{"8"}), same("OID", std::int32_t{8}));
}

TEST_F(SqliteSessionTest, FindsADateStoredInAnotherForm) {
  run(*session_, "create table d (quando datetime)");
  sqlite3_exec(own().database().handle(),
               "insert into d values ('2008-03-05 14:07:09.123'), ('2008-03-05')", nullptr, nullptr,
               nullptr);
  EXPECT_EQ((Rows{"#2008-03-05 14:07:09#", "#2008-03-05 00:00:00#"}),
            rows_of(*session_, "select * from d"));
  const auto columns = session_->describe("d");
  const std::vector<Variant> values = {Date::from_civil({2008, 3, 5, 14, 7, 9})};
  EXPECT_EQ((Rows{"1"}),
            rows_of(*session_,
                    "select count(*) from d where " + session_->same_value((*columns)[0]), values));
}

// Every error of the engine has its number.
TEST_F(SqliteSessionTest, TurnsTheEnginesErrorsIntoThePlatformsNumbers) {
  run(*session_, "create table pai (id int primary key)");
  run(*session_,
      "create table filho (id int references pai (id), n int not null, c int check (c > 0), u int "
      "unique)");
  run(*session_,
      "create trigger barra before delete on pai begin select raise(abort, 'nao pode'); end");
  run(*session_, "insert into pai values (1) insert into filho values (1, 1, 1, 1)");
  struct Case {
    const char* sql;
    std::int32_t number;
    const char* text;
  };
  for (const Case& c : {
           Case{"select * from nada", error_number::kNoTable, "no such table: nada"},
           Case{"insert into nada values (1)", error_number::kNoTable, "no such table: nada"},
           Case{"select nada from item", error_number::kErrorsInCommand, "no such column: nada"},
           Case{"selct 1", error_number::kErrorsInCommand, "syntax error"},
           Case{"insert into filho values (1, 1, 1, 1)", error_number::kIntegrityViolation,
                "UNIQUE"},
           Case{"insert into filho values (1, null, 1, 2)", error_number::kIntegrityViolation,
                "NOT NULL"},
           Case{"insert into filho values (1, 1, -1, 2)", error_number::kIntegrityViolation,
                "CHECK"},
           Case{"insert into filho values (2, 1, 1, 2)", error_number::kIntegrityViolation,
                "FOREIGN KEY"},
           Case{"delete from pai", error_number::kErrorsInCommand, "nao pode"},
           Case{"insert into tipos (id) values ('x')", error_number::kCantConvertValue,
                "datatype mismatch"},
           Case{"select convert(int, 'x')", error_number::kCantConvertValue,
                "Syntax error converting"},
           Case{"select convert(int, 1e10)", error_number::kDataOverflow, "overflow"},
           Case{"   ", error_number::kErrorsInCommand, "empty"},
           Case{"-- nada", error_number::kErrorsInCommand, "empty"},
       }) {
    std::string description;
    EXPECT_EQ(c.number, number_raised([&] { rows_of(*session_, c.sql); }, &description)) << c.sql;
    EXPECT_NE(std::string::npos, description.find(c.text)) << c.sql << ": " << description;
  }
}

TEST(SqliteConnect, RefusesWhatItDoesNotKnow) {
  struct Case {
    const char* connection_string;
    std::int32_t number;
    const char* text;
  };
  for (const Case& c : {
           Case{"Data Source=:memory:;Initial Catalog=crm", error_number::kProviderFailure,
                "\"Initial Catalog\" is not known; known are Provider, Data Source"},
           Case{"Provider=SQLite", error_number::kProviderFailure, "Data Source is missing"},
           Case{"Data Source=:memory:;Mode=Never", error_number::kProviderFailure,
                "it may be Read"},
           Case{"Data Source=:memory:;UID=sa", error_number::kLoginFailed, "UID must be empty"},
           Case{"Data Source=:memory:;PWD=x", error_number::kLoginFailed, "PWD must be empty"},
       }) {
    std::string description;
    EXPECT_EQ(c.number, number_raised([&] { open_session(c.connection_string); }, &description));
    EXPECT_NE(std::string::npos, description.find(c.text)) << description;
  }
  EXPECT_NO_THROW(open_session("provider=sqlite;data source=:memory:;uid=;pwd=;mode=readwrite"));
}

TEST(SqliteConnect, PoolsFilesAndNeverMemory) {
  open_session("Data Source=:memory:");
  const auto provider = find_provider("SQLite");
  const auto key = [&](const char* text, ConnectModeEnum mode) {
    SessionSettings settings;
    settings.properties = ConnectionString::parse(text);
    settings.mode = mode;
    return provider->pool_key(settings);
  };
  EXPECT_EQ("", key("Data Source=:memory:", adModeUnknown));
  EXPECT_NE("", key("Data Source=a.db", adModeUnknown));
  EXPECT_NE(key("Data Source=a.db", adModeRead), key("Data Source=a.db", adModeUnknown));
  EXPECT_NE(key("Data Source=a.db", adModeUnknown), key("Data Source=b.db", adModeUnknown));
}

}  // namespace
}  // namespace pelm::ado::sqlite::test
