// The parts of the provider that need no server: texts, strings for the manager, errors,
// @@identity.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string>
#include <thread>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <sqlext.h>

#include "pelm/ado/connection.h"
#include "pelm/error.h"
#include "platform/ado/odbc/attribute.h"
#include "platform/ado/odbc/driver_string.h"
#include "platform/ado/odbc/errors.h"
#include "platform/ado/odbc/identity.h"
#include "platform/ado/odbc/odbc_provider.h"
#include "platform/ado/odbc/watchdog.h"
#include "platform/ado/odbc/wide_text.h"
#include "support/raised.h"

namespace pelm::ado::odbc {
namespace {

using test::number_raised;
using test::raised;
using ::testing::HasSubstr;
using ::testing::Not;
namespace number = error_number;

TEST(WideText, GoesThereAndBack) {
  for (const char* text : {"", "a", "ação", "€ 中", "😀 fim", "\xF0\x9F\x98\x80"}) {
    EXPECT_EQ(utf8(WideText(text).units()), text);
  }
  EXPECT_EQ(WideText("😀").size(), 2U);
}

TEST(WideText, ReplacesWhatIsNoText) {
  EXPECT_EQ(utf8(WideText("a\xFFz").units()), "a\xEF\xBF\xBDz");
  const char16_t half[] = {u'a', 0xD83D, u'z'};
  EXPECT_EQ(utf8({half, 3}), "a\xEF\xBF\xBDz");
}

std::string string_for(std::string_view text, std::int32_t timeout = 0) {
  SessionSettings settings;
  settings.properties = ConnectionString::parse(text);
  settings.connection_timeout = timeout;
  return driver_string(settings);
}

TEST(DriverString, PassesOnWhatTheManagerKnows) {
  EXPECT_EQ(string_for("Driver={SQL Server};Server=crm;UID=ana;PWD=x"),
            "Driver={SQL Server};Server=crm;UID=ana;PWD=x;");
  EXPECT_EQ(string_for("DSN=vendas"), "DSN=vendas;");
}

TEST(DriverString, ReadsTheWordsOfTheOldBridge) {
  EXPECT_EQ(string_for("Provider=MSDASQL;Data Source=vendas;User ID=ana;Password=x;"
                       "Initial Catalog=crm;Persist Security Info=True"),
            "DSN=vendas;UID=ana;PWD=x;Database=crm;");
  EXPECT_EQ(string_for("Provider=MSDASQL;Extended Properties=\"DSN=vendas;Charset=utf8\""),
            "DSN=vendas;Charset=utf8;");
}

TEST(DriverString, EnclosesValuesThatWouldBeCut) {
  EXPECT_EQ(string_for("DSN=d;PWD={a;b}}c}"), "DSN=d;PWD={a;b}}c};");
}

TEST(DriverString, TellsMariaDbsDriverToCountFoundRows) {
  EXPECT_EQ(string_for("Driver=MariaDB Unicode", 5),
            "Driver={MariaDB Unicode};OPTION=2;CONN_TIMEOUT=5;");
  EXPECT_EQ(string_for("Driver=MariaDB Unicode;Option=8;CONN_TIMEOUT=9", 5),
            "Driver={MariaDB Unicode};Option=10;CONN_TIMEOUT=9;");
}

TEST(DriverString, TellsPostgreSqlsDriverWhatItsRowsAndFailuresMustBe) {
  EXPECT_EQ(string_for("Driver=PostgreSQL Unicode"),
            "Driver={PostgreSQL Unicode};BoolsAsChar=0;MaxVarcharSize=8000;Protocol=7.4-2;");
  EXPECT_EQ(string_for("Driver=psqlodbcw.so;Protocol=7.4-0;BoolsAsChar=1;MaxVarcharSize=100"),
            "Driver={psqlodbcw.so};Protocol=7.4-0;BoolsAsChar=1;MaxVarcharSize=100;");
}

TEST(DriverString, WithoutDriverAndSourceSaysWhatToWrite) {
  const auto e = raised([] { string_for("Server=crm;PWD=segredo"); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kProviderFailure);
  EXPECT_THAT(e->description(), HasSubstr("DSN="));
  EXPECT_THAT(e->description(), Not(HasSubstr("segredo")));
}

TEST(ErrorNumber, ComesFromStateAndCodeTogether) {
  struct Case {
    ServerKind kind;
    std::string state;
    std::int32_t code;
    std::int32_t expected;
  };
  const Case cases[] = {
      {ServerKind::SqlServer, "42S02", 208, number::kNoTable},
      {ServerKind::SqlServer, "23000", 2627, number::kIntegrityViolation},
      {ServerKind::SqlServer, "42000", 229, number::kPermissionDenied},
      {ServerKind::SqlServer, "42000", 102, number::kErrorsInCommand},
      {ServerKind::SqlServer, "HYT00", 0, number::kTimeout},
      {ServerKind::SqlServer, "40001", 1205, number::kProviderFailure},  // deadlock there,
      {ServerKind::MariaDb, "HY000", 1205, number::kTimeout},            // a lock wait here
      {ServerKind::MariaDb, "HY000", 1364, number::kIntegrityViolation},
      {ServerKind::MariaDb, "42S22", 1054, number::kErrorsInCommand},
      {ServerKind::Oracle, "HY000", 1, number::kIntegrityViolation},
      {ServerKind::Oracle, "HY000", 942, number::kNoTable},
      {ServerKind::Oracle, "HY000", 12899, number::kDataOverflow},
      {ServerKind::Sqlite, "HY000", 19, number::kIntegrityViolation},
      {ServerKind::Other, "22001", 0, number::kDataOverflow},
      {ServerKind::Other, "22018", 0, number::kCantConvertValue},
      {ServerKind::Other, "28000", 0, number::kLoginFailed},
      {ServerKind::Other, "08S01", 0, number::kProviderFailure},
      {ServerKind::Other, "IM002", 0, number::kProviderFailure},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(number_of(c.kind, {c.state, c.code, ""}), c.expected) << c.state << " " << c.code;
  }
}

TEST(ErrorText, IsTheServersOwnAndEveryRecordIsKept) {
  const Error e = error_of(ServerKind::SqlServer,
                           {{"01000", 5701, "[M][D][S]Changed database context."},
                            {"42S02", 208, "[M][D][S]Invalid object name 'X'."},
                            {"42000", 8180, "[M][D][S]Could not be prepared."}},
                           "select * from X");
  EXPECT_EQ(e.number(), number::kNoTable);
  EXPECT_EQ(e.source(), "MSDASQL");
  EXPECT_EQ(e.description(), "Invalid object name 'X'.");
  ASSERT_NE(e.diagnostics(), nullptr);
  EXPECT_EQ(e.diagnostics()->records.size(), 3U);
  EXPECT_EQ(e.diagnostics()->sql, "select * from X");
}

TEST(Identity, IsAskedByOneStatementOnly) {
  EXPECT_EQ(asks_identity("select @@identity ID_OP"), "ID_OP");
  EXPECT_EQ(asks_identity(" SELECT @@IDENTITY AS novo ;"), "novo");
  EXPECT_EQ(asks_identity("select @@identity"), "identity");
  EXPECT_FALSE(asks_identity("select @@identity, 1"));
  EXPECT_FALSE(asks_identity("select id from t where id = @@identity"));
  EXPECT_FALSE(asks_identity("update t set a = 1"));
}

TEST(Identity, BelongsToTheTableLastInsertedInto) {
  EXPECT_EQ(inserted_table("insert into Pelm_Menu (Nome) values (?)"), "Pelm_Menu");
  EXPECT_EQ(inserted_table("INSERT crm.\"Pelm Menu\"(a) values (1)"), "crm.\"Pelm Menu\"");
  EXPECT_EQ(inserted_table("select 1"), "");
  EXPECT_EQ(sequence_of("Pelm_Menu"), "Pelm_Menu_ID");
  EXPECT_EQ(sequence_of("crm.\"Pelm Menu\""), "crm.\"Pelm Menu_ID\"");
}

TEST(OdbcProvider, AnUnknownDriverIsTheManagersError) {
  register_odbc_provider();
  Connection c;
  const auto e = raised([&] { c.Open("Driver={Nenhum};Server=x"); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kProviderFailure);
  ASSERT_NE(e->diagnostics(), nullptr);
  EXPECT_FALSE(e->diagnostics()->records.empty());
}

/// A port that takes connections and never says a word.
class SilentServer {
 public:
  SilentServer() : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    EXPECT_EQ(bind(socket_, reinterpret_cast<const sockaddr*>(&address), size), 0);
    EXPECT_EQ(listen(socket_, 8), 0);
    getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size);
    port_ = ntohs(address.sin_port);
  }
  SilentServer(const SilentServer&) = delete;
  SilentServer& operator=(const SilentServer&) = delete;
  ~SilentServer() { stop(); }
  int port() const { return port_; }

  /// Cuts whoever waits for a word.
  void stop() {
    if (socket_ >= 0) close(socket_);
    socket_ = -1;
  }

 private:
  int socket_;
  int port_ = 0;
};

std::ptrdiff_t threads() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/task"),
                       std::filesystem::directory_iterator());
}

/// A statement of the manager's own, on a database in memory.
class BareStatement {
 public:
  BareStatement() {
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_);
    SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION, attribute_value(SQL_OV_ODBC3), 0);
    SQLAllocHandle(SQL_HANDLE_DBC, environment_, &connection_);
    WideText place("Driver={SQLite3};Database=:memory:");
    opened_ = SQL_SUCCEEDED(SQLDriverConnectW(connection_, nullptr, place.data(), SQL_NTS, nullptr,
                                              0, nullptr, SQL_DRIVER_NOPROMPT));
    if (opened_) SQLAllocHandle(SQL_HANDLE_STMT, connection_, &statement_);
  }
  BareStatement(const BareStatement&) = delete;
  BareStatement& operator=(const BareStatement&) = delete;
  ~BareStatement() {
    if (statement_ != nullptr) SQLFreeHandle(SQL_HANDLE_STMT, statement_);
    if (opened_) SQLDisconnect(connection_);
    SQLFreeHandle(SQL_HANDLE_DBC, connection_);
    SQLFreeHandle(SQL_HANDLE_ENV, environment_);
  }

  bool is_open() const { return opened_; }
  SQLHSTMT handle() const { return statement_; }

 private:
  SQLHENV environment_ = nullptr;
  SQLHDBC connection_ = nullptr;
  SQLHSTMT statement_ = nullptr;
  bool opened_ = false;
};

TEST(Watch, CancelsAgainWhatHadNotBegunWhenTheLimitPassed) {
  const BareStatement statement;
  if (!statement.is_open()) GTEST_SKIP() << "SQLite's driver is not here";
  Watch watch;
  watch.arm(statement.handle(), 1);
  std::this_thread::sleep_for(std::chrono::milliseconds(1200));  // the first attempt meets nothing
  WideText endless(
      "with recursive n (i) as (select 1 union all select i + 1 from n where i < 1000000000) "
      "select count(*) from n");
  EXPECT_EQ(SQLExecDirectW(statement.handle(), endless.data(), SQL_NTS), SQL_ERROR);
  EXPECT_TRUE(watch.disarm());
}

TEST(Watch, LeavesAloneWhatEndsInTime) {
  const BareStatement statement;
  if (!statement.is_open()) GTEST_SKIP() << "SQLite's driver is not here";
  Watch watch;
  watch.arm(statement.handle(), 60);
  WideText quick("select 1");
  EXPECT_TRUE(SQL_SUCCEEDED(SQLExecDirectW(statement.handle(), quick.data(), SQL_NTS)));
  EXPECT_FALSE(watch.disarm());
}

TEST(OdbcProvider, ASilentServerEndsWithTheConnectionTimeout) {
  register_odbc_provider();
  SilentServer silent;
  std::thread([] {}).join();  // the thread sanitizer begins one of its own with a program's first
  const std::ptrdiff_t threads_before = threads();
  Connection c;
  c.ConnectionTimeout(1);
  const auto before = std::chrono::steady_clock::now();
  EXPECT_NE(number_raised([&] {
              c.Open("Driver={MariaDB Unicode};CONN_TIMEOUT=600;UID=a;Server=127.0.0.1;Port=" +
                     std::to_string(silent.port()));
            }),
            0);
  EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(30));
  EXPECT_EQ(c.State(), adStateClosed);

  // The driver's own call was left behind; it ends, with its thread, once the server is gone.
  silent.stop();
  for (int i = 0; i < 1000 && threads() > threads_before; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_EQ(threads(), threads_before);
}

}  // namespace
}  // namespace pelm::ado::odbc
