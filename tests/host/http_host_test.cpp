// Pages and files over HTTP on this machine.
#include "host/http_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/host/http_fixture.h"

namespace pelm::host {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

class HttpHostTest : public testing::HttpFixture {};

TEST_F(HttpHostTest, AnswersAPageWithItsHead) {
  site_.write("a.page", "olá <%= 6 * 7 %>");
  start();
  const auto answer = get("/a.page");
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.body, "olá 42");
  EXPECT_EQ(answer.get_header_value("Content-Type"), "text/html; charset=utf-8");
  EXPECT_EQ(answer.get_header_value("Content-Length"), std::to_string(answer.body.size()));
  EXPECT_EQ(answer.get_header_value("X-Content-Type-Options"), "nosniff");
  EXPECT_EQ(answer.get_header_value("Cache-Control"), "private, no-cache");
  EXPECT_FALSE(answer.has_header("Server"));
  EXPECT_FALSE(answer.has_header("Set-Cookie"));
}

TEST_F(HttpHostTest, AFolderAnswersWithItsDefaultDocument) {
  site_.write("default.page", "raiz");
  site_.write("loja/default.page", "loja");
  std::filesystem::create_directory(site_.root() / "vazia");
  start();
  EXPECT_EQ(get("/").body, "raiz");
  EXPECT_EQ(get("/loja/").body, "loja");
  const auto redirect = get("/loja?a=1");
  EXPECT_EQ(redirect.status, 301);
  EXPECT_EQ(redirect.get_header_value("Location"), "/loja/?a=1");
  EXPECT_EQ(get("/vazia/").status, 404);
}

TEST_F(HttpHostTest, HeadHasTheHeadOfGetAndNoBody) {
  site_.write("a.page", "12345<% Response.Status = '201 Criado'; %>");
  site_.write("p.page", "1<% Response.Flush(); %>2");
  site_.write("a.css", "123");
  start();
  const auto page = checked(client().Head("/a.page"));
  EXPECT_EQ(page.status, 201);
  EXPECT_EQ(page.get_header_value("Content-Length"), "5");
  EXPECT_EQ(page.body, "");
  EXPECT_EQ(checked(client().Head("/a.css")).get_header_value("Content-Length"), "3");
  EXPECT_EQ(checked(client().Head("/p.page")).status, 200);
}

TEST_F(HttpHostTest, WhatIsNotThereIsSaidInPortugueseAndEscaped) {
  start();
  for (const auto* path : {"/falta.page", "/falta.css", "/falta", "/falta/"}) {
    const auto answer = get(path);
    EXPECT_EQ(answer.status, 404) << path;
    EXPECT_THAT(answer.body, AllOf(HasSubstr("Página não encontrada"), HasSubstr(path)));
  }
  EXPECT_THAT(get("/%3Cscript%3E.page").body, HasSubstr("/&lt;script&gt;.page"));
}

TEST_F(HttpHostTest, OtherMethodsAreRefused) {
  site_.write("a.page", "x");
  site_.write("a.css", "x");
  start();
  for (const auto& answer :
       {checked(client().Put("/a.page", "x", "text/plain")), checked(client().Delete("/a.page")),
        checked(client().Options("/a.page")), checked(client().Patch("/a.page"))}) {
    EXPECT_EQ(answer.status, 405);
    EXPECT_EQ(answer.get_header_value("Allow"), "GET, HEAD, POST");
    EXPECT_THAT(answer.body, HasSubstr("Método não permitido"));
  }
  EXPECT_EQ(post_form("/a.css", "a=1").status, 405);
}

TEST_F(HttpHostTest, StaticFilesHaveTypeAndVersion) {
  const std::string image("\x89PNG\r\n\0\x1a", 8);
  site_.write("i/a.png", image);
  site_.write("vazio.css", "");
  start();
  const auto answer = get("/i/a.png");
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.body, image);
  EXPECT_EQ(answer.get_header_value("Content-Type"), "image/png");
  EXPECT_EQ(answer.get_header_value("X-Content-Type-Options"), "nosniff");
  EXPECT_EQ(get("/vazio.css").body, "");
  const std::string etag = answer.get_header_value("ETag");
  const auto known = get("/i/a.png", {{"If-None-Match", etag}});
  EXPECT_EQ(known.status, 304);
  EXPECT_EQ(known.body, "");
  EXPECT_EQ(known.get_header_value("ETag"), etag);
  EXPECT_EQ(
      get("/i/a.png", {{"If-Modified-Since", answer.get_header_value("Last-Modified")}}).status,
      304);
  EXPECT_EQ(get("/i/a.png", {{"If-None-Match", "\"x\""}}).status, 200);
}

TEST_F(HttpHostTest, ALargeFileComesWhole) {
  std::string large;
  for (int i = 0; i < 500'000; ++i) large += std::to_string(i);
  site_.write("g.txt", large);
  start();
  EXPECT_EQ(get("/g.txt").body, large);
  EXPECT_EQ(get("/g.txt", {{"Range", "bytes=0-9"}}).body, large);
  EXPECT_FALSE(get("/g.txt", {{"Accept-Encoding", "gzip, br"}}).has_header("Content-Encoding"));
}

TEST_F(HttpHostTest, SourcesHiddenFilesAndWhatLiesOutsideNeverGoOut) {
  for (const auto* name : {"i.inc", "a.page.bak", "crm.db", "pelm.ini", ".htaccess.css",
                           ".git/config.txt", "a.PAGE"}) {
    site_.write(name, "segredo");
  }
  site_.write("a.page", "<% /* segredo */ %>ok");
  std::ofstream(site_.outside() / "fora.css") << "segredo";
  std::ofstream(site_.outside() / "fora.page") << "segredo";
  std::filesystem::create_symlink(site_.outside() / "fora.css", site_.root() / "atalho.css");
  std::filesystem::create_symlink(site_.outside() / "fora.page", site_.root() / "atalho.page");
  start();
  for (const auto* path : {"/i.inc",
                           "/a.page.bak",
                           "/crm.db",
                           "/pelm.ini",
                           "/.htaccess.css",
                           "/.git/config.txt",
                           "/a.PAGE",
                           "/../fora.css",
                           "/%2e%2e/fora.css",
                           "/..%2ffora.css",
                           "/..%5cfora.css",
                           "/a/..%2f..%2ffora.css",
                           "/%2e%2e%2ffora.page",
                           "/atalho.css",
                           "/atalho.page",
                           "/a.page%00.css",
                           "/a.page/",
                           "/a.page%20",
                           "/a.page.",
                           "/a.page/x.css",
                           "//../fora.css"}) {
    const auto answer = get(path);
    EXPECT_GE(answer.status, 400) << path;
    EXPECT_THAT(answer.body, Not(HasSubstr("segredo"))) << path;
  }
  EXPECT_EQ(get("/a.page").body, "ok");
}

TEST_F(HttpHostTest, APageSeesTheRequest) {
  site_.write("r.page",
              "<%= Request.ServerVariables('REQUEST_METHOD') %>|<%= Request.QueryString('a') %>|"
              "<%= Request.QueryString('nome') %>|<%= Request.ServerVariables('QUERY_STRING') %>|"
              "<%= Request.ServerVariables('SCRIPT_NAME') %>|"
              "<%= Request.ServerVariables('HTTP_X_TESTE') %>|"
              "<%= Request.ServerVariables('REMOTE_ADDR') %>|"
              "<%= Request.ServerVariables('SERVER_NAME') %>|"
              "<%= Request.ServerVariables('SERVER_PORT') %>|<%= Request.Cookies('c') %>");
  start();
  EXPECT_EQ(get("/r.page?a=1&a=2&nome=Jo%C3%A3o%20S",
                {{"X-Teste", "t"}, {"Cookie", "c=um%20dois; d=3"}, {"REMOTE_ADDR", "9.9.9.9"}})
                .body,
            "GET|1, 2|João S|a=1&a=2&nome=Jo%C3%A3o%20S|/r.page|t|127.0.0.1|127.0.0.1|" +
                std::to_string(host_->port()) + "|um dois");
}

TEST_F(HttpHostTest, AFormIsDecodedHoweverLong) {
  site_.write("f.page",
              "<%= Request.Form('nome') %>|<%= Request.Form('texto').length %>|"
              "<%= Request.Form.Count %>");
  start();
  EXPECT_EQ(
      post_form("/f.page", "nome=Jo%C3%A3o+da+Silva&texto=" + std::string(100'000, 'x') + "&n=1")
          .body,
      "João da Silva|100000|3");
  const httplib::MultipartFormDataItems items = {
      {"nome", "Ana & Zé", "", ""},
      {"arquivo", "conteúdo", "a.txt", "text/plain"},
      {"texto", "abc", "", ""},
  };
  EXPECT_EQ(checked(client().Post("/f.page", items)).body, "Ana & Zé|3|2");
  EXPECT_EQ(checked(client().Post("/f.page", "{\"texto\":1}", "application/json")).status, 500)
      << "no field of that name has a length";
}

TEST_F(HttpHostTest, ABodyBeyondTheLimitIsRefused) {
  options_.request_body_bytes = 10'000;
  site_.write("f.page", "recebido");
  start();
  EXPECT_EQ(post_form("/f.page", "a=" + std::string(9'990, 'x')).status, 200);
  EXPECT_EQ(post_form("/f.page", "a=" + std::string(10'000, 'x')).status, 413);
  const auto chunked = client().Post(
      "/f.page",
      [](std::size_t offset, httplib::DataSink& sink) {
        const std::string piece(1'000, 'x');
        if (offset < 50'000) return sink.write(piece.data(), piece.size());
        sink.done();
        return true;
      },
      "application/x-www-form-urlencoded");
  // The answer may be lost: the host closes while the client still sends.
  if (chunked) {
    EXPECT_EQ(chunked->status, 413);
  }
  EXPECT_EQ(post_form("/f.page", "a=1").body, "recebido");
}

TEST_F(HttpHostTest, APageSetsHeadersCookiesAndRedirects) {
  site_.write("h.page",
              "<% Response.Status = '404 Sumiu'; Response.ContentType = 'text/plain';"
              " Response.Charset = ''; Response.AddHeader('X-A', 'b');"
              " Response.AddHeader('cache-control', 'no-store');"
              " Response.Cookies('c', 'a b;ç'); %>corpo");
  site_.write("para.page", "x<% Response.Redirect('/h.page?a=1'); %>");
  site_.write("nada.page", "x<% Response.Status = '204 No Content'; %>");
  start();
  const auto answer = get("/h.page");
  EXPECT_EQ(answer.status, 404);
  EXPECT_EQ(answer.body, "corpo");
  EXPECT_EQ(answer.get_header_value("Content-Type"), "text/plain");
  EXPECT_EQ(answer.get_header_value("X-A"), "b");
  EXPECT_EQ(answer.get_header_value("Cache-Control"), "no-store");
  EXPECT_EQ(answer.get_header_value("Set-Cookie"),
            "c=a b;ç; Path=/; HttpOnly; SameSite=Lax")  // this client decodes what it is sent
      << "the bytes are looked at where connections are tested";
  const auto redirect = get("/para.page");
  EXPECT_EQ(redirect.status, 302);
  EXPECT_EQ(redirect.get_header_value("Location"), "/h.page?a=1");
  EXPECT_EQ(redirect.body, "");
  EXPECT_EQ(get("/nada.page").body, "");
}

TEST_F(HttpHostTest, ASessionBeginsAtTheFirstWriteAndIsFoundAgain) {
  site_.write("le.page", "[<%= Session('n') %>]");
  site_.write("grava.page", "<% Session('n', (Session('n') ?? 0) + 1); %><%= Session('n') %>");
  site_.write("sai.page", "<% Session.Abandon(); %>");
  start();
  EXPECT_FALSE(get("/le.page").has_header("Set-Cookie"));
  const auto first = get("/grava.page");
  const std::string header = first.get_header_value("Set-Cookie");
  EXPECT_THAT(header, AllOf(HasSubstr("pelm_session="), HasSubstr("; HttpOnly"),
                            HasSubstr("; SameSite=Lax"), Not(HasSubstr("Secure"))));
  const httplib::Headers cookie = {{"Cookie", header.substr(0, header.find(';'))}};
  const auto second = get("/grava.page", cookie);
  EXPECT_EQ(second.body, "2");
  EXPECT_FALSE(second.has_header("Set-Cookie"));
  EXPECT_EQ(get("/le.page", cookie).body, "[2]");
  EXPECT_EQ(get("/le.page").body, "[]");
  get("/sai.page", cookie);
  EXPECT_EQ(get("/le.page", cookie).body, "[]");
}

TEST_F(HttpHostTest, AnIdThatTheHostDidNotGiveIsNotTaken) {
  options_.secure_cookies = true;
  site_.write("grava.page", "<% Session('n', 1); %><%= Session.SessionID %>");
  start();
  const auto answer = get("/grava.page", {{"Cookie", "pelm_session=escolhido"}});
  EXPECT_NE(answer.body, "escolhido");
  EXPECT_THAT(answer.get_header_value("Set-Cookie"),
              AllOf(HasSubstr("pelm_session=" + answer.body), HasSubstr("; Secure")));
}

TEST_F(HttpHostTest, ASessionCannotBeginOnceTheHeadHasGone) {
  site_.write("tarde.page",
              "<% Response.Flush(); try { Session('n', 1); } catch (e) { %>"
              "<%= e.number %><% } %>");
  start();
  EXPECT_EQ(get("/tarde.page").body, "5");
}

TEST_F(HttpHostTest, AFailureAnswers500WithAllItKnowsEscapedAndIsLogged) {
  site_.write("e.page", "texto\n<% Server.CreateObject('Teste.Probe').Falha(); %>");
  site_.write("s.page", "\n<% if ( %>");
  start();
  const auto answer = get("/e.page");
  EXPECT_EQ(answer.status, 500);
  EXPECT_THAT(answer.body, AllOf(HasSubstr("1234"), HasSubstr("Fonte.Da.Falha"),
                                 HasSubstr("Descrição &lt;b&gt;da&lt;/b&gt; falha"),
                                 HasSubstr("/e.page linha 2"), Not(HasSubstr("texto"))));
  EXPECT_THAT(log(), HasSubstr("GET /e.page: Fonte.Da.Falha (1234): Descrição <b>da</b> falha, "
                               "/e.page:2\n"));
  const auto syntax = get("/s.page");
  EXPECT_EQ(syntax.status, 500);
  EXPECT_THAT(syntax.body, AllOf(HasSubstr("1002"), HasSubstr("/s.page linha 2")));
}

TEST_F(HttpHostTest, WithoutDetailsAFailureTellsNothing) {
  options_.error_details = false;
  site_.write("e.page", "<% Server.CreateObject('Teste.Probe').Falha(); %>");
  start();
  EXPECT_THAT(get("/e.page").body,
              AllOf(HasSubstr("Erro interno"), Not(HasSubstr("1234")), Not(HasSubstr("e.page"))));
  EXPECT_THAT(log(), HasSubstr("1234"));
}

TEST_F(HttpHostTest, AFailedEndOfAnObjectIsAFailureOfThePage) {
  site_.write("e.page", "ok<% Server.CreateObject('Teste.Probe').Nome = 'falha'; %>");
  start();
  const auto answer = get("/e.page");
  EXPECT_EQ(answer.status, 500);
  EXPECT_THAT(answer.body, HasSubstr("Probe.Fim"));
}

/// Waits in a page until the test lets it go on.
constexpr const char* kGate = "<% while (!Application('aberto')); %>";

TEST_F(HttpHostTest, WhatAPageFlushesArrivesBeforeItsEnd) {
  site_.write("p.page",
              std::string("um<% Response.AddHeader('X-A', 'b'); Response.Flush(); %>") + kGate +
                  "dois<% try { Response.Status = '404 x'; } catch (e) { %><%= e.number %><% } %>");
  start();
  std::string received;
  const auto answer = client().Get("/p.page", [&](const char* data, std::size_t size) {
    received.append(data, size);
    if (received == "um") host_->application().Value("aberto", true);
    return true;
  });
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->status, 200);
  EXPECT_EQ(answer->get_header_value("X-A"), "b");
  EXPECT_EQ(received, "umdois5");
}

TEST_F(HttpHostTest, AFailureAfterAFlushIsToldAtTheEndOfThePage) {
  site_.write("p.page", "um<% Response.Flush(); nao_existe(); %>");
  start();
  const auto answer = get("/p.page");
  EXPECT_EQ(answer.status, 200);
  EXPECT_THAT(answer.body,
              AllOf(::testing::StartsWith("um"), HasSubstr("nao_existe is not defined")));
}

TEST_F(HttpHostTest, AnUnbufferedPageSendsEveryPiece) {
  site_.write("p.page",
              "<% Response.Buffer = false; for (let i = 0; i < 500; ++i) { %>"
              "<%= i %>;<% } %>");
  start();
  std::string expected;
  for (int i = 0; i < 500; ++i) expected += std::to_string(i) + ";";
  EXPECT_EQ(get("/p.page").body, expected);
}

TEST_F(HttpHostTest, AResponseBeyondTheBufferIsAFailureUnlessFlushed) {
  options_.response_buffer_bytes = 100'000;
  site_.write("g.page", "<% while (true) Response.Write('x'.repeat(1000)); %>");
  site_.write("f.page",
              "<% for (let i = 0; i < 500; ++i) { Response.Write('x'.repeat(1000));"
              " Response.Flush(); } %>");
  start();
  EXPECT_EQ(get("/g.page").status, 500);
  EXPECT_EQ(get("/f.page").body.size(), 500'000U);
}

TEST_F(HttpHostTest, AChangedFileIsSeenAtTheNextRequest) {
  site_.write("a.page", "<!--#include file=\"i.inc\"-->");
  site_.write("i.inc", "um");
  start();
  for (int i = 0; i < 4; ++i) EXPECT_EQ(get("/a.page").body, "um");
  site_.write("i.inc", "dois");
  for (int i = 0; i < 4; ++i) EXPECT_EQ(get("/a.page").body, "dois");
}

TEST_F(HttpHostTest, EightClientsAtOnceLoseNothing) {
  options_.page_threads = 4;
  site_.write("soma.page",
              "<% Application.Lock(); Application('n', (Application('n') ?? 0) + 1);"
              " Application.Unlock(); Server.CreateObject('Teste.Probe').Novo(); %>"
              "<%= Request.QueryString('q') %>");
  start();
  constexpr int kClients = 8;
  constexpr int kRequests = 40;
  std::atomic<int> right{0};
  std::vector<std::thread> clients;
  for (int c = 0; c < kClients; ++c) {
    clients.emplace_back([&, c] {
      auto own = client();
      for (int i = 0; i < kRequests; ++i) {
        const std::string q = std::to_string(c) + "-" + std::to_string(i);
        const auto answer = own.Get("/soma.page?q=" + q);
        if (answer && answer->status == 200 && answer->body == q) ++right;
      }
    });
  }
  for (auto& thread : clients) thread.join();
  EXPECT_EQ(right, kClients * kRequests) << log();
  EXPECT_EQ(host_->application().Value("n"), Variant(std::int32_t{kClients * kRequests}));
  host_->stop();
  EXPECT_EQ(testing::Probe::alive(), 0);
}

TEST_F(HttpHostTest, AStoppedPageDoesNotHoldItsThread) {
  options_.page_threads = 1;
  options_.script.time = std::chrono::milliseconds(200);
  site_.write("laco.page", "<% while (true); %>");
  site_.write("a.page", "ok");
  start();
  const auto answer = get("/laco.page");
  EXPECT_EQ(answer.status, 500);
  EXPECT_THAT(answer.body, HasSubstr("113"));
  EXPECT_EQ(get("/a.page").body, "ok");
}

TEST_F(HttpHostTest, FilesAreServedWhileEveryPageThreadIsBusy) {
  options_.page_threads = 1;
  site_.write("p.page", std::string(kGate) + "fim");
  site_.write("a.css", "livre");
  start();
  std::thread waiting([&] { EXPECT_EQ(get("/p.page").body, "fim"); });
  EXPECT_EQ(get("/a.css").body, "livre");
  host_->application().Value("aberto", true);
  waiting.join();
}

TEST_F(HttpHostTest, StoppingFinishesWhatIsUnderWay) {
  site_.write("p.page", std::string("um<% Response.Flush(); Application('dentro', true); %>") +
                            kGate + "dois");
  site_.write("w.page", std::string("<% Application('dentro2', true); %>") + kGate + "inteira");
  start();
  std::thread pieces([&] { EXPECT_EQ(get("/p.page").body, "umdois"); });
  std::thread whole([&] { EXPECT_EQ(get("/w.page").body, "inteira"); });
  page::Application& application = host_->application();
  while (application.Value("dentro").is_empty() || application.Value("dentro2").is_empty()) {
    std::this_thread::yield();
  }
  std::thread stopping([&] { host_->stop(); });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  application.Value("aberto", true);
  stopping.join();
  pieces.join();
  whole.join();
  EXPECT_FALSE(client().Get("/p.page"));
}

TEST_F(HttpHostTest, StoppingDoesNotWaitForIdleConnections) {
  options_.keep_alive = std::chrono::seconds(600);
  site_.write("a.page", "ok");
  start();
  auto idle = client();
  ASSERT_TRUE(idle.Get("/a.page"));
  const auto begin = std::chrono::steady_clock::now();
  host_->stop();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(300));
  host_->stop();
}

TEST_F(HttpHostTest, ATakenPortIsToldClearly) {
  site_.write("a.page", "ok");
  start();
  options_.port = host_->port();
  HttpHost second(options_);
  try {
    second.start();
    FAIL() << "it started";
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(std::string(error.what()), "port " + std::to_string(options_.port) +
                                             " of 127.0.0.1 is already in use by another program");
  }
  EXPECT_EQ(get("/a.page").body, "ok");
}

TEST_F(HttpHostTest, WhatItCannotStartWithIsToldClearly) {
  options_.root = site_.outside() / "não existe";
  EXPECT_THROW(start(), std::runtime_error);
  options_.root = site_.root();
  options_.address = "203.0.113.1";
  try {
    start();
    FAIL() << "it started";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), HasSubstr("203.0.113.1"));
  }
}

TEST_F(HttpHostTest, TheAccessLogHasALineForEachAnswer) {
  options_.access_log = true;
  site_.write("a.page", "ok");
  start();
  get("/a.page?b=1");
  get("/falta");
  host_->stop();
  EXPECT_THAT(log(), AllOf(HasSubstr("127.0.0.1 GET /a.page?b=1 200\n"),
                           HasSubstr("127.0.0.1 GET /falta 404\n")));
}

}  // namespace
}  // namespace pelm::host
