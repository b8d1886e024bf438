// Lending sessions and taking them back.
#include "platform/ado/session_pool.h"

#include <mutex>
#include <vector>

namespace pelm::ado {
namespace {

using Idle = std::unique_ptr<PooledSession>;

/// Sessions are reset, opened and closed outside the lock: those may wait for a database.
class Pool {
 public:
  Pool() { idle_.reserve(kMaxIdleSessions); }

  /// Null when there is none that fits.
  template <class Fits>
  Idle take(Fits&& fits) {
    const std::lock_guard lock(mutex_);
    for (auto it = idle_.rbegin(); it != idle_.rend(); ++it) {  // the warmest first
      if (!fits(**it)) continue;
      Idle found = std::move(*it);
      idle_.erase(std::next(it).base());
      return found;
    }
    return nullptr;
  }

  /// Returns what there is no room for.
  Idle keep(Idle session) noexcept {
    const std::lock_guard lock(mutex_);
    if (closed_) return session;
    Idle oldest;
    if (idle_.size() >= kMaxIdleSessions) {
      oldest = std::move(idle_.front());
      idle_.erase(idle_.begin());
    }
    idle_.push_back(std::move(session));
    return oldest;
  }

  std::vector<Idle> take_all(const Provider* only_of) {
    std::vector<Idle> taken;
    taken.reserve(kMaxIdleSessions);
    const std::lock_guard lock(mutex_);
    for (Idle& i : idle_) {
      if (only_of == nullptr || i->provider.get() == only_of) taken.push_back(std::move(i));
    }
    std::erase(idle_, nullptr);
    return taken;
  }

  void close() noexcept {
    const std::lock_guard lock(mutex_);
    closed_ = true;
  }

  void lent(std::ptrdiff_t change) noexcept {
    const std::lock_guard lock(mutex_);
    in_use_ += static_cast<std::size_t>(change);
  }

  SessionCounts counts() noexcept {
    const std::lock_guard lock(mutex_);
    return {idle_.size(), in_use_};
  }

 private:
  std::mutex mutex_;
  std::vector<Idle> idle_;  // the longest idle first
  std::size_t in_use_ = 0;
  bool closed_ = false;
};

/// Never destroyed, since a connection may outlive every static object; but emptied when the
/// process ends, so that databases are closed in order.
Pool& pool() {
  static Pool* const the_pool = new Pool;
  struct AtExit {
    ~AtExit() {
      the_pool->close();
      the_pool->take_all(nullptr);
    }
  };
  static const AtExit at_exit;
  return *the_pool;
}

/// Lost sessions among those that fit are dropped.
template <class Fits>
Idle take_usable(const Fits& fits) {
  Idle idle = pool().take(fits);
  while (idle != nullptr && !idle->session->still_good()) idle = pool().take(fits);
  return idle;
}

}  // namespace

SessionLease::SessionLease(std::unique_ptr<PooledSession> pooled) : pooled_(std::move(pooled)) {
  if (pooled_ != nullptr) pool().lent(1);
}

SessionLease& SessionLease::operator=(SessionLease&& other) noexcept {
  if (this != &other) {
    give_back();
    pooled_ = std::move(other.pooled_);
  }
  return *this;
}

void SessionLease::give_back() noexcept {
  if (pooled_ == nullptr) return;
  Idle session = std::move(pooled_);
  pool().lent(-1);
  const bool usable = session->session->reset();
  if (usable && !session->key.empty()) session = pool().keep(std::move(session));
}

SessionLease acquire_session_again(std::string_view words) {
  Idle idle = take_usable([&](const PooledSession& s) { return s.words == words; });
  const bool replaced = idle != nullptr && find_provider(idle->provider->name()) != idle->provider;
  return SessionLease(replaced ? nullptr : std::move(idle));
}

SessionLease acquire_session(const std::shared_ptr<Provider>& provider,
                             const SessionSettings& settings, std::string_view words) {
  std::string key = provider->pool_key(settings);
  if (!key.empty()) {
    Idle idle =
        take_usable([&](const PooledSession& s) { return s.provider == provider && s.key == key; });
    if (idle != nullptr) {
      idle->words = words;
      return SessionLease(std::move(idle));
    }
  }
  auto opened = std::make_unique<PooledSession>();
  opened->provider = provider;
  opened->key = std::move(key);
  opened->words = words;
  opened->session = provider->connect(settings);
  return SessionLease(std::move(opened));
}

void empty_session_pool(const Provider* only_of) noexcept {
  try {
    pool().take_all(only_of);
  } catch (const std::exception&) {
    return;  // no memory to take them out: they stay
  }
}

SessionCounts session_counts() noexcept { return pool().counts(); }

}  // namespace pelm::ado
