/// Idle sessions of the whole process, kept for the next connection that asks for the same thing.
///
/// Opening and closing a connection for every page must cost next to nothing. All functions may be
/// called by any thread.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/ado/known_targets.h"
#include "platform/ado/provider.h"
#include "platform/ado/statement_texts.h"

namespace pelm::ado {

/// A session with what belongs to it for as long as it lives.
struct PooledSession {
  std::shared_ptr<Provider> provider;  // outlives its session
  std::string key;                     // empty: not to be pooled
  std::string words;                   // what it was last asked for with
  std::unique_ptr<Session> session;
  StatementTexts texts;
  KnownTargets targets;
};

/// The right to use a session; gives it back when it goes.
class SessionLease {
 public:
  SessionLease() = default;
  explicit SessionLease(std::unique_ptr<PooledSession> pooled);
  SessionLease(SessionLease&& other) noexcept = default;
  SessionLease& operator=(SessionLease&& other) noexcept;
  SessionLease(const SessionLease&) = delete;
  SessionLease& operator=(const SessionLease&) = delete;
  ~SessionLease() { give_back(); }

  explicit operator bool() const noexcept { return pooled_ != nullptr; }
  Session& session() const noexcept { return *pooled_->session; }
  StatementTexts& texts() const noexcept { return pooled_->texts; }
  KnownTargets& targets() const noexcept { return pooled_->targets; }
  const Provider& provider() const noexcept { return *pooled_->provider; }

  /// An open transaction is rolled back; a lost session is dropped.
  void give_back() noexcept;

 private:
  std::unique_ptr<PooledSession> pooled_;
};

/// At most this many sessions stay idle, whatever their kinds; beyond it the longest idle goes.
inline constexpr std::size_t kMaxIdleSessions = 64;

/// An idle session that was asked for with the very same words, which then need not be read; an
/// empty lease when there is none.
SessionLease acquire_session_again(std::string_view words);

/// An idle session of the same provider object and pool key, else a new one. `words` say all that
/// the settings were read from. Raises what `Provider::connect` raises.
SessionLease acquire_session(const std::shared_ptr<Provider>& provider,
                             const SessionSettings& settings, std::string_view words);

/// Closes the idle sessions: those of one provider, or all. Those in use are not touched.
void empty_session_pool(const Provider* only_of = nullptr) noexcept;

struct SessionCounts {
  std::size_t idle = 0;
  std::size_t in_use = 0;
};
SessionCounts session_counts() noexcept;

}  // namespace pelm::ado
