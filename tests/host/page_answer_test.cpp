// The way of an answer between two threads, and cookies as headers.
#include "host/page_answer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "host/error_page.h"
#include "host/log.h"

namespace pelm::host {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::Pair;

const auto kNothing = [] {};

TEST(PageAnswer, AWholeOneComesWithItsHead) {
  PageAnswer answer;
  answer.finish({201, "text/plain", {{"X-A", "b"}}}, "corpo");
  EXPECT_EQ(answer.wait(kNothing), PageAnswer::Kind::Whole);
  EXPECT_EQ(answer.head().status, 201);
  EXPECT_EQ(answer.next(), "corpo");
  EXPECT_EQ(answer.next(), std::nullopt);
}

TEST(PageAnswer, PiecesComeInOrderWithTheHeadOfTheFirst) {
  PageAnswer answer;
  const std::string kPiece(100'000, 'x');
  std::string sent = "um";
  for (int i = 0; i < 100; ++i) sent += kPiece;
  page::Response response;
  response.Status("202 Aceito");
  std::thread page([&] {
    answer.send(response, "um");
    for (int i = 0; i < 100; ++i) answer.send(response, kPiece);
    answer.finish({500, "", {}}, "fim");
  });
  EXPECT_EQ(answer.wait(kNothing), PageAnswer::Kind::Pieces);
  EXPECT_EQ(answer.head().status, 202);
  std::string all;
  while (const auto piece = answer.next()) all += *piece;
  page.join();
  EXPECT_EQ(all, sent + "fim");
}

TEST(PageAnswer, APageNeedNotWaitForAClientThatLeft) {
  PageAnswer answer;
  const page::Response response;
  std::thread page([&] {
    for (int i = 0; i < 100; ++i) answer.send(response, std::string(100'000, 'x'));
    answer.finish({}, "fim");
  });
  EXPECT_EQ(answer.wait(kNothing), PageAnswer::Kind::Pieces);
  answer.abandon();
  page.join();
  EXPECT_EQ(answer.next(), std::nullopt);
}

TEST(PageAnswer, TellsTimeWhileItWaitsForTheHead) {
  PageAnswer answer;
  int times = 0;
  answer.wait([&] {
    if (++times == 2) answer.finish({}, "");
  });
  EXPECT_EQ(times, 2);
}

TEST(HeadOf, CarriesCookiesAsHeaders) {
  page::Response response;
  response.AddHeader("X-A", "b");
  page::ResponseCookie cookie;
  cookie.name = "n";
  cookie.value = "a b;ção=\"";
  response.SetCookie(cookie);
  EXPECT_THAT(head_of(response).headers,
              ElementsAre(Pair("X-A", "b"), Pair("Set-Cookie",
                                                 "n=a%20b%3B%C3%A7%C3%A3o%3D%22; Path=/; HttpOnly; "
                                                 "SameSite=Lax")));
}

TEST(CookieHeader, SaysAllThatACookieHas) {
  page::ResponseCookie cookie;
  cookie.name = "n";
  cookie.path = "/loja";
  cookie.domain = "exemplo.com.br";
  cookie.secure = true;
  cookie.http_only = false;
  EXPECT_EQ(cookie_header(cookie), "n=; Path=/loja; Domain=exemplo.com.br; Secure; SameSite=Lax");
  cookie.expires = Date::from_civil({2008, 3, 5, 14, 7, 9});
  EXPECT_THAT(cookie_header(cookie),
              ::testing::ContainsRegex("Expires=[A-Z][a-z]+, 0[56] Mar 2008 "));
}

PageFailure nasty() { return {77, "<script>", "\"<b>&'\nlinha", {"/a<b>.page", 3}}; }

TEST(ErrorPage, EscapesEverythingThatItShows) {
  for (const std::string& html :
       {failure_page(nasty(), true), failure_block(nasty(), true), error_page(404, "/<b>\"")}) {
    EXPECT_THAT(html, Not(HasSubstr("<b>")));
    EXPECT_THAT(html, Not(HasSubstr("<script>")));
    EXPECT_THAT(html, HasSubstr("&lt;b&gt;"));
  }
}

TEST(ErrorPage, TellsNumberSourceDescriptionFileAndLine) {
  const std::string html = failure_page(nasty(), true);
  for (const auto* part : {"77", "&lt;script&gt;", "linha", "/a&lt;b&gt;.page linha 3"}) {
    EXPECT_THAT(html, HasSubstr(part));
  }
}

TEST(ErrorPage, WithoutDetailsTellsNone) {
  for (const std::string& html : {failure_page(nasty(), false), failure_block(nasty(), false)}) {
    for (const auto* part : {"77", "script", "&lt;b&gt;", ".page"}) {
      EXPECT_THAT(html, Not(HasSubstr(part)));
    }
  }
}

TEST(OneLine, EscapesLineEndsAndControls) {
  EXPECT_EQ(one_line("a\nb\rc\x1b[0m ção"), "a\\nb\\x0dc\\x1b[0m ção");
}

}  // namespace
}  // namespace pelm::host
