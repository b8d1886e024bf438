/// The HTTP library's server with connections of our own below it: they wait without polling, end
/// at once when the server stops, give way to others when idle, and bound what one client may send
/// and how long it may take.
#pragma once

#include <httplib.h>
#include <sys/eventfd.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

namespace pelm::host {

struct ConnectionLimits {
  std::size_t threads = 64;
  std::size_t body_bytes = std::size_t{4} << 20U;
  std::size_t requests = 1'000;        ///< on one connection
  std::chrono::seconds read{10};       ///< for a whole head, and between bytes of a body
  std::chrono::seconds write{30};      ///< between bytes
  std::chrono::seconds keep_alive{0};  ///< 0 closes after each answer
};

/// Every request arrives at this path; its own is in `target`.
inline constexpr const char* kEveryPath = "/";

/// A descriptor that threads can wait for.
class EventDescriptor {
 public:
  /// `flags` of eventfd, besides those of every event here.
  explicit EventDescriptor(int flags = 0);
  EventDescriptor(const EventDescriptor&) = delete;
  EventDescriptor& operator=(const EventDescriptor&) = delete;
  ~EventDescriptor();
  int number() const { return number_; }

 private:
  int number_;
};

class ConnectionServer : public httplib::Server {
 public:
  explicit ConnectionServer(const ConnectionLimits& limits);
  ConnectionServer(const ConnectionServer&) = delete;
  ConnectionServer& operator=(const ConnectionServer&) = delete;
  ~ConnectionServer() override;

  /// Port 0 takes any that is free. Returns the port; throws std::runtime_error that says why it
  /// cannot be had.
  int bind(const std::string& address, int port);

  /// Idle connections end, requests under way are finished, new connections are closed unserved.
  /// Returns when the last request is through.
  void drain();

  /// For a handler: the connection of the request it serves closes after the answer, as it must
  /// when a body was left unread.
  static void close_after_answer(httplib::Response& response);
  /// For a handler whose answer is there as a whole: its head goes out together with the body.
  static void send_head_with_body();
  /// For a handler: whether its client has closed the connection.
  static bool client_has_gone();

 private:
  class Connection;
  class Queue;

  bool process_and_close_socket(socket_t socket) override;
  void serve(Connection& connection);
  bool serve_request(Connection& connection, bool is_last);
  bool wait_for_request(const Connection& connection, std::chrono::seconds patience) const;

  static thread_local Connection* served_;  ///< by this thread

  const ConnectionLimits limits_;
  EventDescriptor draining_event_;             ///< readable once draining
  EventDescriptor call_event_{EFD_SEMAPHORE};  ///< asks one idle connection to end
  std::atomic<bool> draining_{false};
  std::atomic<int> requests_{0};  ///< under way
  std::atomic<Queue*> queue_{nullptr};
};

}  // namespace pelm::host
