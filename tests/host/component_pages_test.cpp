// Pages that use the real component over the embedded database, as a site's pages do.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "platform/ado/sqlite/sqlite_provider.h"
#include "tests/host/http_fixture.h"

namespace pelm::host {
namespace {

using ::testing::AnyOf;
using ::testing::HasSubstr;

/// What every page of a site begins with.
constexpr const char* kOpening =
    "<% const principal = Server.CreateObject('PelmComum2008.CMain');"
    " const conexao = principal.CConn;"
    " const estado = conexao.Conex === null ? 'nunca' : conexao.Conex.State;"
    " conexao.Conex = null; conexao.ConfigureConn(); conexao.OpenConn(); %>";

class ComponentPages : public testing::HttpFixture {
 protected:
  ComponentPages() {
    ado::sqlite::register_sqlite_provider();
    site_.write("abertura.inc", kOpening);
    site_.write("cria.page",
                page("<% conexao.Conex.Execute('create table nota (n integer)'); %>ok"));
    site_.write("estado.page", page("<%= estado %>"));
    site_.write("conta.page",
                page("<% const rs = conexao.RunSQL('select count(*) n, sum(n) s from nota'); %>"
                     "<%= rs('n') %>/<%= rs('s') %><% rs.Close(); %>"));
    site_.write("grava.page",
                page("<% const rs = conexao.OpenTable('nota'); rs.AddNew();"
                     " rs('n', Number(Request.QueryString('n'))); rs.Update(); rs.Close(); %>ok"));
  }

  static std::string page(const std::string& rest) {
    return "<!--#include file=\"abertura.inc\"-->" + rest;
  }

  void start_with_database() {
    start();
    page::Application& application = host_->application();
    application.Value("dataconn_ConnectionString", "Provider=SQLite;Create=True;Data Source=" +
                                                       (site_.outside() / "crm.db").string());
    application.Value("dataconn_ConnectionTimeout", 15);
    application.Value("dataconn_CommandTimeout", 30);
    application.Value("dataconn_Database", 1);
    application.Value("dataconn_AuxDatabase", "");
    ASSERT_EQ(get("/cria.page").body, "ok") << log();
  }
};

TEST_F(ComponentPages, TheHundredthPageOfAThreadOpensAndClosesLikeTheSecond) {
  options_.page_threads = 1;
  start_with_database();
  for (int i = 1; i <= 100; ++i) {
    ASSERT_EQ(get("/grava.page?n=" + std::to_string(i)).body, "ok") << log();
    ASSERT_EQ(get("/estado.page").body, "0") << "the page before left its connection open";
  }
  EXPECT_EQ(get("/conta.page").body, "100/5050");
}

TEST_F(ComponentPages, APageThatFailsLeavesNoConnectionOpen) {
  options_.page_threads = 1;
  options_.script.time = std::chrono::milliseconds(300);
  site_.write("falha.page", page("<% const rs = conexao.RunSQL('select * from nota');"
                                 " conexao.Conex.BeginTrans(); conexao.Conex.Execute("
                                 "'insert into nota values (1)'); nao_existe(); %>"));
  site_.write("laco.page", page("<% while (true); %>"));
  site_.write("fim.page", page("<% Response.End(); %>"));
  site_.write("sql.page", page("<% conexao.RunSQL('select x from nao_existe'); %>"));
  start_with_database();
  for (const auto* path : {"/falha.page", "/laco.page", "/fim.page", "/sql.page"}) {
    get(path);
    EXPECT_THAT(get("/estado.page").body, AnyOf("0", "nunca")) << path;
    EXPECT_EQ(get("/conta.page").body, "0/") << path << ": what was not committed is gone";
  }
  EXPECT_THAT(log(), HasSubstr("GET /sql.page: PelmComum2008.Conn.RunSQL ("));
}

TEST_F(ComponentPages, ATransactionThatAPageLeavesOpenIsAnErrorAndKeepsNoLock) {
  site_.write("esquece.page", page("<% conexao.Conex.BeginTrans();"
                                   " conexao.Conex.Execute('insert into nota values (1)'); %>ok"));
  options_.page_threads = 2;
  start_with_database();
  const auto answer = get("/esquece.page");
  EXPECT_EQ(answer.status, 500);
  EXPECT_THAT(answer.body, HasSubstr("3246"));
  for (int i = 0; i < 4; ++i) EXPECT_EQ(get("/grava.page?n=1").body, "ok") << log();
  EXPECT_EQ(get("/conta.page").body, "4/4");
}

TEST_F(ComponentPages, EightVisitorsAtOnceLoseNothing) {
  options_.page_threads = 4;
  start_with_database();
  constexpr int kVisitors = 8;
  constexpr int kRows = 15;
  std::atomic<int> written{0};
  std::vector<std::thread> visitors;
  for (int v = 0; v < kVisitors; ++v) {
    visitors.emplace_back([&] {
      auto own = client();
      for (int i = 0; i < kRows; ++i) {
        const auto answer = own.Get("/grava.page?n=1");
        if (answer && answer->body == "ok") ++written;
      }
    });
  }
  for (auto& visitor : visitors) visitor.join();
  EXPECT_EQ(written, kVisitors * kRows) << log();
  EXPECT_EQ(get("/conta.page").body, "120/120");
}

TEST_F(ComponentPages, AFieldGivesItsValueWhereATextOrANumberIsMeant) {
  site_.write("campo.page",
              page("<% const rs = conexao.RunSQL(\"select 20 n, 'São' t, null v, 1.5 d\"); %>"
                   "<%= rs('n') + 1 %>|<%= 'em ' + rs('T') %>|<%= rs('v') %>|<%= rs('d') %>|"
                   "<%= rs.Fields('t').Name %>|<%= rs('v').Value === null %>"));
  start_with_database();
  EXPECT_EQ(get("/campo.page").body, "21|em São||1,5|t|True") << log();
}

TEST_F(ComponentPages, ARecordSetThatIsOpenedAnewHasItsNewFields) {
  site_.write("outra.page",
              page("<% const rs = Server.CreateObject('ADODB.Recordset');"
                   " rs.Open(\"select 'um' a, 'dois' b\", conexao.Conex); %><%= rs('b') %>|<%"
                   " rs.Close(); rs.Open(\"select 'três' b\", conexao.Conex); %><%= rs('b') %>|<%"
                   " try { rs('a'); } catch (e) { %><%= e.number %><% } %>"));
  start_with_database();
  EXPECT_EQ(get("/outra.page").body, "dois|três|3265") << log();
}

TEST_F(ComponentPages, TextOfAQueryIsPassedByReferenceWhenAsked) {
  site_.write("ref.page",
              page("<% const sql = { value: 'select 1 n' };"
                   " const rs = conexao.RunSQL(sql); %><%= rs('n') %> <%= sql.value %>"));
  start_with_database();
  EXPECT_EQ(get("/ref.page").body, "1 select 1 n") << log();
}

TEST_F(ComponentPages, TheBarcodeChecksChangeThePagesText) {
  const struct {
    std::string check;
    std::string given;
    std::string left_over;
  } kChecks[] = {
      {"fCalcularDV10_GeralArrecadacao", "83682000000045001234567890123456789012345678",
       "8362000000045001234567890123456789012345678"},
      {"fCalcularDV11_Cobranca", "00193373700000001000500940144816060680935031",
       "0019373700000001000500940144816060680935031"},
      {"fCalcularDV10_Cobranca", "00190500954014481606906809350314337370000000100",
       "00190500954014481606906809350314337370000000100"},
  };
  std::string checks, expected;
  for (const auto& c : kChecks) {
    checks += "<% codigo = { value: '" + c.given + "' }; %><%= base." + c.check +
              "(codigo) %> <%= codigo.value %>;";
    expected += "True " + c.left_over + ";";
  }
  site_.write("boletos.page", page("<% const base = principal.CBase; let codigo; %>" + checks +
                                   "<%= base.CompleteWith('João', 6, 1, '*') %>"));
  start_with_database();
  EXPECT_EQ(get("/boletos.page").body, expected + "**João") << log();
}

}  // namespace
}  // namespace pelm::host
