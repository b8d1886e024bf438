// A small bounded queue with a head in front.
#include "host/page_answer.h"

#include <algorithm>
#include <chrono>
#include <ctime>

#include "host/static_files.h"
#include "platform/page/server.h"

namespace pelm::host {
namespace {

/// Bytes that a page may be ahead of its client.
constexpr std::size_t kMostOnTheWay = std::size_t{1} << 20U;

constexpr std::chrono::milliseconds kMeanwhile{250};

std::time_t utc_of(Date local) {
  const CivilTime civil = local.civil();
  std::tm t = {};
  t.tm_year = civil.year - 1900;
  t.tm_mon = civil.month - 1;
  t.tm_mday = civil.day;
  t.tm_hour = civil.hour;
  t.tm_min = civil.minute;
  t.tm_sec = civil.second;
  t.tm_isdst = -1;
  return std::mktime(&t);
}

/// %XX for what a cookie cannot hold; a blank too, for "+" means itself in a cookie.
std::string encode_cookie(std::string_view value) {
  std::string encoded;
  for (const char c : value) {
    encoded += c == ' ' ? std::string("%20") : page::Server::URLEncode(std::string_view(&c, 1));
  }
  return encoded;
}

}  // namespace

std::string cookie_header(const page::ResponseCookie& cookie) {
  std::string header = cookie.name + "=" + encode_cookie(cookie.value);
  if (!cookie.path.empty()) header += "; Path=" + cookie.path;
  if (!cookie.domain.empty()) header += "; Domain=" + cookie.domain;
  if (cookie.expires) header += "; Expires=" + http_date(utc_of(*cookie.expires));
  if (cookie.secure) header += "; Secure";
  if (cookie.http_only) header += "; HttpOnly";
  return header + "; SameSite=Lax";
}

ResponseHead head_of(const page::Response& response) {
  ResponseHead head{response.status_code(), response.content_type_header(), response.headers()};
  for (const auto& cookie : response.cookies()) {
    head.headers.emplace_back("Set-Cookie", cookie_header(cookie));
  }
  return head;
}

void PageAnswer::send(const page::Response& response, std::string_view piece) {
  std::unique_lock lock(mutex_);
  flushed_ = true;
  if (!head_) head_ = head_of(response);
  changed_.notify_all();
  changed_.wait(lock, [this] { return abandoned_ || on_the_way_ < kMostOnTheWay; });
  if (!abandoned_ && !piece.empty()) {
    pieces_.emplace_back(piece);
    on_the_way_ += piece.size();
  }
  changed_.notify_all();
}

void PageAnswer::finish(ResponseHead head, std::string body) {
  {
    const std::lock_guard guard(mutex_);
    if (!head_) head_ = std::move(head);
    if (!body.empty() && !abandoned_) pieces_.push_back(std::move(body));
    finished_ = true;
  }
  changed_.notify_all();
}

PageAnswer::Kind PageAnswer::wait(const std::function<void()>& meanwhile) {
  std::unique_lock lock(mutex_);
  while (!changed_.wait_for(lock, kMeanwhile, [this] { return head_.has_value(); })) {
    lock.unlock();
    meanwhile();
    lock.lock();
  }
  return flushed_ ? Kind::Pieces : Kind::Whole;
}

std::optional<std::string> PageAnswer::next() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return finished_ || abandoned_ || !pieces_.empty(); });
  if (abandoned_ || pieces_.empty()) return std::nullopt;
  std::string piece = std::move(pieces_.front());
  pieces_.pop_front();
  on_the_way_ -= std::min(on_the_way_, piece.size());
  changed_.notify_all();
  return piece;
}

void PageAnswer::abandon() {
  const std::lock_guard guard(mutex_);
  abandoned_ = true;
  pieces_.clear();
  changed_.notify_all();
}

}  // namespace pelm::host
