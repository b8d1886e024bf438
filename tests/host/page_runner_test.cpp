// The life of pages on one thread: fresh globals, ended objects, files that change.
#include "host/page_runner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "platform/page/object_context.h"
#include "tests/host/script_fixture.h"

namespace pelm::host {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

class PageRunnerTest : public testing::ScriptFixture {};

TEST_F(PageRunnerTest, WritesTextAndValuesInTheirOrder) {
  EXPECT_EQ(run("um <% for (let i = 2; i < 4; ++i) { %><%= i %> <% } %>fim"), "um 2 3 fim");
  EXPECT_EQ(failures(), "");
}

TEST_F(PageRunnerTest, TextGoesOutByteForByte) {
  const std::string text = "\r\n\tl\xE1tin1 \xF0\x9F\x98\x80\r";
  EXPECT_EQ(run("<%%>" + text), text);
}

TEST_F(PageRunnerTest, FunctionsOfAnIncludeAreThereBeforeIt) {
  site_.write("f.inc", "<% function dobro(n) { return 2 * n; } %>");
  EXPECT_EQ(run("<%= dobro(4) %><!--#include file=\"f.inc\"-->"), "8");
}

TEST_F(PageRunnerTest, NothingOfAPageReachesTheNext) {
  EXPECT_EQ(run("<% var g = 1; globalThis.h = 2; Array.prototype.nova = 3; Math.abs = 4;"
                " delete globalThis.JSON; Request = 5; %>ok"),
            "ok");
  EXPECT_EQ(failures(), "");
  EXPECT_EQ(run("<%= typeof g + typeof h + typeof [].nova + typeof Math.abs + typeof JSON +"
                " typeof Request %>"),
            "undefinedundefinedundefinedfunctionobjectfunction");
}

TEST_F(PageRunnerTest, TheHundredthPageRunsLikeTheFirst) {
  site_.write("n.page",
              "<% const p = Server.CreateObject('Teste.Probe'); p.Nome = 'n'; %>"
              "<%= Application('n') %>");
  for (int i = 0; i < 300; ++i) {
    application_->Value("n", i);
    EXPECT_EQ(run_page("/n.page"), std::to_string(i));
    EXPECT_EQ(failures(), "");
    EXPECT_EQ(ended_, "n;");
  }
  EXPECT_EQ(testing::Probe::alive(), 0);
}

TEST_F(PageRunnerTest, EndsWhatItCreatedLastFirstHoweverThePageEnds) {
  const std::string create =
      "<% for (const n of ['a', 'b', 'c']) Server.CreateObject('Teste.Probe').Nome = n; %>";
  for (const auto* rest : {"", "<% Response.End() %>", "<% throw 1 %>", "<% nao_existe() %>"}) {
    run(create + rest);
    EXPECT_EQ(ended_, "c;b;a;") << rest;
    EXPECT_EQ(testing::Probe::alive(), 0) << rest;
  }
}

TEST_F(PageRunnerTest, AnEndThatFailsIsToldAndStopsNoOther) {
  run("<% for (const n of ['a', 'falha', 'c']) Server.CreateObject('Teste.Probe').Nome = n; %>ok");
  EXPECT_EQ(ended_, "c;falha;a;");
  ASSERT_EQ(failures_.size(), 1U);
  EXPECT_EQ(failures_[0].number, 321);
  EXPECT_EQ(failures_[0].source, "Probe.Fim");
  EXPECT_EQ(failures_[0].place.file, "/p.page");
  run("<% Server.CreateObject('Teste.Probe').Nome = 'falha'; throw 1 %>");
  ASSERT_EQ(failures_.size(), 2U);
  EXPECT_EQ(failures_[0].number, kScriptThrownValue);
  EXPECT_EQ(failures_[1].number, 321);
}

TEST_F(PageRunnerTest, NoScriptHoldsAnObjectAfterItsPage) {
  EXPECT_EQ(run("<% globalThis.p = Server.CreateObject('Teste.Probe'); p.Novo();"
                " p.Valor = p.Novo(); globalThis.ciclo = { p }; ciclo.eu = ciclo; %>ok"),
            "ok");
  EXPECT_EQ(testing::Probe::alive(), 0);
}

TEST_F(PageRunnerTest, UnlocksTheApplicationThatAPageLeftLocked) {
  run("<% Application.Lock(); Application.Lock(); %>");
  std::thread other([this] {
    application_->Value("n", true);
    EXPECT_FALSE(application_->unlock_all());
  });
  other.join();
}

TEST_F(PageRunnerTest, TheContextIsInForceWhileThePageRuns) {
  EXPECT_EQ(page::GetObjectContext(), nullptr);
  EXPECT_EQ(run("<%= Server.MapPath('x.txt') %>"),
            (std::filesystem::canonical(site_.root()) / "x.txt").string());
  EXPECT_EQ(page::GetObjectContext(), nullptr);
}

TEST_F(PageRunnerTest, AChangeOfThePageOrOfAnIncludeIsSeen) {
  site_.write("i.inc", "um");
  EXPECT_EQ(run("<!--#include file=\"i.inc\"-->!"), "um!");
  site_.write("i.inc", "dois");
  EXPECT_EQ(run_page("/p.page"), "dois!");
  EXPECT_EQ(run("<!--#include file=\"i.inc\"-->?"), "dois?");
  std::filesystem::remove(site_.root() / "i.inc");
  EXPECT_EQ(run_page("/p.page"), "");
  ASSERT_EQ(failures_.size(), 1U);
  EXPECT_THAT(failures_[0].description, HasSubstr("i.inc"));
  site_.write("i.inc", "três");
  EXPECT_EQ(run_page("/p.page"), "três?");
}

TEST_F(PageRunnerTest, AFileReplacedByAnotherOfTheSameSizeAndTimeIsSeen) {
  EXPECT_EQ(run("um"), "um");
  const auto file = site_.root() / "p.page";
  const auto time = std::filesystem::last_write_time(file);
  site_.write("nova", "ab");
  std::filesystem::last_write_time(site_.root() / "nova", time);
  std::filesystem::rename(site_.root() / "nova", file);
  EXPECT_EQ(run_page("/p.page"), "ab");
}

TEST_F(PageRunnerTest, ASyntaxErrorSaysWhereItIsInTheIncludedFile) {
  site_.write("a/i.inc", "texto\n<% const ok = 1;\nif ( %>");
  const PageFailure failure = failure_of("\n\n<!--#include file=\"a/i.inc\"-->");
  EXPECT_EQ(failure.number, kScriptSyntaxError);
  EXPECT_EQ(failure.place.file, "/a/i.inc");
  EXPECT_GE(failure.place.line, 3);
  EXPECT_THAT(failure.description, HasSubstr("SyntaxError"));
}

TEST_F(PageRunnerTest, AnErrorInAnIncludeSaysItsOwnLine) {
  site_.write("i.inc", "x\n<%\n  nao_existe();\n%>");
  const PageFailure failure = failure_of("1\n2\n<!--#include file=\"i.inc\"-->");
  EXPECT_EQ(failure.place, (SourcePlace{"/i.inc", 3}));
}

TEST_F(PageRunnerTest, AnErrorSeenByTheScriptHasTheLineOfThePage) {
  EXPECT_EQ(run("\n\n<% try { Server.CreateObject('Teste.Probe').Falha() } catch (e) { %>"
                "<%= e.fileName + ':' + e.lineNumber %><% } %>")
                .substr(2),
            "/p.page:3");
}

TEST_F(PageRunnerTest, AMissingPageIsAFailure) {
  run_page("/falta.page");
  ASSERT_EQ(failures_.size(), 1U);
  EXPECT_THAT(failures_[0].description, HasSubstr("/falta.page"));
}

TEST_F(PageRunnerTest, SeveralThreadsHaveSeveralRunners) {
  site_.write("p.page", "<% let n = 0; for (let i = 0; i < 1000; ++i) n += i; %><%= n %>");
  const auto watchdog = std::make_shared<Watchdog>();
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      PageRunner runner(site_.root(), {}, {}, watchdog);
      for (int i = 0; i < 10; ++i) {
        auto context = std::make_shared<page::ScriptingContext>();
        context->Response = std::make_shared<page::Response>();
        EXPECT_THAT(runner.run("/p.page", context), IsEmpty());
        EXPECT_EQ(context->Response->body(), "499500");
      }
    });
  }
  for (auto& thread : threads) thread.join();
}

}  // namespace
}  // namespace pelm::host
