// What clients may do to a connection, byte by byte.
#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "tests/host/http_fixture.h"

namespace pelm::host {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

/// A client that says exactly what the test says.
class RawClient {
 public:
  explicit RawClient(int port) : socket_(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    const timeval limit{60, 0};
    ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof(limit));
  }
  RawClient(const RawClient&) = delete;
  RawClient& operator=(const RawClient&) = delete;
  ~RawClient() { close(); }

  void close() {
    if (socket_ >= 0) ::close(socket_);
    socket_ = -1;
  }

  /// False once the host has closed.
  bool send(std::string_view text) const {
    while (!text.empty()) {
      const ssize_t sent = ::send(socket_, text.data(), text.size(), MSG_NOSIGNAL);
      if (sent <= 0) return false;
      text.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
  }

  /// What one look at the connection gives; waits for it.
  std::string receive_piece() const {
    std::array<char, 4096> piece = {};
    const ssize_t count = ::recv(socket_, piece.data(), piece.size(), 0);
    return {piece.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
  }

  /// Everything up to the end of the connection, or until `enough` has come.
  std::string receive(std::string_view enough = "\xFF") const {
    std::string received;
    std::array<char, 4096> piece = {};
    while (received.find(enough) == std::string::npos) {
      const ssize_t count = ::recv(socket_, piece.data(), piece.size(), 0);
      if (count <= 0) break;
      received.append(piece.data(), static_cast<std::size_t>(count));
    }
    return received;
  }

 private:
  int socket_;
};

std::size_t count_of(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++count;
  return count;
}

class HttpConnection : public testing::HttpFixture {
 protected:
  HttpConnection() {
    site_.write("a.page", "pronta");
    site_.write("f.page", "campo:<%= Request.Form('a') %>");
    site_.write("segredo.page", "contrabando");
  }

  /// The whole of what comes back before the host closes the connection.
  std::string exchange(std::string_view text) const {
    const RawClient client(host_->port());
    client.send(text);
    return client.receive();
  }
};

TEST_F(HttpConnection, TwoRequestsSentTogetherAreBothAnswered) {
  start();
  const std::string answers = exchange(
      "GET /a.page HTTP/1.1\r\nHost: x\r\n\r\nGET /a.page HTTP/1.1\r\nHost: x\r\n"
      "Connection: close\r\n\r\n");
  EXPECT_EQ(count_of(answers, "HTTP/1.1 200 OK"), 2U);
  EXPECT_EQ(count_of(answers, "pronta"), 2U);
}

TEST_F(HttpConnection, AWholeAnswerComesInOnePiece) {
  site_.write("a.txt", "arquivo");
  site_.write("vazio.txt", "");
  start();
  const RawClient client(host_->port());
  for (int i = 0; i < 20; ++i) {
    for (const auto& [request, end] :
         {std::pair("GET /a.page", "pronta"), std::pair("GET /a.txt", "arquivo"),
          std::pair("HEAD /a.page", "\r\n\r\n"), std::pair("HEAD /a.txt", "\r\n\r\n"),
          std::pair("GET /vazio.txt", "\r\n\r\n")}) {
      ASSERT_TRUE(client.send(std::string(request) + " HTTP/1.1\r\nHost: x\r\n\r\n"));
      const std::string answer = client.receive_piece();
      EXPECT_THAT(answer, StartsWith("HTTP/1.1 200 OK")) << request;
      EXPECT_THAT(answer, EndsWith(end)) << request;
    }
  }
}

// Only the beginning of a long body goes out with the head.
TEST_F(HttpConnection, ALongBodyFollowsItsHeadWhole) {
  std::string text;
  while (text.size() < 300'000) text += std::to_string(text.size()) + ";";
  site_.write("longa.page", text);
  site_.write("longo.txt", text);
  start();
  for (const std::string path : {"/longa.page", "/longo.txt"}) {
    const std::string answer =
        exchange("GET " + path + " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    EXPECT_TRUE(answer.ends_with("\r\n\r\n" + text)) << path << answer.size();
  }
}

TEST_F(HttpConnection, ClosesAfterTheLastRequestItMayServe) {
  options_.keep_alive_requests = 2;
  start();
  const std::string request = "GET /a.page HTTP/1.1\r\nHost: x\r\n\r\n";
  EXPECT_EQ(count_of(exchange(request + request + request), "pronta"), 2U);
}

TEST_F(HttpConnection, ClosesAfterOneWhenTheClientAsks) {
  start();
  EXPECT_THAT(exchange("GET /a.page HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n"),
              HasSubstr("pronta"));
  EXPECT_THAT(exchange("GET /a.page HTTP/1.0\r\n\r\n"), HasSubstr("pronta"));
}

TEST_F(HttpConnection, AnOldClientGetsAFlushedPageWhole) {
  site_.write("p.page", "um<% Response.Flush(); %>dois");
  start();
  const std::string answer = exchange("GET /p.page HTTP/1.0\r\n\r\n");
  EXPECT_THAT(answer, HasSubstr("umdois"));
  EXPECT_THAT(answer, Not(HasSubstr("chunked")));
}

TEST_F(HttpConnection, APostWithoutABodyNeedsNoLength) {
  start();
  EXPECT_THAT(exchange("POST /f.page HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n"),
              HasSubstr("campo:"));
}

TEST_F(HttpConnection, AClientMayAskBeforeItSendsItsBody) {
  start();
  const RawClient client(host_->port());
  client.send(
      "POST /f.page HTTP/1.1\r\nHost: x\r\nConnection: close\r\nContent-Length: 3\r\n"
      "Content-Type: application/x-www-form-urlencoded\r\nExpect: 100-continue\r\n\r\n");
  EXPECT_THAT(client.receive("\r\n\r\n"), StartsWith("HTTP/1.1 100"));
  client.send("a=1");
  EXPECT_THAT(client.receive(), HasSubstr("campo:1"));
  EXPECT_THAT(exchange("POST /f.page HTTP/1.1\r\nHost: x\r\nContent-Length: 99999999\r\n"
                       "Expect: 100-continue\r\n\r\n"),
              StartsWith("HTTP/1.1 413"));
}

TEST_F(HttpConnection, ACookieComesBackAsItWasSet) {
  site_.write("grava.page", "<% Response.Cookies('c', 'a b;ç=%41+'); %>");
  site_.write("le.page",
              "[<%= Request.Cookies('c') %>][<%= Request.Cookies.Count %>]"
              "[<%= Request.ServerVariables('HTTP_X_A') %>]");
  start();
  const std::string encoded = "c=a%20b%3B%C3%A7%3D%2541%2B";
  EXPECT_THAT(exchange("GET /grava.page HTTP/1.0\r\n\r\n"),
              HasSubstr("Set-Cookie: " + encoded + "; Path=/; HttpOnly; SameSite=Lax\r\n"));
  EXPECT_THAT(
      exchange("GET /le.page HTTP/1.0\r\nCookie: " + encoded + "\r\nX-A:  a%0d%0ab \r\n\r\n"),
      HasSubstr("[a b;ç=%41+][1][a%0d%0ab]"));
}

TEST_F(HttpConnection, NoRequestIsSmuggledInABody) {
  start();
  const std::string hidden = "GET /segredo.page HTTP/1.1\r\nHost: x\r\n\r\n";
  const std::string length = std::to_string(hidden.size());
  for (const std::string& request :
       {"GET /a.page HTTP/1.1\r\nHost: x\r\nContent-Length: " + length + "\r\n\r\n" + hidden,
        "DELETE /a.page HTTP/1.1\r\nHost: x\r\nContent-Length: " + length + "\r\n\r\n" + hidden,
        "GET /a.page HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\n" + hidden,
        "POST /falta.page HTTP/1.1\r\nHost: x\r\nContent-Length: " + length + "\r\n\r\n" + hidden,
        "POST /f.page HTTP/1.1\r\nHost: x\r\nContent-Length: 0\r\nContent-Length: " + length +
            "\r\n\r\n" + hidden,
        "POST /f.page HTTP/1.1\r\nHost: x\r\nContent-Length: " + length +
            "\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n" + hidden,
        "POST /f.page HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: gzip, chunked\r\n\r\n" + hidden}) {
    const std::string answer = exchange(request);
    EXPECT_EQ(count_of(answer, "HTTP/1.1 "), 1U) << request << "\n---\n" << answer;
    EXPECT_THAT(answer, Not(HasSubstr("contrabando"))) << request;
  }
}

TEST_F(HttpConnection, ALengthThatIsNoNumberIsRefusedAndTheConnectionCloses) {
  start();
  for (const std::string length : {"-1", "+5", "0x5", "5, 5", "5 5", "cinco"}) {
    EXPECT_THAT(
        exchange("POST /f.page HTTP/1.1\r\nHost: x\r\nContent-Length: " + length + "\r\n\r\na=abc"),
        StartsWith("HTTP/1.1 400 "))
        << length;
  }
  EXPECT_THAT(exchange("POST /f.page HTTP/1.1\r\nHost: x\r\nContent-Length: "
                       "99999999999999999999999\r\n\r\na=abc"),
              StartsWith("HTTP/1.1 413 "));
}

TEST_F(HttpConnection, NonsenseIsRefusedAndTheHostGoesOn) {
  options_.read_timeout = std::chrono::seconds(1);
  options_.keep_alive = std::chrono::seconds(1);
  start();
  for (const std::string& text :
       {std::string("\r\n\r\n"), std::string("XYZ\r\n\r\n"), std::string(300'000, 'a'),
        "GET /" + std::string(20'000, 'a') + " HTTP/1.1\r\n\r\n",
        "GET / HTTP/1.1\r\nX: " + std::string(300'000, 'a') + "\r\n\r\n",
        std::string("GET / HTTP/9.9\r\n\r\n"), std::string("GET * HTTP/1.1\r\n\r\n"),
        std::string("GET /a.page HTTP/1.1\r\nRange: bytes=x\r\n\r\n"),
        std::string("POST /f.page HTTP/1.1\r\nContent-Length: -1\r\n\r\n"),
        std::string("POST /f.page HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n"),
        std::string("\0\0\0\0", 4)}) {
    EXPECT_THAT(exchange(text), Not(HasSubstr("pronta"))) << text.substr(0, 50);
  }
  EXPECT_EQ(get("/a.page").body, "pronta");
}

TEST_F(HttpConnection, AnAddressOfAnyLengthBeyondTheLongestIsToldToBeTooLong) {
  start();
  for (const std::size_t length : {9'000U, 65'530U, 65'531U, 65'532U, 100'000U}) {
    const std::string hidden = "GET /segredo.page HTTP/1.1\r\nHost: x\r\n\r\n";
    const std::string answer =
        exchange("GET /" + std::string(length, 'a') + " HTTP/1.1\r\nHost: x\r\n\r\n" + hidden);
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 414 ")) << length;
    EXPECT_EQ(count_of(answer, "HTTP/1.1 "), 1U) << length;
  }
}

TEST_F(HttpConnection, AClientThatSendsTooSlowlyIsLetGo) {
  options_.read_timeout = std::chrono::seconds(1);
  options_.connections = 1;
  start();
  const RawClient silent(host_->port());
  const RawClient slow(host_->port());
  slow.send("GET /a.pa");
  EXPECT_EQ(get("/a.page").body, "pronta");  // the only connection thread has become free
}

TEST_F(HttpConnection, AnIdleConnectionGivesWayToAWaitingOne) {
  options_.keep_alive = std::chrono::seconds(600);
  options_.read_timeout = std::chrono::seconds(600);
  options_.connections = 2;
  start();
  auto first = client();
  auto second = client();
  auto third = client();
  for (int round = 0; round < 3; ++round) {
    for (auto* one : {&first, &second, &third}) {
      const auto answer = one->Get("/a.page");
      ASSERT_TRUE(answer);
      EXPECT_EQ(answer->body, "pronta");
    }
  }
}

TEST_F(HttpConnection, APageLearnsThatItsClientHasGone) {
  site_.write("p.page",
              "<% Application('dentro', true); while (Response.IsClientConnected);"
              " Application('soube', true); %>");
  start();
  RawClient client(host_->port());
  client.send("GET /p.page HTTP/1.1\r\nHost: x\r\n\r\n");
  while (host_->application().Value("dentro").is_empty()) std::this_thread::yield();
  client.close();
  while (host_->application().Value("soube").is_empty()) std::this_thread::yield();
}

TEST_F(HttpConnection, APageDoesNotWaitForAClientThatLeftWhileItSends) {
  site_.write("p.page",
              "<% for (let i = 0; i < 200; ++i) { Response.Write('x'.repeat(100000));"
              " Response.Flush(); } Application('fim', true); %>");
  start();
  RawClient client(host_->port());
  client.send("GET /p.page HTTP/1.1\r\nHost: x\r\n\r\n");
  client.receive("xxx");
  client.close();
  while (host_->application().Value("fim").is_empty()) std::this_thread::yield();
}

}  // namespace
}  // namespace pelm::host
