// The buffer, the head, and what may no longer change once it has gone.
#include "platform/page/response.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/platform/page/expect_error.h"

namespace pelm::page {
namespace {

using ::testing::ElementsAre;
using testing::error_of;
using ::testing::Pair;

ResponseCookie cookie(std::string name, std::string value, std::string path = "/",
                      std::string domain = "") {
  ResponseCookie made;
  made.name = std::move(name);
  made.value = std::move(value);
  made.path = std::move(path);
  made.domain = std::move(domain);
  return made;
}

TEST(Response, BuffersUntilFlushedThenSendsHeadAndBody) {
  std::vector<std::string> sent;
  Response response([&](const Response& head, std::string_view body) {
    sent.push_back(head.Status() + "|" + std::string(body));
  });
  response.Write("a");
  response.Write("b");
  EXPECT_TRUE(sent.empty());
  EXPECT_EQ(response.body(), "ab");
  response.Status("201 Created");
  response.Flush();
  EXPECT_THAT(sent, ElementsAre("201 Created|ab"));
  EXPECT_TRUE(response.headers_sent());
  response.Write("c");
  EXPECT_EQ(response.body(), "c");
}

TEST(Response, WithoutBufferingEveryWriteGoesOut) {
  std::vector<std::string> sent;
  Response response([&](const Response&, std::string_view body) { sent.emplace_back(body); });
  response.Buffer(false);
  response.Write("a");
  response.Write("b");
  EXPECT_THAT(sent, ElementsAre("a", "b"));
}

TEST(Response, WithoutASinkFlushingKeepsTheText) {
  Response response;
  response.Write("a");
  response.Flush();
  response.Write("b");
  EXPECT_EQ(response.body(), "ab");
  EXPECT_FALSE(response.headers_sent());
}

TEST(Response, RefusesChangesOfTheHeadAfterItIsSent) {
  Response response([](const Response&, std::string_view) {});
  response.Flush();
  const std::vector<std::function<void()>> changes = {
      [&] { response.Status("200 OK"); },
      [&] { response.ContentType("text/plain"); },
      [&] { response.Charset("utf-8"); },
      [&] { response.AddHeader("X-A", "b"); },
      [&] { response.SetCookie(cookie("n", "v")); },
      [&] { response.Buffer(false); },
      [&] { response.Redirect("/"); },
  };
  for (const auto& change : changes) EXPECT_EQ(error_of(change), error_number::kInvalidCall);
}

TEST(Response, StatusMustBeginWithANumberFrom200To599) {
  Response response;
  for (const auto* good : {"200", "200 OK", "404 Não encontrado", "599 x"}) {
    response.Status(good);
    EXPECT_EQ(response.Status(), good);
  }
  EXPECT_EQ(response.status_code(), 599);
  for (const auto* bad :
       {"", "OK", "100 Continue", "600 x", "200OK", " 200", "-200", "200 a\r\nX: y"}) {
    EXPECT_EQ(error_of([&] { response.Status(bad); }), error_number::kInvalidCall) << bad;
  }
  EXPECT_EQ(response.Status(), "599 x");
}

TEST(Response, RefusesWhatWouldBreakAHeader) {
  Response response;
  const std::vector<std::function<void()>> breaks = {
      [&] { response.AddHeader("", "x"); },
      [&] { response.AddHeader("X A", "x"); },
      [&] { response.AddHeader("X:A", "x"); },
      [&] { response.AddHeader("X-Ação", "x"); },
      [&] { response.AddHeader("X-A", "x\r\nSet-Cookie: a=b"); },
      [&] { response.AddHeader("X-A", std::string_view("x\0y", 3)); },
      [&] { response.ContentType("text/html\n"); },
      [&] { response.Charset("utf-8\r"); },
      [&] { response.Redirect("/x\r\nX: y"); },
      [&] { response.SetCookie(cookie("a b", "v")); },
      [&] { response.SetCookie(cookie("", "v")); },
      [&] { response.SetCookie(cookie("a", "v", "/;Domain=x")); },
      [&] { response.SetCookie(cookie("a", "v", "/", "x\n")); },
  };
  for (std::size_t i = 0; i < breaks.size(); ++i) {
    EXPECT_EQ(error_of(breaks[i]), error_number::kInvalidCall) << i;
  }
  EXPECT_TRUE(response.headers().empty());
  EXPECT_TRUE(response.cookies().empty());
}

TEST(Response, HeadersThatTellWhereTheAnswerEndsBelongToTheServer) {
  Response response;
  for (const auto* name : {"Content-Length", "TRANSFER-ENCODING", "connection", "Keep-Alive"}) {
    EXPECT_EQ(error_of([&] { response.AddHeader(name, "1"); }), error_number::kInvalidCall) << name;
  }
  EXPECT_TRUE(response.headers().empty());
}

TEST(Response, AContentTypeHeaderReplacesTypeAndCharset) {
  Response response;
  response.AddHeader("content-type", "text/csv; charset=iso-8859-1");
  EXPECT_EQ(response.content_type_header(), "text/csv; charset=iso-8859-1");
  EXPECT_TRUE(response.headers().empty());
}

TEST(Response, TheLastCookieOfANameHolds) {
  Response response;
  response.SetCookie(cookie("a", "1"));
  response.SetCookie(cookie("b", "2"));
  response.SetCookie(cookie("a", "3"));
  response.SetCookie(cookie("a", "4", "/loja"));
  std::vector<std::string> values;
  for (const auto& sent : response.cookies()) values.push_back(sent.value);
  EXPECT_THAT(values, ElementsAre("2", "3", "4"));
}

TEST(Response, EndLeavesThePageAndKeepsTheText) {
  Response response;
  response.Write("a");
  EXPECT_THROW(response.End(), PageEnded);
  EXPECT_EQ(response.body(), "a");
}

TEST(Response, RedirectAnswers302WithItsPlaceAndNoBody) {
  Response response;
  response.Write("a");
  EXPECT_THROW(response.Redirect("/entrar.page"), PageEnded);
  EXPECT_EQ(response.status_code(), 302);
  EXPECT_EQ(response.body(), "");
  EXPECT_THAT(response.headers(), ElementsAre(Pair("Location", "/entrar.page")));
}

TEST(Response, ClearDropsTheBufferAndNeedsBuffering) {
  Response response;
  response.Write("a");
  response.Clear();
  EXPECT_EQ(response.body(), "");
  response.Buffer(false);
  EXPECT_EQ(error_of([&] { response.Clear(); }), error_number::kInvalidCall);
}

TEST(Response, TheBufferHasALimit) {
  Response response;
  response.buffer_limit(4);
  response.Write("abcd");
  EXPECT_EQ(error_of([&] { response.Write("e"); }), error_number::kOutOfMemory);
  EXPECT_EQ(response.body(), "abcd");
  response.Clear();
  response.Write("efgh");
  EXPECT_EQ(response.body(), "efgh");
}

TEST(Response, ContentTypeHeaderCarriesTheCharset) {
  Response response;
  EXPECT_EQ(response.content_type_header(), "text/html; charset=utf-8");
  response.ContentType("image/png");
  response.Charset("");
  EXPECT_EQ(response.content_type_header(), "image/png");
}

}  // namespace
}  // namespace pelm::page
