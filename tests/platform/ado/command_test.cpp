// Commands: text as reported, parameters, procedures.
#include "pelm/ado/command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "pelm/error.h"
#include "support/engine.h"
#include "support/raised.h"

namespace pelm::ado {
namespace {

using test::number_raised;
using test::raised;
using ::testing::HasSubstr;
namespace number = error_number;

TEST(CommandText, OfATableIsTheStatementThatReadsIt) {
  Command c;
  c.CommandType(adCmdTable);
  c.CommandText("Item");
  EXPECT_EQ(c.CommandText(), "select * from Item");
  c.CommandType(adCmdTableDirect);
  EXPECT_EQ(c.CommandText(), "Item");
  c.CommandType(adCmdText);
  EXPECT_EQ(c.CommandText(), "Item");
}

TEST(CommandText, OfAnUnknownTypeIsUnchanged) {
  Command c;
  c.CommandText("item");
  EXPECT_EQ(c.CommandType(), adCmdUnknown);
  EXPECT_EQ(c.CommandText(), "item");
}

TEST(CommandProperties, HaveTheirDefaultsAndRanges) {
  Command c;
  EXPECT_EQ(c.CommandTimeout(), 30);
  EXPECT_EQ(c.ActiveConnection(), nullptr);
  EXPECT_EQ(number_raised([&] { c.CommandTimeout(-1); }), number::kWrongArguments);
  EXPECT_EQ(number_raised([&] { c.CommandType(static_cast<CommandTypeEnum>(3)); }),
            number::kWrongArguments);
}

TEST(CommandParameters, AreFoundByNameWithoutCase) {
  Command c;
  c.Append(c.CreateParameter("@NovoOid", adInteger, adParamOutput));
  EXPECT_EQ(c.Parameters("@novooid").Direction, adParamOutput);
  EXPECT_EQ(c.Parameters().size(), 1U);
  const auto e = raised([&] { (void)c.Parameters("@outro"); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kItemNotFound);
  EXPECT_EQ(e->source(), "ADODB.Command");
  EXPECT_THAT(e->description(), HasSubstr("@outro"));
  EXPECT_EQ(number_raised([&] { c.Append(nullptr); }), number::kWrongArguments);
}

TEST(CommandConnection, WithoutOneCannotRun) {
  Command c;
  c.CommandText("select 1");
  const auto e = raised([&] { c.Execute(); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kInvalidConnection);
  EXPECT_EQ(e->source(), "ADODB.Command");
}

class CommandOnConnection : public test::DatabaseTest {
 protected:
  std::shared_ptr<Command> command(std::string text, CommandTypeEnum type = adCmdText) {
    auto c = std::make_shared<Command>();
    c->ActiveConnection(connection);
    c->CommandType(type);
    c->CommandText(std::move(text));
    return c;
  }
};

TEST_P(CommandOnConnection, RefusesAClosedOneAndKeepsItsOwn) {
  const auto c = command("select 1 as um");
  const auto closed = std::make_shared<Connection>();
  const auto e = raised([&] { c->ActiveConnection(closed); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kInvalidConnection);
  EXPECT_EQ(e->source(), "ADODB.Command");
  EXPECT_EQ(c->ActiveConnection(), connection);
  c->ActiveConnection(nullptr);
  EXPECT_EQ(c->ActiveConnection(), nullptr);
}

TEST_P(CommandOnConnection, MovesToAnotherOne) {
  const auto c = command("select 1 as um");
  const auto other = connect();
  c->ActiveConnection(other);
  connection->Close();
  EXPECT_EQ(c->Execute()->Fields(0).Value(), Variant(1));
}

TEST_P(CommandOnConnection, ReturnsRowsOrAClosedRecordSet) {
  create_pessoa();
  EXPECT_EQ(command("select 7 as sete")->Execute()->Fields("sete").Value(), Variant(7));
  std::int32_t affected = 0;
  const auto rs = command("insert into pessoa (oid, nome) values (8, 'Ana')")->Execute(&affected);
  EXPECT_EQ(rs->State(), adStateClosed);
  EXPECT_EQ(affected, 1);
}

TEST_P(CommandOnConnection, BindsInputParametersInOrder) {
  create_pessoa();
  const auto c = command("insert into pessoa (oid, nome, peso, nascido) values (?, ?, ?, ?)");
  c->Append(c->CreateParameter("oid", adInteger, adParamInput, 0, "8"));
  c->Append(c->CreateParameter("nome", adVarChar, adParamInput, 20, "O'Hara; drop"));
  c->Append(c->CreateParameter("peso", adDouble, adParamInput, 0, "50,5"));
  c->Append(c->CreateParameter("nascido", adDate, adParamInput, 0, Null{}));
  c->Execute();
  const auto rs = query("select * from pessoa");
  EXPECT_EQ(rs->Fields("oid").Value(), Variant(8));
  EXPECT_EQ(rs->Fields("nome").Value(), Variant("O'Hara; drop"));
  EXPECT_EQ(rs->Fields("peso").Value(), Variant(50.5));
  EXPECT_TRUE(rs->Fields("nascido").Value().is_null());
}

TEST_P(CommandOnConnection, RefusesAParameterThatIsNotOfItsType) {
  const auto c = command("select ? as x");
  c->Append(c->CreateParameter("@x", adInteger, adParamInput, 0, "abc"));
  const auto e = raised([&] { c->Execute(); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kWrongValueType);
  EXPECT_EQ(e->source(), "ADODB.Command");
  EXPECT_THAT(e->description(), HasSubstr("@x"));
}

TEST_P(CommandOnConnection, CallsAProcedureAndTakesItsOutput) {
  GetParam().create_counter(*connection);
  const auto c = command("avancar", adCmdStoredProc);
  c->Append(c->CreateParameter("@novo", adInteger, adParamOutput, 0));
  EXPECT_EQ(c->CommandText(), "avancar");
  EXPECT_EQ(c->Execute()->State(), adStateClosed);
  EXPECT_EQ(c->Parameters("@NOVO").Value, Variant(6));
  EXPECT_EQ(c->CommandText(), "{ call avancar(?) }");
  c->Execute();
  EXPECT_EQ(c->Parameters("@novo").Value, Variant(7));
  c->CommandText("avancar");
  EXPECT_EQ(c->CommandText(), "avancar");
}

TEST_P(CommandOnConnection, ConvertsAnOutputToTheParametersType) {
  GetParam().create_counter(*connection);
  const auto c = command("avancar", adCmdStoredProc);
  c->Append(c->CreateParameter("@novo", adVarChar, adParamOutput, 10));
  c->Execute();
  EXPECT_EQ(c->Parameters("@novo").Value, Variant("6"));
}

TEST_P(CommandOnConnection, LeavesParametersAloneWhenTheCallFails) {
  const auto c = command("nenhuma", adCmdStoredProc);
  c->Append(c->CreateParameter("@novo", adInteger, adParamOutput, 0, 3));
  EXPECT_NE(number_raised([&] { c->Execute(); }), 0);
  EXPECT_EQ(c->Parameters("@novo").Value, Variant(3));
  EXPECT_EQ(c->CommandText(), "nenhuma");
}

TEST_P(CommandOnConnection, OfUnknownTypeTriesATableThenAProcedure) {
  create_pessoa();
  GetParam().create_counter(*connection);
  EXPECT_EQ(command("pessoa", adCmdUnknown)->Execute()->FieldCount(), 6U);
  const auto c = command("avancar", adCmdUnknown);
  c->Append(c->CreateParameter("@novo", adInteger, adParamOutput));
  c->Execute();
  EXPECT_EQ(c->Parameters("@novo").Value, Variant(6));
}

TEST_P(CommandOnConnection, GivesItsTextToTheRecordSet) {
  create_pessoa();
  Recordset rs;
  rs.Open(command("pessoa", adCmdTable), adOpenKeyset, adLockOptimistic);
  EXPECT_EQ(rs.Source(), "select * from pessoa");
  EXPECT_EQ(rs.ActiveConnection(), connection);
  EXPECT_EQ(rs.CursorType(), adOpenKeyset);
}

TEST_P(CommandOnConnection, MayGoWhileItsRecordSetStays) {
  Recordset rs;
  rs.Open(command("select 1 as um"));
  connection.reset();
  EXPECT_EQ(rs.Fields("um").Value(), Variant(1));
}

PELM_ON_EVERY_ENGINE(CommandOnConnection);

}  // namespace
}  // namespace pelm::ado
