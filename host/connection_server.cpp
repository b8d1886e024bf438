// Sockets, time limits and the waiting between requests; everything of HTTP itself is the
// library's.
#include "host/connection_server.h"

#include <netdb.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>

namespace pelm::host {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// Far more than a browser sends, cookies included.
constexpr std::size_t kMostHeadBytes = std::size_t{64} << 10U;
/// A body that trickles in is cut after this many times the limit between two of its bytes.
constexpr int kBodyPatience = 30;
constexpr int kBacklog = 511;
/// Bytes of a body that go out with the head before it.
constexpr std::size_t kMostAlong = std::size_t{16} << 10U;

int milliseconds_until(Clock::time_point moment) {
  const auto left = std::chrono::ceil<milliseconds>(moment - Clock::now()).count();
  return static_cast<int>(std::clamp<std::int64_t>(left, 0, 3'600'000));
}

/// Whether `socket` is ready for `events` before `limit`.
bool ready(int socket, short events, Clock::time_point limit) {
  for (;;) {
    pollfd waited{socket, events, 0};
    const int count = ::poll(&waited, 1, milliseconds_until(limit));
    if (count > 0) return true;
    if (count == 0 || errno != EINTR) return false;
  }
}

void signal(int event) {
  const std::uint64_t one = 1;
  [[maybe_unused]] const ssize_t written = ::write(event, &one, sizeof(one));
}

bool take_signal(int event) {
  std::uint64_t value = 0;
  return ::read(event, &value, sizeof(value)) == sizeof(value);
}

/// The headers as they were sent: the library decodes %XX in their values, which turns an encoded
/// ";" of a cookie into a real one.
httplib::Headers headers_of(std::string_view head) {
  httplib::Headers headers;
  for (std::size_t at = head.find('\n'); at != std::string_view::npos; at = head.find('\n')) {
    head.remove_prefix(at + 1);
    const std::string_view line = head.substr(0, head.find_first_of("\r\n"));
    const std::size_t colon = line.find(':');
    if (colon == 0 || colon == std::string_view::npos) continue;
    std::string_view value = line.substr(colon + 1);
    value.remove_prefix(std::min(value.find_first_not_of(" \t"), value.size()));
    value = value.substr(0, value.find_last_not_of(" \t") + 1);
    headers.emplace(line.substr(0, colon), value);
  }
  return headers;
}

/// The library matches paths with regular expressions, serves pieces of any answer and compresses
/// whatever it can at its slowest: requests reach it without what would make it.
void make_plain(httplib::Request& request, std::string_view head) {
  request.headers = headers_of(head);
  request.headers.erase("Accept-Encoding");
  request.path = kEveryPath;
  request.ranges.clear();
}

using EndName = std::pair<std::string, int>;

/// Of one end of a connection; `ask` is getpeername or getsockname.
EndName end_name(socket_t socket, int (*ask)(int, sockaddr*, socklen_t*)) {
  sockaddr_storage address = {};
  socklen_t length = sizeof(address);
  if (ask(socket, reinterpret_cast<sockaddr*>(&address), &length) != 0) return {};
  std::array<char, NI_MAXHOST> host = {};
  std::array<char, NI_MAXSERV> port = {};
  if (getnameinfo(reinterpret_cast<const sockaddr*>(&address), length, host.data(), host.size(),
                  port.data(), port.size(), NI_NUMERICHOST | NI_NUMERICSERV) != 0) {
    return {};
  }
  return {host.data(), std::atoi(port.data())};
}

std::string why_not_bound(const std::string& address, int port, int error) {
  const std::string place = "port " + std::to_string(port) + " of " + address;
  switch (error) {
    case EADDRINUSE:
      return place + " is already in use by another program";
    case EACCES:
      return place + " may not be used by this user";
    case EADDRNOTAVAIL:
      return address + " is no address of this machine";
    default:
      return place + " cannot be opened: " + std::generic_category().message(error);
  }
}

}  // namespace

EventDescriptor::EventDescriptor(int flags)
    : number_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK | flags)) {
  if (number_ < 0) throw std::runtime_error("the system gave no file descriptor");
}

EventDescriptor::~EventDescriptor() { ::close(number_); }

/// One client: the library reads and writes through it.
class ConnectionServer::Connection final : public httplib::Stream {
 public:
  Connection(socket_t socket, const ConnectionLimits& limits)
      : socket_(socket),
        limits_(limits),
        client_(end_name(socket, ::getpeername)),
        server_(end_name(socket, ::getsockname)) {}
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() override {
    ::shutdown(socket_, SHUT_RDWR);
    ::close(socket_);
  }

  void begin_head() {
    closes_ = false;
    budget_ = kMostHeadBytes;
    read_until_ = Clock::now() + limits_.read;
    in_body_ = false;
    head_.clear();
    holds_ = false;
    held_.clear();
  }
  void begin_body() {
    budget_ = limits_.body_bytes + limits_.body_bytes / 4 + kMostHeadBytes;  // and its chunk marks
    read_until_ = Clock::now() + limits_.read * kBodyPatience;
    in_body_ = true;
  }
  void close_after_answer() { closes_ = true; }
  /// The next write waits for the one after it, or for `send_held`.
  void hold_next() { holds_ = true; }
  bool closes() const { return closes_; }
  /// Of the request that is being read, as far as it was read.
  const std::string& head() const { return head_; }
  bool has_unread() const { return next_ < filled_; }

  bool is_readable() const override { return has_unread() || ready(socket_, POLLIN, read_limit()); }
  bool is_writable() const override { return ready(socket_, POLLOUT, write_limit()); }

  ssize_t read(char* into, size_t size) override {
    if (!has_unread() && !fill()) return -1;
    const std::size_t count = std::min({size, filled_ - next_, budget_});
    if (count == 0 && filled_ != next_) return read_beyond_budget(into);
    std::memcpy(into, buffer_.data() + next_, count);
    if (!in_body_) head_.append(into, count);
    next_ += count;
    budget_ -= count;
    return static_cast<ssize_t>(count);
  }

  ssize_t write(const char* from, size_t size) override {
    if (std::exchange(holds_, false)) {
      held_.assign(from, size);
      return static_cast<ssize_t>(size);
    }
    if (held_.empty()) return send(from, size);
    const std::size_t along = std::min(size, kMostAlong);
    held_.append(from, along);
    return send_held() ? static_cast<ssize_t>(along) : -1;
  }

  /// False when the client takes nothing any more.
  bool send_held() {
    const std::string held = std::exchange(held_, {});
    for (std::string_view rest = held; !rest.empty();) {
      const ssize_t sent = send(rest.data(), rest.size());
      if (sent < 0) return false;
      rest.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
  }

  void get_remote_ip_and_port(std::string& ip, int& port) const override {
    std::tie(ip, port) = client_;
  }
  void get_local_ip_and_port(std::string& ip, int& port) const override {
    std::tie(ip, port) = server_;
  }
  socket_t socket() const override { return socket_; }

  bool client_has_gone() const {
    char byte = 0;
    return ::recv(socket_, &byte, 1, MSG_PEEK | MSG_DONTWAIT) == 0;
  }

 private:
  Clock::time_point read_limit() const {
    return in_body_ ? std::min(read_until_, Clock::now() + limits_.read) : read_until_;
  }
  Clock::time_point write_limit() const { return Clock::now() + limits_.write; }

  ssize_t send(const char* from, std::size_t size) const {
    for (;;) {
      const ssize_t sent = ::send(socket_, from, size, MSG_NOSIGNAL | MSG_DONTWAIT);
      if (sent >= 0) return sent;
      if (errno == EINTR) continue;
      if ((errno != EAGAIN && errno != EWOULDBLOCK) || !is_writable()) return -1;
    }
  }

  /// The client has sent more than it may. An endless first line is ended for it, and the head with
  /// it, so that the library answers that the address is too long; all else ends in an error.
  ssize_t read_beyond_budget(char* into) {
    constexpr std::string_view kEnd = "\r\n\r\n";
    if (in_body_ || head_.find('\n') < kMostHeadBytes) return -1;
    const std::size_t given = head_.size() - kMostHeadBytes;
    if (given >= kEnd.size()) return -1;
    closes_ = true;  // what else has come is the rest of that line
    head_.push_back(*into = kEnd[given]);
    return 1;
  }

  /// False at the end, after an error, and when nothing comes in time.
  bool fill() {
    next_ = filled_ = 0;
    for (;;) {
      const ssize_t count = ::recv(socket_, buffer_.data(), buffer_.size(), MSG_DONTWAIT);
      if (count > 0) filled_ = static_cast<std::size_t>(count);
      if (count >= 0) return count > 0;
      if (errno == EINTR) continue;
      if (errno != EAGAIN && errno != EWOULDBLOCK) return false;
      if (!ready(socket_, POLLIN, read_limit())) return false;
    }
  }

  const socket_t socket_;
  const ConnectionLimits& limits_;
  const EndName client_;
  const EndName server_;
  std::array<char, 8192> buffer_;
  std::size_t next_ = 0;
  std::size_t filled_ = 0;
  std::size_t budget_ = 0;
  Clock::time_point read_until_;
  std::string head_;
  std::string held_;  ///< waits to be sent
  bool holds_ = false;
  bool in_body_ = false;
  bool closes_ = false;
};

thread_local ConnectionServer::Connection* ConnectionServer::served_ = nullptr;

/// The library's pool, which also calls on idle connections when others wait for a thread.
class ConnectionServer::Queue final : public httplib::TaskQueue {
 public:
  Queue(std::size_t threads, int call_event)
      : pool_(threads), call_event_(call_event), idle_threads_(static_cast<int>(threads)) {}

  void enqueue(std::function<void()> task) override {
    ++waiting_;
    pool_.enqueue([this, task = std::move(task)] {
      --idle_threads_;
      --waiting_;
      task();
      ++idle_threads_;
    });
    if (someone_waits()) signal(call_event_);
  }

  void shutdown() override { pool_.shutdown(); }

  bool someone_waits() const { return waiting_ > idle_threads_; }

 private:
  httplib::ThreadPool pool_;
  const int call_event_;
  std::atomic<int> waiting_{0};
  std::atomic<int> idle_threads_;
};

ConnectionServer::ConnectionServer(const ConnectionLimits& limits) : limits_(limits) {
  new_task_queue = [this] {
    auto* queue = new Queue(limits_.threads, call_event_.number());  // the library deletes it
    queue_ = queue;
    return queue;
  };
  set_tcp_nodelay(true);
  set_payload_max_length(limits_.body_bytes);
  set_keep_alive_max_count(limits_.requests);
  set_keep_alive_timeout(limits_.keep_alive.count());  // what its answers tell the client
  // The library's own choice, SO_REUSEPORT, would let a second server share a taken port.
  set_socket_options([](socket_t socket) {
    const int yes = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
  });
}

ConnectionServer::~ConnectionServer() = default;

int ConnectionServer::bind(const std::string& address, int port) {
  errno = 0;
  int bound = port;
  if (port == 0) {
    bound = bind_to_any_port(address);
  } else if (!bind_to_port(address, port)) {
    bound = -1;
  }
  if (bound < 0) throw std::runtime_error(why_not_bound(address, port, errno));
  // The library waits with five connections at most, and a burst of browsers brings more.
  ::listen(svr_sock_, kBacklog);
  return bound;
}

void ConnectionServer::drain() {
  draining_ = true;
  signal(draining_event_.number());
  while (requests_ > 0) std::this_thread::sleep_for(milliseconds(5));
}

bool ConnectionServer::process_and_close_socket(socket_t socket) {
  Connection connection(socket, limits_);
  served_ = &connection;
  serve(connection);
  served_ = nullptr;
  return true;
}

void ConnectionServer::serve(Connection& connection) {
  auto patience = limits_.read;
  for (std::size_t left = limits_.requests; left > 0; --left) {
    if (!wait_for_request(connection, patience)) return;
    // Counted before it is asked whether to go on: draining waits for whoever passed this.
    ++requests_;
    const bool goes_on = !draining_ && serve_request(connection, left == 1);
    --requests_;
    if (!goes_on) return;
    patience = limits_.keep_alive;
  }
}

/// True when the connection may serve another.
bool ConnectionServer::serve_request(Connection& connection, bool is_last) {
  if (limits_.keep_alive.count() == 0) is_last = true;
  bool client_closes = false;
  connection.begin_head();
  const bool answered =
      process_request(connection, is_last, client_closes, [&](httplib::Request& request) {
        make_plain(request, connection.head());
        connection.begin_body();
      });
  const bool sent = connection.send_held();
  return answered && sent && !is_last && !client_closes && !connection.closes();
}

bool ConnectionServer::wait_for_request(const Connection& connection,
                                        std::chrono::seconds patience) const {
  if (connection.has_unread()) return true;
  const Clock::time_point until = Clock::now() + patience;
  for (;;) {
    pollfd waited[] = {{connection.socket(), POLLIN, 0},
                       {draining_event_.number(), POLLIN, 0},
                       {call_event_.number(), POLLIN, 0}};
    const int count = ::poll(waited, std::size(waited), milliseconds_until(until));
    if (count < 0 && errno != EINTR) return false;
    if (count == 0) return false;
    if (count < 0) continue;
    if (waited[0].revents != 0) return true;
    if (waited[1].revents != 0) return false;
    // A call may be old; each one is taken by one connection, which then looks for itself.
    const Queue* queue = queue_;
    if (take_signal(call_event_.number()) && queue && queue->someone_waits()) return false;
  }
}

void ConnectionServer::close_after_answer(httplib::Response& response) {
  response.set_header("Connection", "close");
  if (served_) served_->close_after_answer();
}

void ConnectionServer::send_head_with_body() {
  if (served_) served_->hold_next();
}

bool ConnectionServer::client_has_gone() { return served_ && served_->client_has_gone(); }

}  // namespace pelm::host
