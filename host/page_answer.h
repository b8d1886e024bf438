/// What a page answers, on its way from the thread that runs the page to the one that serves the
/// connection: whole when the page has ended, or piece by piece when it flushes.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/page/response.h"

namespace pelm::host {

struct ResponseHead {
  int status = 200;
  std::string content_type;
  std::vector<std::pair<std::string, std::string>> headers;  ///< cookies among them
};

/// The head as it stands now.
ResponseHead head_of(const page::Response& response);

/// "n=v; Path=/; HttpOnly; SameSite=Lax". The value is encoded; a date is this machine's local
/// time.
std::string cookie_header(const page::ResponseCookie& cookie);

class PageAnswer {
 public:
  /// The page's side. A piece waits while too much is on its way; one that nobody takes any more
  /// is dropped.
  void send(const page::Response& response, std::string_view piece);
  /// The last call of the page's side. `head` counts only when nothing was sent before.
  void finish(ResponseHead head, std::string body);

  /// The connection's side. Returns when there is a head; calls `meanwhile` now and then.
  enum class Kind { Whole, Pieces };
  Kind wait(const std::function<void()>& meanwhile);
  /// Good after `wait`.
  const ResponseHead& head() const { return *head_; }
  /// Waits; nothing at the end. A whole answer is one piece.
  std::optional<std::string> next();
  /// The client has gone: what the page still sends is dropped.
  void abandon();

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::optional<ResponseHead> head_;
  std::deque<std::string> pieces_;
  std::size_t on_the_way_ = 0;
  bool flushed_ = false;
  bool finished_ = false;
  bool abandoned_ = false;
};

}  // namespace pelm::host
