/// What a page answers. Buffered unless told otherwise; the host decides where the bytes go.
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pelm/date.h"
#include "pelm/object.h"

namespace pelm::page {

/// Thrown by `End` and `Redirect` to leave the page's code; the host ends the page normally. Not
/// an `Error`: no trap catches it.
struct PageEnded {};

/// A cookie that the response sets.
struct ResponseCookie {
  std::string name;
  std::string value;
  std::string path = "/";
  std::string domain;
  std::optional<Date> expires;  ///< absent: until the browser closes
  bool secure = false;
  bool http_only = true;
};

class Response : public Object {
 public:
  /// Receives a piece of the body when it is flushed; the first call comes after the last moment
  /// at which status and headers could change.
  using Sink = std::function<void(const Response& head, std::string_view body)>;
  /// Without a sink, flushing keeps the text in the buffer.
  explicit Response(Sink sink = nullptr);

  /// Raises out of memory (7) when the buffer would pass its limit.
  void Write(std::string_view text);
  /// "200 OK". Raises invalid call (5) after the headers are sent, as do all below, and when the
  /// text does not begin with a number from 200 to 599.
  const std::string& Status() const { return status_; }
  void Status(std::string_view status);
  const std::string& ContentType() const { return content_type_; }  ///< default "text/html"
  void ContentType(std::string_view type);
  const std::string& Charset() const { return charset_; }  ///< default "utf-8"
  void Charset(std::string_view charset);
  /// "Content-Type" takes the place of `ContentType` and `Charset`. Raises invalid call (5) for a
  /// name or value that would break the header, and for a header that belongs to the server, such
  /// as "Content-Length".
  void AddHeader(std::string_view name, std::string_view value);
  /// Replaces an earlier cookie of the same name, path and domain. Any value is good: the host
  /// encodes it.
  void SetCookie(ResponseCookie cookie);
  /// Default true; false flushes every write.
  bool Buffer() const { return buffered_; }
  void Buffer(bool buffered);
  void Flush();
  void Clear();             ///< Drops what is buffered. Raises invalid call (5) when not buffering.
  [[noreturn]] void End();  ///< throws PageEnded
  [[noreturn]] void Redirect(std::string_view location);  ///< 302, throws PageEnded
  /// False once the client is known to have gone.
  bool IsClientConnected() const { return connected_; }
  void client_connected(bool connected) { connected_ = connected; }

  /// For the host: bytes that may wait in the buffer; default no limit.
  void buffer_limit(std::size_t bytes) { buffer_limit_ = bytes; }
  /// For the host: what is not yet flushed, and the head.
  const std::string& body() const { return body_; }
  /// The same, and nothing is left of it.
  std::string take_body() { return std::exchange(body_, {}); }
  int status_code() const;
  bool headers_sent() const { return headers_sent_; }
  const std::vector<std::pair<std::string, std::string>>& headers() const { return headers_; }
  const std::vector<ResponseCookie>& cookies() const { return cookies_; }
  /// "text/html; charset=utf-8"
  std::string content_type_header() const;

 private:
  void refuse_after_headers() const;

  Sink sink_;
  std::string body_;
  std::string status_ = "200 OK";
  std::string content_type_ = "text/html";
  std::string charset_ = "utf-8";
  std::vector<std::pair<std::string, std::string>> headers_;
  std::vector<ResponseCookie> cookies_;
  std::size_t buffer_limit_ = std::numeric_limits<std::size_t>::max();
  bool buffered_ = true;
  bool headers_sent_ = false;
  std::atomic<bool> connected_ = true;  ///< the client's thread tells, the page's asks
};

}  // namespace pelm::page
