// 128 bits from the operating system for each id; expired sessions go once a minute.
#include "host/session_store.h"

#include <algorithm>
#include <utility>

#include "host/random_id.h"

namespace pelm::host {
namespace {

constexpr std::chrono::minutes kSweepInterval{1};

}  // namespace

SessionStore::SessionStore(std::size_t most, Now now)
    : most_(most), now_(std::move(now)), next_sweep_(now_() + kSweepInterval) {}

std::shared_ptr<page::Session> SessionStore::find(std::string_view id) {
  const std::lock_guard guard(mutex_);
  const auto found = entries_.find(std::string(id));
  if (found == entries_.end()) return nullptr;
  Entry& entry = found->second;
  const Clock::time_point now = now_();
  if (now - entry.last_used > std::chrono::minutes(entry.session->Timeout())) {
    entries_.erase(found);
    return nullptr;
  }
  entry.last_used = now;
  return entry.session;
}

std::shared_ptr<page::Session> SessionStore::fresh(
    std::function<void(const std::string& id)> begins) {
  const auto self = std::make_shared<std::weak_ptr<page::Session>>();
  const std::string id = random_id();
  auto session = std::make_shared<page::Session>(id, [this, self, id, begins = std::move(begins)] {
    begins(id);
    if (const auto begun = self->lock()) keep(begun);
  });
  *self = session;
  return session;
}

void SessionStore::page_ended(const page::Session& session) {
  if (!session.abandoned()) return;
  const std::lock_guard guard(mutex_);
  entries_.erase(session.id());
}

std::size_t SessionStore::size() const {
  const std::lock_guard guard(mutex_);
  return entries_.size();
}

void SessionStore::keep(const std::shared_ptr<page::Session>& session) {
  const std::lock_guard guard(mutex_);
  const Clock::time_point now = now_();
  if (now >= next_sweep_ || entries_.size() >= most_) forget_expired(now);
  if (entries_.size() >= most_) forget_oldest();
  entries_.insert_or_assign(session->id(), Entry{session, now});
}

void SessionStore::forget_expired(Clock::time_point now) {
  std::erase_if(entries_, [now](const auto& pair) {
    const Entry& entry = pair.second;
    return now - entry.last_used > std::chrono::minutes(entry.session->Timeout());
  });
  next_sweep_ = now + kSweepInterval;
}

void SessionStore::forget_oldest() {
  const auto oldest = std::min_element(
      entries_.begin(), entries_.end(),
      [](const auto& a, const auto& b) { return a.second.last_used < b.second.last_used; });
  if (oldest != entries_.end()) entries_.erase(oldest);
}

}  // namespace pelm::host
