// Connections: states, properties, statements, transactions, and what closing does.
#include "pelm/ado/connection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "pelm/ado/command.h"
#include "pelm/ado/recordset.h"
#include "pelm/error.h"
#include "platform/ado/session_pool.h"
#include "support/engine.h"
#include "support/raised.h"

namespace pelm::ado {
namespace {

using test::number_raised;
using test::raised;
using ::testing::HasSubstr;
using ::testing::Not;
namespace number = error_number;

class ConnectionOpen : public test::DatabaseTest {};
class ConnectionClose : public test::DatabaseTest {};
class ConnectionExecute : public test::DatabaseTest {};
class ConnectionTransaction : public test::DatabaseTest {};

TEST(ConnectionProperties, HaveTheirDefaults) {
  const Connection c;
  EXPECT_EQ(c.ConnectionString(), "");
  EXPECT_EQ(c.ConnectionTimeout(), 15);
  EXPECT_EQ(c.CommandTimeout(), 30);
  EXPECT_EQ(c.Mode(), adModeUnknown);
  EXPECT_EQ(c.CursorLocation(), adUseServer);
  EXPECT_EQ(c.IsolationLevel(), adXactReadCommitted);
  EXPECT_EQ(c.State(), adStateClosed);
  EXPECT_EQ(c.Provider(), "MSDASQL");
  EXPECT_EQ(c.Version(), "2.5");
}

TEST(ConnectionProperties, RefuseValuesOutOfRange) {
  Connection c;
  EXPECT_EQ(number_raised([&] { c.ConnectionTimeout(-1); }), number::kWrongArguments);
  EXPECT_EQ(number_raised([&] { c.CommandTimeout(-1); }), number::kWrongArguments);
  EXPECT_EQ(number_raised([&] { c.Mode(static_cast<ConnectModeEnum>(-1)); }),
            number::kWrongArguments);
  EXPECT_EQ(number_raised([&] { c.CursorLocation(static_cast<CursorLocationEnum>(1)); }),
            number::kWrongArguments);
  EXPECT_EQ(number_raised([&] { c.IsolationLevel(static_cast<IsolationLevelEnum>(5)); }),
            number::kWrongArguments);
  EXPECT_EQ(c.ConnectionTimeout(), 15);
}

TEST(ConnectionProperties, TellTheProviderOfTheString) {
  Connection c;
  c.ConnectionString("Provider=SQLite;Data Source=x");
  EXPECT_EQ(c.Provider(), "SQLite");
  c.ConnectionString("DSN=vendas");
  EXPECT_EQ(c.Provider(), "MSDASQL");
  c.ConnectionString("not a string");
  EXPECT_EQ(c.Provider(), "MSDASQL");
}

TEST(ConnectionWithoutProvider, SaysThatOdbcIsNotThereAndWhatToWrite) {
  Connection c;
  const auto e = raised([&] { c.Open("Driver={SQL Server};UID=ana;PWD=segredo"); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kProviderNotFound);
  EXPECT_EQ(e->source(), "ADODB.Connection");
  EXPECT_THAT(e->description(), HasSubstr("não tem Provider=SQLite"));
  EXPECT_THAT(e->description(), HasSubstr("ODBC não está disponível"));
  EXPECT_THAT(e->description(), HasSubstr("escreva Provider=SQLite;Data Source="));
  EXPECT_THAT(e->description(), Not(HasSubstr("segredo")));
  EXPECT_EQ(c.State(), adStateClosed);
}

TEST(ConnectionWithoutProvider, NamesAnUnknownOne) {
  Connection c;
  const auto e = raised([&] { c.Open("Provider=Nenhum.1;Data Source=x"); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kProviderNotFound);
  EXPECT_THAT(e->description(), HasSubstr("\"Nenhum.1\""));
}

TEST(ConnectionClosed, RefusesWhatNeedsAnOpenOne) {
  Connection c;
  EXPECT_EQ(number_raised([&] { c.Close(); }), number::kObjectClosed);
  EXPECT_EQ(number_raised([&] { c.BeginTrans(); }), number::kObjectClosed);
  EXPECT_EQ(number_raised([&] { c.CommitTrans(); }), number::kObjectClosed);
  EXPECT_EQ(number_raised([&] { c.RollbackTrans(); }), number::kObjectClosed);
  const auto e = raised([&] { c.Execute("select 1"); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kInvalidConnection);
  EXPECT_EQ(e->source(), "ADODB.Connection");
}

TEST_P(ConnectionOpen, ReportsItsState) {
  EXPECT_EQ(connection->State(), adStateOpen);
  EXPECT_EQ(connection->Provider(), GetParam().provider);
  EXPECT_EQ(connection->ConnectionString(), connection_string());
  connection->Close();
  EXPECT_EQ(connection->State(), adStateClosed);
}

TEST_P(ConnectionOpen, RefusesASecondTimeAndChangesMeanwhile) {
  EXPECT_EQ(number_raised([&] { connection->Open(); }), number::kObjectOpen);
  EXPECT_EQ(number_raised([&] { connection->ConnectionString("x"); }), number::kObjectOpen);
  EXPECT_EQ(number_raised([&] { connection->ConnectionTimeout(1); }), number::kObjectOpen);
  EXPECT_EQ(number_raised([&] { connection->Mode(adModeRead); }), number::kObjectOpen);
  connection->CommandTimeout(5);
  connection->CursorLocation(adUseClient);
  EXPECT_EQ(connection->ConnectionString(), connection_string());
}

TEST_P(ConnectionOpen, UsesThePropertyWithoutAnArgument) {
  Connection c;
  c.ConnectionString(connection_string());
  c.Open();
  EXPECT_EQ(c.State(), adStateOpen);
}

TEST_P(ConnectionOpen, OpensAgainAfterClosing) {
  connection->Close();
  connection->Open();
  EXPECT_EQ(connection->State(), adStateOpen);
}

TEST_P(ConnectionOpen, StaysClosedWhenItFails) {
  const std::size_t in_use = session_counts().in_use;
  Connection c;
  EXPECT_EQ(number_raised([&] { c.Open("Provider=SQLite;Data Source=/nenhuma/pasta/x.db"); }),
            number::kProviderFailure);
  EXPECT_EQ(c.State(), adStateClosed);
  EXPECT_EQ(number_raised([&] { c.Open("Provider"); }), number::kProviderFailure);
  EXPECT_EQ(c.State(), adStateClosed);
  EXPECT_EQ(session_counts().in_use, in_use);
}

TEST_P(ConnectionOpen, PassesUserAndPasswordOn) {
  Connection c;
  EXPECT_EQ(number_raised([&] { c.Open(connection_string(), "ana", "segredo"); }),
            number::kLoginFailed);
  EXPECT_THAT(c.ConnectionString(), Not(HasSubstr("segredo")));
}

TEST_P(ConnectionOpen, InReadModeRefusesWrites) {
  if (!GetParam().refuses_writes_in_read_mode) GTEST_SKIP() << "the engine has no such mode";
  create_pessoa();
  add_pessoa(8, "Ana");
  Connection c;
  c.Mode(adModeRead);
  c.Open(connection_string());
  EXPECT_EQ(c.Execute("select nome from pessoa")->Fields(0).Value(), Variant("Ana"));
  EXPECT_NE(number_raised([&] { c.Execute("delete from pessoa"); }), 0);
  c.Close();
  EXPECT_EQ(stored("select count(*) from pessoa"), Variant(1));
}

TEST_P(ConnectionClose, RefusesASecondTime) {
  connection->Close();
  EXPECT_EQ(number_raised([&] { connection->Close(); }), number::kObjectClosed);
}

TEST_P(ConnectionClose, ClosesRecordSetsAndDropsTheirEdits) {
  create_pessoa();
  const auto adding = open_table("pessoa");
  adding->AddNew();
  adding->Fields("oid") = 8;
  const auto reading = query("select 1 as um");
  connection->Close();
  EXPECT_EQ(adding->State(), adStateClosed);
  EXPECT_EQ(reading->State(), adStateClosed);
  EXPECT_EQ(reading->ActiveConnection(), nullptr);
  EXPECT_EQ(stored("select count(*) from pessoa"), Variant(0));
}

TEST_P(ConnectionClose, DetachesCommands) {
  Command command;
  command.ActiveConnection(connection);
  connection->Close();
  EXPECT_EQ(command.ActiveConnection(), nullptr);
  EXPECT_EQ(number_raised([&] { command.Execute(); }), number::kInvalidConnection);
}

TEST_P(ConnectionClose, OfARecordSetsLastReferenceIsSafe) {
  auto rs = query("select 1 as um");
  connection.reset();
  Connection& last = *rs->ActiveConnection();
  last.Close();
  EXPECT_EQ(rs->State(), adStateClosed);
}

TEST_P(ConnectionClose, GivesTheSessionToTheNextConnection) {
  empty_session_pool();
  connection->Close();
  EXPECT_EQ(session_counts().idle, 1U);
  connection->Open();
  EXPECT_EQ(session_counts().idle, 0U);
  EXPECT_EQ(session_counts().in_use, 1U);
}

TEST_P(ConnectionExecute, ReturnsRows) {
  const auto rs = connection->Execute("select 7 as sete, 'a' as letra");
  EXPECT_EQ(rs->Fields("SETE").Value(), Variant(7));
  EXPECT_EQ(rs->Fields("letra").Value(), Variant("a"));
  EXPECT_EQ(rs->LockType(), adLockReadOnly);
  EXPECT_EQ(rs->CursorType(), adOpenForwardOnly);
  EXPECT_EQ(rs->Source(), "select 7 as sete, 'a' as letra");
  EXPECT_EQ(rs->ActiveConnection(), connection);
}

TEST_P(ConnectionExecute, CountsChangedRows) {
  create_pessoa();
  add_pessoa(1, "Ana");
  add_pessoa(2, "Bia");
  std::int32_t affected = 7;
  const auto rs = connection->Execute("update pessoa set peso = 50", &affected);
  EXPECT_EQ(affected, 2);
  EXPECT_EQ(rs->State(), adStateClosed);
  connection->Execute("update pessoa set peso = 51 where oid = 3", &affected);
  EXPECT_EQ(affected, 0);
  connection->Execute("select * from pessoa", &affected);
  EXPECT_EQ(affected, -1);
}

TEST_P(ConnectionExecute, DropsRowsWhenAsked) {
  const auto rs = connection->Execute("select 1 as um", nullptr, adCmdText | adExecuteNoRecords);
  EXPECT_EQ(rs->State(), adStateClosed);
}

TEST_P(ConnectionExecute, ReadsATableByName) {
  create_pessoa();
  add_pessoa(8, "Ana");
  for (const std::int32_t options : {std::int32_t{adCmdTable}, adOptionUnspecified}) {
    const auto rs = connection->Execute("pessoa", nullptr, options);
    EXPECT_EQ(rs->Fields("nome").Value(), Variant("Ana"));
  }
  EXPECT_EQ(connection->Execute("pessoa", nullptr, adCmdTable)->Source(), "select * from pessoa");
  EXPECT_EQ(number_raised([&] { connection->Execute("nada", nullptr, adCmdTable); }),
            number::kNoTable);
}

TEST_P(ConnectionExecute, CallsAProcedureByName) {
  GetParam().create_counter(*connection);
  connection->Execute("avancar", nullptr, adCmdStoredProc);
  connection->Execute("avancar");
  EXPECT_EQ(stored("select valor from contador"), Variant(7));
}

TEST_P(ConnectionExecute, PassesTheProvidersErrorUnchanged) {
  const auto e = raised([&] { connection->Execute("select * from nada"); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kNoTable);
  EXPECT_THAT(e->source(), Not(HasSubstr("ADODB")));
  ASSERT_NE(e->diagnostics(), nullptr);
}

TEST_P(ConnectionExecute, WorksWithoutASharedOwner) {
  Connection c;
  c.Open(connection_string());
  const auto rs = c.Execute("select 1 as um");
  EXPECT_EQ(rs->Fields(0).Value(), Variant(1));
  EXPECT_EQ(rs->ActiveConnection(), nullptr);
  c.Close();
  EXPECT_EQ(rs->State(), adStateClosed);
}

TEST_P(ConnectionTransaction, KeepsWhatWasCommitted) {
  create_pessoa();
  EXPECT_EQ(connection->BeginTrans(), 1);
  add_pessoa(8, "Ana");
  EXPECT_EQ(stored("select count(*) from pessoa"), Variant(0));
  connection->CommitTrans();
  EXPECT_EQ(stored("select count(*) from pessoa"), Variant(1));
}

TEST_P(ConnectionTransaction, DropsWhatWasRolledBack) {
  create_pessoa();
  connection->BeginTrans();
  add_pessoa(8, "Ana");
  connection->RollbackTrans();
  EXPECT_EQ(stored("select count(*) from pessoa"), Variant(0));
  connection->Close();
}

TEST_P(ConnectionTransaction, KeepsTheConnectionFromClosing) {
  connection->BeginTrans();
  const auto e = raised([&] { connection->Close(); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kInTransaction);
  EXPECT_EQ(connection->State(), adStateOpen);
  connection->RollbackTrans();
  connection->Close();
}

TEST_P(ConnectionTransaction, RollsBackWhenTheConnectionIsReleased) {
  create_pessoa();
  {
    const auto other = connect();
    other->BeginTrans();
    other->Execute("insert into pessoa (oid, nome) values (8, 'Ana')");
  }
  add_pessoa(9, "Bia");  // no lock is left behind
  EXPECT_EQ(stored("select count(*) from pessoa"), Variant(1));
}

TEST_P(ConnectionTransaction, IsNotInheritedThroughThePool) {
  create_pessoa();
  connection->BeginTrans();
  add_pessoa(8, "Ana");
  connection.reset();
  connection = connect();
  EXPECT_NE(number_raised([&] { connection->CommitTrans(); }), 0);
  connection->Close();
}

TEST_P(ConnectionTransaction, OneWithinAnotherIsTheProvidersError) {
  connection->BeginTrans();
  EXPECT_NE(number_raised([&] { connection->BeginTrans(); }), 0);
  connection->RollbackTrans();
  EXPECT_NE(number_raised([&] { connection->RollbackTrans(); }), 0);
  EXPECT_NE(number_raised([&] { connection->CommitTrans(); }), 0);
}

PELM_ON_EVERY_ENGINE(ConnectionOpen);
PELM_ON_EVERY_ENGINE(ConnectionClose);
PELM_ON_EVERY_ENGINE(ConnectionExecute);
PELM_ON_EVERY_ENGINE(ConnectionTransaction);

}  // namespace
}  // namespace pelm::ado
