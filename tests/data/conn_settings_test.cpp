// Connection settings: where they come from, what is refused, what stays after a failure.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/thread_slots.h"
#include "pelm/ado/connection.h"
#include "pelm/conn.h"
#include "pelm/error.h"
#include "platform/page/application.h"
#include "platform/page/object_context.h"

namespace pelm {
namespace {

class ConnSettings : public testing::Test {
 protected:
  void SetUp() override {
    frame::thread_slots() = {};
    context_->Application = std::make_shared<page::Application>();
  }
  void TearDown() override { frame::thread_slots() = {}; }

  void variable(std::string_view name, Variant value) {
    context_->Application->Value(name, std::move(value));
  }
  void all_variables() {
    variable("dataconn_ConnectionTimeout", "11");
    variable("dataconn_CommandTimeout", 22);
    variable("dataconn_ConnectionString", "Y");
    variable("dataconn_Database", std::int16_t{2});
    variable("dataconn_AuxDatabase", "Aux");
  }

  static Error raised(const std::function<void()>& body) {
    try {
      body();
    } catch (const Error& e) {
      return e;
    }
    return Error(0, "nothing was raised", "");
  }

  std::shared_ptr<page::ScriptingContext> context_ = std::make_shared<page::ScriptingContext>();
  Conn conn_;
};

TEST_F(ConnSettings, StartWithTheirDefaults) {
  EXPECT_EQ(conn_.Conex(), nullptr);
  EXPECT_EQ(conn_.Conex2(), nullptr);
  EXPECT_EQ(conn_.Database(), 1);
  EXPECT_EQ(conn_.ODBC_STR(), "");
  EXPECT_EQ(conn_.ODBC_CONN_TIMEOUT(), 60);
  EXPECT_EQ(conn_.ODBC_COM_TIMEOUT(), 60);
  EXPECT_EQ(conn_.LastSQL(), "");
  EXPECT_EQ(conn_.AuxDatabase(), "");
}

TEST_F(ConnSettings, ComeFromTheArgumentsWhenNotOnTheWeb) {
  conn_.ConfigureConn(false, "X", 5, 7, 2, "Aux");
  EXPECT_EQ(conn_.ODBC_CONN_TIMEOUT(), 5);
  EXPECT_EQ(conn_.ODBC_COM_TIMEOUT(), 7);
  EXPECT_EQ(conn_.ODBC_STR(), "X");
  EXPECT_EQ(conn_.Database(), 2);
  EXPECT_EQ(conn_.AuxDatabase(), "Aux");
}

TEST_F(ConnSettings, OmittedArgumentsAreTheDefaultsAndOverwrite) {
  conn_.ConfigureConn(false, "X", 5, 7, 2, "Aux");
  conn_.ConfigureConn(false);
  EXPECT_EQ(conn_.ODBC_CONN_TIMEOUT(), 60);
  EXPECT_EQ(conn_.ODBC_COM_TIMEOUT(), 60);
  EXPECT_EQ(conn_.ODBC_STR(), "");
  EXPECT_EQ(conn_.Database(), 1);
  EXPECT_EQ(conn_.AuxDatabase(), "");
}

TEST_F(ConnSettings, ComeFromTheApplicationVariablesOnTheWebAndIgnoreTheArguments) {
  all_variables();
  const page::ScopedObjectContext serving(context_);
  conn_.ConfigureConn(true, "ignored", 1, 1, 1, "ignored");
  EXPECT_EQ(conn_.ODBC_CONN_TIMEOUT(), 11);
  EXPECT_EQ(conn_.ODBC_COM_TIMEOUT(), 22);
  EXPECT_EQ(conn_.ODBC_STR(), "Y");
  EXPECT_EQ(conn_.Database(), 2);
  EXPECT_EQ(conn_.AuxDatabase(), "Aux");
}

TEST_F(ConnSettings, AnyDatabaseButOneAndTwoIsRefusedAndTheOldOneStays) {
  conn_.Database(2);
  for (const std::int16_t kind : {std::int16_t{0}, std::int16_t{3}, std::int16_t{-1}}) {
    const Error e = raised([&] { conn_.Database(kind); });
    EXPECT_EQ(e.number(), 1001);
    EXPECT_EQ(e.source(), "PelmComum2008.Conn.PropertyDatabase");
    EXPECT_EQ(e.description(),
              "Valor da propriedade pode ser apenas 1 para SQLServer e 2 para Oracle");
    EXPECT_EQ(conn_.Database(), 2);
  }
}

TEST_F(ConnSettings, AWrongDatabaseVariableFailsAfterTheOthersAreStored) {
  all_variables();
  variable("dataconn_Database", 3);
  const page::ScopedObjectContext serving(context_);
  const Error e = raised([&] { conn_.ConfigureConn(); });
  EXPECT_EQ(e.number(), 1001);
  EXPECT_EQ(e.source(), "PelmComum2008.Conn.PropertyDatabase");
  EXPECT_EQ(conn_.ODBC_CONN_TIMEOUT(), 11);
  EXPECT_EQ(conn_.ODBC_COM_TIMEOUT(), 22);
  EXPECT_EQ(conn_.ODBC_STR(), "Y");
  EXPECT_EQ(conn_.Database(), 1);
  EXPECT_EQ(conn_.AuxDatabase(), "");
}

TEST_F(ConnSettings, AWrongDatabaseArgumentFailsAfterTheOthersAreStored) {
  const Error e = raised([&] { conn_.ConfigureConn(false, "X", 5, 7, 3, "Aux"); });
  EXPECT_EQ(e.number(), 1001);
  EXPECT_EQ(e.source(), "PelmComum2008.Conn.PropertyDatabase");
  EXPECT_EQ(conn_.ODBC_CONN_TIMEOUT(), 5);
  EXPECT_EQ(conn_.ODBC_COM_TIMEOUT(), 7);
  EXPECT_EQ(conn_.ODBC_STR(), "X");
  EXPECT_EQ(conn_.Database(), 1);
  EXPECT_EQ(conn_.AuxDatabase(), "");
}

TEST_F(ConnSettings, VariablesAreTakenInTheirOrderUpToOneThatDoesNotConvert) {
  struct Case {
    std::string_view variable;
    Variant value;
    std::int32_t number;
    std::string_view stored;  // connection time-out, command time-out, string, kind, second name
  };
  const std::vector<Case> cases = {
      {"dataconn_ConnectionTimeout", Null{}, error_number::kInvalidUseOfNull, "60 60  1 "},
      {"dataconn_ConnectionTimeout", "40000", error_number::kOverflow, "60 60  1 "},
      {"dataconn_CommandTimeout", Null{}, error_number::kInvalidUseOfNull, "11 60  1 "},
      {"dataconn_CommandTimeout", 32767.5, error_number::kOverflow, "11 60  1 "},
      {"dataconn_ConnectionString", Null{}, error_number::kInvalidUseOfNull, "11 22  1 "},
      {"dataconn_Database", "Oracle", error_number::kTypeMismatch, "11 22 Y 1 "},
      {"dataconn_Database", -1, error_number::kComponent, "11 22 Y 1 "},
      {"dataconn_AuxDatabase", Null{}, error_number::kInvalidUseOfNull, "11 22 Y 2 "},
  };
  const page::ScopedObjectContext serving(context_);
  for (const Case& c : cases) {
    all_variables();
    variable(c.variable, c.value);
    Conn conn;
    EXPECT_EQ(raised([&] { conn.ConfigureConn(); }).number(), c.number) << c.variable;
    EXPECT_EQ(std::to_string(conn.ODBC_CONN_TIMEOUT()) + " " +
                  std::to_string(conn.ODBC_COM_TIMEOUT()) + " " + conn.ODBC_STR() + " " +
                  std::to_string(conn.Database()) + " " + conn.AuxDatabase(),
              c.stored)
        << c.variable;
  }
}

TEST_F(ConnSettings, VariablesConvertAsThePlatformDoes) {
  variable("dataconn_ConnectionTimeout", "1.001,5");
  variable("dataconn_CommandTimeout", true);
  variable("dataconn_ConnectionString", 2.5);
  variable("dataconn_Database", 1.5);
  const page::ScopedObjectContext serving(context_);
  conn_.ConfigureConn();
  EXPECT_EQ(conn_.ODBC_CONN_TIMEOUT(), 1002);
  EXPECT_EQ(conn_.ODBC_COM_TIMEOUT(), -1);
  EXPECT_EQ(conn_.ODBC_STR(), "2,5");
  EXPECT_EQ(conn_.Database(), 2);
  EXPECT_EQ(conn_.AuxDatabase(), "");
}

TEST_F(ConnSettings, AMissingDatabaseVariableIsZeroAndRefused) {
  variable("dataconn_ConnectionString", "Y");
  const page::ScopedObjectContext serving(context_);
  EXPECT_EQ(raised([&] { conn_.ConfigureConn(); }).number(), 1001);
  EXPECT_EQ(conn_.ODBC_CONN_TIMEOUT(), 0);
  EXPECT_EQ(conn_.ODBC_STR(), "Y");
}

TEST_F(ConnSettings, AVariableThatDoesNotConvertFailsWithItsOwnSource) {
  all_variables();
  variable("dataconn_CommandTimeout", "um minuto");
  const page::ScopedObjectContext serving(context_);
  const Error e = raised([&] { conn_.ConfigureConn(); });
  EXPECT_EQ(e.number(), error_number::kTypeMismatch);
  EXPECT_EQ(e.source(), "PelmComum2008");
  EXPECT_EQ(conn_.ODBC_CONN_TIMEOUT(), 11);
  EXPECT_EQ(conn_.ODBC_COM_TIMEOUT(), 60);
}

TEST_F(ConnSettings, OutsideAPageTheVariablesCannotBeReached) {
  EXPECT_EQ(raised([&] { conn_.ConfigureConn(); }).number(), error_number::kObjectNotSet);
}

TEST_F(ConnSettings, OpeningWithoutAStringConfiguresFromTheWebWhereverItIs) {
  const Error e = raised([&] { conn_.OpenConn(); });
  EXPECT_EQ(e.number(), error_number::kObjectNotSet);
  EXPECT_EQ(e.source(), "PelmComum2008");
  EXPECT_EQ(conn_.Conex(), nullptr);
}

TEST_F(ConnSettings, OpeningsOwnConfigurationFailsWithThePropertysSource) {
  all_variables();
  variable("dataconn_Database", 3);
  const page::ScopedObjectContext serving(context_);
  const Error e = raised([&] { conn_.OpenConn(); });
  EXPECT_EQ(e.number(), 1001);
  EXPECT_EQ(e.source(), "PelmComum2008.Conn.PropertyDatabase");
  EXPECT_EQ(conn_.Conex(), nullptr);
  // The string is stored by then, so the next opening goes straight on with it.
  const Error next = raised([&] { conn_.OpenConn(); });
  EXPECT_EQ(next.source(), "PelmComum2008.Conn.OpenConn");
  EXPECT_NE(conn_.Conex(), nullptr);
}

TEST_F(ConnSettings, AFailedOpeningLeavesTheUnopenedObjectAndIsNotTriedAgain) {
  conn_.ODBC_STR("Provider=Nenhum;Data Source=x");
  const Error e = raised([&] { conn_.OpenConn(); });
  EXPECT_EQ(e.number(), error_number::kProviderNotFound);
  EXPECT_EQ(e.source(), "PelmComum2008.Conn.OpenConn");
  ASSERT_NE(conn_.Conex(), nullptr);
  EXPECT_EQ(conn_.Conex()->State(), ado::adStateClosed);
  EXPECT_TRUE(conn_.OpenConn());
  EXPECT_EQ(conn_.Conex()->State(), ado::adStateClosed);

  EXPECT_EQ(raised([&] { conn_.OpenConn2(); }).source(), "PelmComum2008.Conn.OpenConn2");
}

TEST_F(ConnSettings, ANegativeTimeoutFailsTheOpeningAndNotTheAssignment) {
  conn_.ConfigureConn(false, "Provider=Nenhum", -1, 7);
  Error e = raised([&] { conn_.OpenConn(); });
  EXPECT_EQ(e.number(), error_number::kWrongArguments);
  EXPECT_EQ(e.source(), "PelmComum2008.Conn.OpenConn");
  // What was set before it stays set on the unopened object.
  ASSERT_NE(conn_.Conex(), nullptr);
  EXPECT_EQ(conn_.Conex()->ConnectionString(), "Provider=Nenhum");
  EXPECT_EQ(conn_.Conex()->CommandTimeout(), 30);

  conn_.ConfigureConn(false, "Provider=Nenhum", 5, -1);
  e = raised([&] { conn_.OpenConn2(); });
  EXPECT_EQ(e.number(), error_number::kWrongArguments);
  EXPECT_EQ(e.source(), "PelmComum2008.Conn.OpenConn2");
  ASSERT_NE(conn_.Conex2(), nullptr);
  EXPECT_EQ(conn_.Conex2()->ConnectionTimeout(), 5);
}

TEST_F(ConnSettings, AStringThatIsStillEmptyIsOpenedAllTheSame) {
  variable("dataconn_Database", 1);
  const page::ScopedObjectContext serving(context_);
  EXPECT_EQ(raised([&] { conn_.OpenConn(); }).source(), "PelmComum2008.Conn.OpenConn");
  EXPECT_NE(conn_.Conex(), nullptr);
}

TEST_F(ConnSettings, AStringThatIsThereIsNotAskedForOnTheWeb) {
  all_variables();
  const page::ScopedObjectContext serving(context_);
  conn_.ODBC_STR("Provider=Nenhum");
  EXPECT_EQ(raised([&] { conn_.OpenConn(); }).number(), error_number::kProviderNotFound);
  EXPECT_EQ(conn_.ODBC_STR(), "Provider=Nenhum");
  EXPECT_EQ(conn_.ODBC_CONN_TIMEOUT(), 60);
}

TEST_F(ConnSettings, AStringWithoutAProviderSaysWhatToWrite) {
  conn_.ODBC_STR("Driver={SQL Server};Server=crm");
  const Error e = raised([&] { conn_.OpenConn(); });
  EXPECT_EQ(e.number(), error_number::kProviderNotFound);
  EXPECT_NE(e.description().find("Provider=SQLite"), std::string::npos) << e.description();
}

TEST_F(ConnSettings, ClosingWhatWasNeverOpenedDoesNothing) {
  EXPECT_NO_THROW(conn_.CloseConn());
  EXPECT_NO_THROW(conn_.CloseConn2());
}

}  // namespace
}  // namespace pelm
