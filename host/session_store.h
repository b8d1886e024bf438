/// The sessions of all visitors, by an id that nobody can guess.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/page/session.h"

namespace pelm::host {

/// Safe from any thread.
class SessionStore {
 public:
  using Clock = std::chrono::steady_clock;
  using Now = std::function<Clock::time_point()>;

  /// Beyond `most` sessions, the one unused for longest is forgotten.
  explicit SessionStore(std::size_t most, Now now = Clock::now);

  /// Null when unknown or unused for longer than its time-out; otherwise its time begins again.
  std::shared_ptr<page::Session> find(std::string_view id);

  /// A session with a new id. It is kept only from the moment at which it begins, just after
  /// `begins` was called with its id; what `begins` raises prevents it.
  std::shared_ptr<page::Session> fresh(std::function<void(const std::string& id)> begins);

  /// Forgets a session that its page abandoned.
  void page_ended(const page::Session& session);

  std::size_t size() const;

 private:
  struct Entry {
    std::shared_ptr<page::Session> session;
    Clock::time_point last_used;
  };

  void keep(const std::shared_ptr<page::Session>& session);
  void forget_expired(Clock::time_point now);
  void forget_oldest();

  const std::size_t most_;
  const Now now_;
  mutable std::mutex mutex_;
  std::unordered_map<std::string, Entry> entries_;
  Clock::time_point next_sweep_;
};

}  // namespace pelm::host
