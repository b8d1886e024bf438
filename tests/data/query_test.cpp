// Opening and closing, running queries and opening tables, on every engine.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "pelm/error.h"
#include "platform/ado/session_pool.h"
#include "support/component_fixture.h"
#include "support/faulty_provider.h"
#include "support/raised_matchers.h"
#include "support/recording_provider.h"

namespace pelm {
namespace {

using test::raised;
using test::Raised;
using testing::ElementsAre;

constexpr std::string_view kRunSql = "PelmComum2008.Conn.RunSQL";
constexpr std::string_view kOpenTable = "PelmComum2008.Conn.OpenTable";

class ConnOpening : public test::ComponentFixture {};
PELM_ON_EVERY_ENGINE(ConnOpening);

TEST_P(ConnOpening, OpensWithTheSettingsAndTheirTimeouts) {
  Conn fresh;
  fresh.ConfigureConn(false, connection_string(), 5, 7);
  EXPECT_TRUE(fresh.OpenConn());
  ASSERT_NE(fresh.Conex(), nullptr);
  EXPECT_EQ(fresh.Conex()->State(), ado::adStateOpen);
  EXPECT_EQ(fresh.Conex()->ConnectionTimeout(), 5);
  EXPECT_EQ(fresh.Conex()->CommandTimeout(), 7);
  EXPECT_EQ(fresh.Conex2(), nullptr);
  fresh.CloseConn();
}

TEST_P(ConnOpening, TheSecondConnectionIsApartFromTheFirst) {
  EXPECT_TRUE(conn().OpenConn2());
  ASSERT_NE(conn().Conex2(), nullptr);
  EXPECT_NE(conn().Conex2(), conn().Conex());
  conn().CloseConn2();
  EXPECT_EQ(conn().Conex2()->State(), ado::adStateClosed);
  EXPECT_EQ(conn().Conex()->State(), ado::adStateOpen);
}

TEST_P(ConnOpening, AfterClosingItReturnsTrueAndLeavesTheConnectionClosed) {
  const auto connection = conn().Conex();
  conn().CloseConn();
  EXPECT_TRUE(conn().OpenConn());
  EXPECT_EQ(conn().Conex(), connection);
  EXPECT_EQ(connection->State(), ado::adStateClosed);
}

TEST_P(ConnOpening, WithTheObjectSetToNothingItOpensAnew) {
  conn().CloseConn();
  conn().Conex(nullptr);
  EXPECT_TRUE(conn().OpenConn());
  EXPECT_EQ(conn().Conex()->State(), ado::adStateOpen);
}

TEST_P(ConnOpening, TheCursorLocationPlaysNoPart) {
  conn().CloseConn();
  conn().Conex(nullptr);
  conn().OpenConn(ado::adUseClient);
  EXPECT_EQ(conn().Conex()->CursorLocation(), ado::adUseServer);
}

TEST_P(ConnOpening, SendsTheSqlServerSessionStatementAloneOnBothKindsOfDatabase) {
  for (const std::int16_t kind : {std::int16_t{1}, std::int16_t{2}}) {
    const test::RecordingProvider recorder(GetParam().provider);
    Conn fresh;
    fresh.ConfigureConn(false, connection_string(), 60, 60, kind);
    fresh.OpenConn();
    EXPECT_THAT(recorder.texts(), ElementsAre("execute set language portuguese"));
    fresh.CloseConn();
  }
}

TEST_P(ConnOpening, ADatabaseThatRefusesTheSessionStatementServesAllTheSame) {
  test::FaultyProvider faulty(GetParam().provider);
  for (const bool second : {false, true}) {
    Conn fresh;
    fresh.ConfigureConn(false, connection_string());
    ado::empty_session_pool();
    faulty.fail_at(2, test::provider_failure());  // 1 is the connecting itself
    EXPECT_TRUE(second ? fresh.OpenConn2() : fresh.OpenConn());
    EXPECT_TRUE(faulty.failed());
    const auto& connection = second ? fresh.Conex2() : fresh.Conex();
    EXPECT_EQ(connection->State(), ado::adStateOpen);
    faulty.stop();
    connection->Close();
  }
}

TEST_P(ConnOpening, ClosingTwiceIsNoError) {
  conn().CloseConn();
  EXPECT_NO_THROW(conn().CloseConn());
}

TEST_P(ConnOpening, TheEndOfACMainClosesBothConnectionsAndKeepsTheirObjects) {
  conn().OpenConn2();
  main().end();
  ASSERT_NE(conn().Conex(), nullptr);
  EXPECT_EQ(conn().Conex()->State(), ado::adStateClosed);
  EXPECT_EQ(conn().Conex2()->State(), ado::adStateClosed);
  EXPECT_EQ(conn().ODBC_STR(), connection_string());
}

TEST_P(ConnOpening, AnErrorOfClosingReachesWhoeverEndsTheCMain) {
  conn().OpenConn2();
  conn().Conex()->BeginTrans();
  EXPECT_THAT(raised([&] { main().end(); }),
              Raised(error_number::kInTransaction, "ADODB.Connection"));
  EXPECT_EQ(conn().Conex2()->State(), ado::adStateOpen);  // its turn never came
  conn().Conex()->RollbackTrans();
  conn().CloseConn2();
}

class RunSQL : public test::ComponentFixture {
 protected:
  void add_items() {
    for (const Oid oid : {8, 9, 10})
      base().cadastrar_item(1, "Item " + std::to_string(oid), 20, oid);
  }
};
PELM_ON_EVERY_ENGINE(RunSQL);

TEST_P(RunSQL, ReturnsTheOpenRows) {
  add_items();
  const auto rs = conn().RunSQL("select oid, nome from item order by oid");
  EXPECT_EQ(rs->State(), ado::adStateOpen);
  EXPECT_EQ(rs->CursorType(), ado::adOpenStatic);
  EXPECT_EQ(rs->LockType(), ado::adLockReadOnly);
  EXPECT_EQ(rs->CursorLocation(), ado::adUseServer);
  EXPECT_EQ(rs->Fields("NOME").Value(), Variant("Item 8"));
  rs->Close();
}

TEST_P(RunSQL, TheTimeLimitIsACommandsOwnAndNotTheConnections) {
  conn().CloseConn();
  conn().Conex(nullptr);
  const test::RecordingProvider recorder(GetParam().provider);
  conn().OpenConn();
  conn().Conex()->CommandTimeout(77);
  conn().Conex()->Execute("select oid from item");
  conn().RunSQL("select oid from item");
  conn().OpenTable("item")->Eof();
  std::vector<std::int32_t> limits;
  for (const test::ProviderCall& call : recorder.calls()) {
    if (call.text.starts_with("select")) limits.push_back(call.seconds);
  }
  EXPECT_THAT(limits, ElementsAre(77, 30, 30));
}

TEST_P(RunSQL, AStatementWithoutRowsGivesAClosedRecordSet) {
  add_items();
  const auto rs = conn().RunSQL("UPDATE item SET nome = 'x' WHERE oid = 9");
  EXPECT_EQ(rs->State(), ado::adStateClosed);
  EXPECT_THAT(rows("select nome from item where oid = 9"), ElementsAre("x"));
}

TEST_P(RunSQL, RecordsTheTextInLastSqlAndLeavesTheCallersTextAlone) {
  std::string query = "select isnull(nome, '') from item";
  conn().RunSQL(query)->Close();
  EXPECT_EQ(query, "select isnull(nome, '') from item");
  EXPECT_EQ(conn().LastSQL(), query);
}

TEST_P(RunSQL, OnOracleTheCallersTextComesBackTranslated) {
  conn().Database(2);
  std::string query = "select substring(nome,1,2) from nada";
  EXPECT_TRUE(raised([&] { conn().RunSQL(query); }).has_value());
  EXPECT_EQ(query, "SELECT SUBSTR(NOME,1,2) FROM NADA");
  EXPECT_EQ(conn().LastSQL(), query);
}

TEST_P(RunSQL, AFailedTranslationLeavesLastSqlAloneAndTheCallersTextAsFarAsItCame) {
  conn().Database(2);
  conn().LastSQL("antes");
  EXPECT_THAT(raised([&] { conn().RunSQL("=* b"); }), Raised(error_number::kInvalidCall, kRunSql));
  std::string query = "select isnull(nome, ''), left(nome) from item";
  EXPECT_THAT(raised([&] { conn().RunSQL(query); }), Raised(error_number::kInvalidCall, kRunSql));
  EXPECT_EQ(query, "SELECT NVL(NOME, ''), LEFT(NOME) FROM ITEM");
  EXPECT_EQ(conn().LastSQL(), "antes");
}

TEST_P(RunSQL, AFailedTranslationByItselfHasItsOwnSource) {
  std::string query = "select isnull(nome, ''), left(nome) from item";
  EXPECT_THAT(raised([&] { conn().traduzsql(query, "Oracle"); }),
              Raised(error_number::kInvalidCall, "PelmComum2008.Conn.traduzsql"));
  EXPECT_EQ(query, "SELECT NVL(NOME, ''), LEFT(NOME) FROM ITEM");
  query = "select isnull(nome, '') from item";
  EXPECT_TRUE(conn().traduzsql(query, "SQLSERVER"));
  EXPECT_EQ(query, "select isnull(nome, '') from item");
}

TEST_P(RunSQL, AFailureKeepsTheTextThatFailedInLastSql) {
  EXPECT_THAT(raised([&] { conn().RunSQL("select * from nao_ha"); }),
              Raised(error_number::kNoTable, kRunSql, testing::HasSubstr("nao_ha")));
  EXPECT_EQ(conn().LastSQL(), "select * from nao_ha");
}

TEST_P(RunSQL, OnAClosedConnectionItFailsBeforeTheTextIsRecorded) {
  conn().CloseConn();
  conn().LastSQL("antes");
  EXPECT_THAT(raised([&] { conn().RunSQL("select 1"); }),
              Raised(error_number::kInvalidConnection, kRunSql));
  EXPECT_EQ(conn().LastSQL(), "antes");
}

TEST_P(RunSQL, WithoutAConnectionObjectItFailsAfterTheTextIsRecorded) {
  conn().CloseConn();
  conn().Conex(nullptr);
  EXPECT_THAT(raised([&] { conn().RunSQL("select 1"); }),
              Raised(error_number::kInvalidConnection, kRunSql));
  EXPECT_EQ(conn().LastSQL(), "select 1");
}

TEST_P(RunSQL, TheServerSideIgnoresPageAndCacheSize) {
  const auto rs = conn().RunSQL("select oid from item", ado::adOpenStatic, ado::adLockReadOnly,
                                ado::adUseServer, 0, 77, 88);
  EXPECT_EQ(rs->PageSize(), 10);
  EXPECT_EQ(rs->CacheSize(), 1);
  rs->Close();
}

TEST_P(RunSQL, TheClientSideTakesPageAndCacheSize) {
  const auto rs = conn().RunSQL("select oid from item", ado::adOpenStatic, ado::adLockReadOnly,
                                ado::adUseClient, 0, 77, 88);
  EXPECT_EQ(rs->PageSize(), 88);
  EXPECT_EQ(rs->CacheSize(), 77);
  rs->Close();
}

TEST_P(RunSQL, AWrongSettingFailsAfterTheTextIsRecorded) {
  struct Setting {
    ado::CursorTypeEnum type;
    ado::LockTypeEnum lock;
    ado::CursorLocationEnum location;
    std::int32_t max_records, cache_size, page_size;
  };
  constexpr auto kNoLocation = static_cast<ado::CursorLocationEnum>(1);
  constexpr Setting kCases[] = {
      {ado::adOpenStatic, ado::adLockReadOnly, kNoLocation, 0, 1, 10},
      {ado::adOpenStatic, ado::adLockReadOnly, ado::adUseServer, -1, 1, 10},
      {ado::adOpenStatic, ado::adLockReadOnly, ado::adUseClient, 0, 0, 10},
      {ado::adOpenStatic, ado::adLockReadOnly, ado::adUseClient, 0, 1, 0},
      {static_cast<ado::CursorTypeEnum>(4), ado::adLockReadOnly, ado::adUseServer, 0, 1, 10},
      {ado::adOpenStatic, static_cast<ado::LockTypeEnum>(0), ado::adUseServer, 0, 1, 10},
  };
  for (const Setting& s : kCases) {
    conn().LastSQL("antes");
    EXPECT_THAT(raised([&] {
                  conn().RunSQL("select oid from item", s.type, s.lock, s.location, s.max_records,
                                s.cache_size, s.page_size);
                }),
                Raised(error_number::kWrongArguments, kRunSql));
    EXPECT_EQ(conn().LastSQL(), "select oid from item");
  }
  // On the server's side page and cache sizes are not even looked at.
  conn().RunSQL("select oid from item", ado::adOpenStatic, ado::adLockReadOnly, ado::adUseServer, 0,
                0, -1);
}

TEST_P(RunSQL, MaxRecordsCountsOnBothSides) {
  add_items();
  for (const auto location : {ado::adUseServer, ado::adUseClient}) {
    const auto rs =
        conn().RunSQL("select oid from item", ado::adOpenStatic, ado::adLockReadOnly, location, 2);
    EXPECT_EQ(rs->RecordCount(), 2);
    rs->Close();
  }
}

TEST_P(RunSQL, ASecondQueryMayRunWhileTheFirstIsRead) {
  add_items();
  const auto outer = conn().RunSQL("select oid from item order by oid");
  std::string seen;
  for (; !outer->Eof(); outer->MoveNext()) {
    const auto inner = conn().RunSQL("select nome from item where oid = " +
                                     std::to_string(outer->Fields("oid").Value().long_value()));
    seen += inner->Fields("nome").Value().text() + ";";
    inner->Close();
  }
  outer->Close();
  EXPECT_EQ(seen, "Item 8;Item 9;Item 10;");
}

class OpenTable : public test::ComponentFixture {};
PELM_ON_EVERY_ENGINE(OpenTable);

TEST_P(OpenTable, OpensForAddingAndReportsTheCommandsText) {
  const auto rs = conn().OpenTable("item");
  EXPECT_EQ(rs->CursorType(), ado::adOpenKeyset);
  EXPECT_EQ(rs->LockType(), ado::adLockOptimistic);
  EXPECT_EQ(conn().LastSQL(), "select * from item");
  rs->Close();
}

TEST_P(OpenTable, AMissingTableIsTheDatabasesError) {
  EXPECT_THAT(raised([&] { conn().OpenTable("nenhuma"); }),
              Raised(error_number::kNoTable, kOpenTable, testing::HasSubstr("nenhuma")));
  EXPECT_EQ(conn().LastSQL(), "select * from nenhuma");
}

TEST_P(OpenTable, WithoutAConnectionObjectItFailsAfterTheTextIsRecorded) {
  conn().CloseConn();
  conn().Conex(nullptr);
  EXPECT_THAT(raised([&] { conn().OpenTable("item"); }),
              Raised(error_number::kInvalidConnection, kOpenTable));
  EXPECT_EQ(conn().LastSQL(), "select * from item");
}

TEST_P(OpenTable, TakesTheCursorAndTheLockItIsGivenOnTheServersSide) {
  const auto rs = conn().OpenTable("item", ado::adOpenStatic, ado::adLockReadOnly);
  EXPECT_EQ(rs->CursorType(), ado::adOpenStatic);
  EXPECT_EQ(rs->LockType(), ado::adLockReadOnly);
  EXPECT_EQ(rs->CursorLocation(), ado::adUseServer);
  EXPECT_EQ(rs->MaxRecords(), 0);
  EXPECT_THAT(raised([&] { rs->AddNew(); }),
              Raised(error_number::kProviderCannot, "ADODB.Recordset"));
  rs->Close();
}

TEST_P(OpenTable, TheNameIsNotTranslated) {
  conn().Database(2);
  conn().OpenTable("item")->Close();
  EXPECT_EQ(conn().LastSQL(), "select * from item");
}

TEST_P(OpenTable, OnAClosedConnectionItFailsBeforeTheTextIsRecorded) {
  conn().CloseConn();
  conn().LastSQL("antes");
  EXPECT_THAT(raised([&] { conn().OpenTable("item"); }),
              Raised(error_number::kInvalidConnection, kOpenTable));
  EXPECT_EQ(conn().LastSQL(), "antes");
}

TEST_P(OpenTable, AddingARowCallsTheDatabaseAsOftenInALargeTableAndReadsNoRow) {
  const auto calls_to_add = [&](Oid oid) {
    const test::RecordingProvider recorder(GetParam().provider);
    thread().reopen();
    base().cadastrar_item(1, "Novo", 20, oid);
    return recorder.texts();
  };
  const auto in_an_empty_table = calls_to_add(8);
  for (Oid oid = 100; oid < 1100; ++oid) base().cadastrar_item(1, "Outro", 20, oid);
  const auto in_a_large_table = calls_to_add(9);

  ASSERT_EQ(in_a_large_table.size(), in_an_empty_table.size());
  for (const std::string& call : in_a_large_table) {
    EXPECT_THAT(call, testing::Not(testing::HasSubstr("select")));
  }
}

TEST_P(OpenTable, AUserOfTheClassMayReadAndChangeItsRows) {
  base().cadastrar_item(1, "Antes", 20, 8);
  const auto rs = conn().OpenTable("item");
  ASSERT_FALSE(rs->Eof());
  rs->Fields("NOME") = "Depois";
  rs->Update();
  rs->Close();
  EXPECT_THAT(rows("select nome from item"), ElementsAre("Depois"));
}

}  // namespace
}  // namespace pelm
