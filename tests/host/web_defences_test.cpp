// What a browser is told with every answer, what visitors see of a failure, what nobody can guess.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include "host/random_id.h"
#include "tests/host/http_fixture.h"
#include "tests/host/script_fixture.h"

namespace pelm::host {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;

class WebDefences : public testing::HttpFixture {};

TEST_F(WebDefences, EveryAnswerSaysHowItMayBeUsed) {
  site_.write("a.page", "ok");
  site_.write("e.page", "<% throw 1; %>");
  site_.write("a.css", "b{}");
  start();
  for (const auto* path : {"/a.page", "/e.page", "/a.css", "/falta.page", "/%zz"}) {
    const auto answer = get(path);
    for (const auto& [name, value] : httplib::Headers{{"X-Content-Type-Options", "nosniff"},
                                                      {"X-Frame-Options", "SAMEORIGIN"},
                                                      {"Referrer-Policy", "same-origin"}}) {
      EXPECT_EQ(answer.get_header_value(name), value) << path;
      EXPECT_EQ(answer.get_header_value_count(name), 1U) << path << " " << name;
    }
  }
}

TEST_F(WebDefences, APagesOwnHeaderTakesTheirPlace) {
  site_.write("a.page", "<% Response.AddHeader('x-frame-options', 'DENY'); %>ok");
  start();
  const auto answer = get("/a.page");
  EXPECT_EQ(answer.get_header_value("X-Frame-Options"), "DENY");
  EXPECT_EQ(answer.get_header_value_count("X-Frame-Options"), 1U);
}

TEST_F(WebDefences, TheHostsOwnTextsRunNoScript) {
  site_.write("e.page", "<% throw 1; %>");
  start();
  for (const auto* path : {"/e.page", "/falta.page", "/%zz"}) {
    const auto answer = get(path);
    EXPECT_THAT(answer.get_header_value("Content-Security-Policy"),
                AllOf(HasSubstr("default-src 'none'"), Not(HasSubstr("script-src"))))
        << path;
    EXPECT_EQ(answer.get_header_value_count("Content-Security-Policy"), 1U) << path;
  }
}

TEST_F(WebDefences, TheVisitorOfAFailedPageSeesNothingOfTheServerUnlessAsked) {
  options_.error_details = HostOptions().error_details;
  site_.write("e.page", "<% Server.CreateObject('Teste.Probe').Falha(); %>");
  site_.write("depois.page",
              "a<% Response.Flush(); Server.CreateObject('Teste.Probe').Falha(); %>");
  start();
  for (const auto* path : {"/e.page", "/depois.page"}) {
    EXPECT_THAT(get(path).body, AllOf(HasSubstr("falhou"), Not(HasSubstr("1234")),
                                      Not(HasSubstr("Fonte.Da.Falha")), Not(HasSubstr(".page"))))
        << path;
  }
  EXPECT_THAT(log(), HasSubstr("Fonte.Da.Falha (1234)"));
}

TEST_F(WebDefences, NoSpellingOfAPathReachesAFileOutside) {
  std::ofstream(site_.outside() / "fora.css") << "segredo";
  site_.write("a/dentro.css", "ok");
  std::filesystem::create_directory_symlink(site_.outside(), site_.root() / "pasta");
  start();
  for (const auto* path :
       {"/%252e%252e/fora.css", "/..%252ffora.css", "/%25252e%25252e/fora.css",
        "/a/..%00/../fora.css", "/fora.css%00", "/%2e%2e%00/fora.css", "/pasta/fora.css",
        "/a/../pasta/fora.css", "/%c0%ae%c0%ae/fora.css", "/%e0%80%ae%e0%80%ae/fora.css",
        "/....//fora.css", "/..;/fora.css", "/%uff0e%uff0e/fora.css", "http://x/../fora.css"}) {
    const auto answer = get(path);
    EXPECT_GE(answer.status, 400) << path;
    EXPECT_THAT(answer.body, Not(HasSubstr("segredo"))) << path;
  }
  EXPECT_EQ(get("/a/./dentro.css").body, "ok");
}

class PageConfinement : public testing::ScriptFixture {};

TEST_F(PageConfinement, NoIncludeAndNoMapPathLeavesTheRoot) {
  std::ofstream(site_.outside() / "fora.inc") << "segredo";
  std::filesystem::create_symlink(site_.outside() / "fora.inc", site_.root() / "atalho.inc");
  std::filesystem::create_directory_symlink(site_.outside(), site_.root() / "pasta");
  const std::string outside = (site_.outside() / "fora.inc").string();
  for (const std::string& name :
       {std::string("../fora.inc"), std::string("atalho.inc"), std::string("pasta/fora.inc"),
        std::string("..\\fora.inc"), std::string("x/../../fora.inc"), outside}) {
    for (const auto* kind : {"file", "virtual"}) {
      const auto mark = "<!--#include " + std::string(kind) + "=\"" + name + "\"-->";
      EXPECT_THAT(run(mark), Not(HasSubstr("segredo"))) << mark;
      EXPECT_FALSE(failures_.empty()) << mark;
    }
    application_->Value("nome", name);
    const auto mapped =
        run("<% try { %><%= Server.MapPath(Application('nome')) %><% } "
            "catch (e) { %>recusado <%= e.number %><% } %>");
    // An absolute path counts from the site's root.
    EXPECT_TRUE(mapped == "recusado 5" || mapped == (site_.root().string() + outside)) << mapped;
  }
}

TEST_F(PageConfinement, APageDrawsTextsThatNobodyGuesses) {
  std::set<std::string> seen;
  for (int i = 0; i < 100; ++i) {
    const std::string drawn = run("<%= crypto.randomUUID() %>");
    EXPECT_THAT(drawn, MatchesRegex("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-"
                                    "[0-9a-f]{12}"));
    EXPECT_TRUE(seen.insert(drawn).second) << drawn;
  }
  EXPECT_EQ(run("<% const crypto = 'meu'; %><%= crypto %>"), "meu");  // pages may have the name
}

TEST(RandomId, EveryBitOfItComesUpBothWays) {
  std::array<int, 128> ones = {};
  constexpr int kDraws = 400;
  for (int i = 0; i < kDraws; ++i) {
    const auto bytes = random_bytes();
    for (std::size_t bit = 0; bit < ones.size(); ++bit) {
      ones[bit] += (bytes[bit / 8] >> (bit % 8)) & 1;
    }
  }
  for (const int count : ones) {  // ten standard deviations around the half
    EXPECT_GT(count, 100);
    EXPECT_LT(count, 300);
  }
}

}  // namespace
}  // namespace pelm::host
