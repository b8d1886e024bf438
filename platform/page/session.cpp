// A visitor's variables under one lock.
#include "platform/page/session.h"

#include <string>
#include <utility>

#include "pelm/error.h"

namespace pelm::page {
namespace {

constexpr std::string_view kSource = "Session";
constexpr std::int32_t kLongestTimeout = 24 * 60;

}  // namespace

Session::Session(std::string id, std::function<void()> begin)
    : id_(std::move(id)), begin_(std::move(begin)) {}

void Session::begin() const {
  if (!begin_) return;
  // Emptied first: `begin_` makes the session known to other threads.
  std::function<void()> beginning = std::exchange(begin_, nullptr);
  try {
    beginning();
  } catch (...) {
    begin_ = std::move(beginning);
    throw;
  }
}

const std::string& Session::SessionID() const {
  begin();
  return id_;
}

Variant Session::Value(std::string_view name) const {
  const std::lock_guard guard(mutex_);
  return values_.get(name);
}

void Session::Value(std::string_view name, Variant value) {
  begin();
  const std::lock_guard guard(mutex_);
  values_.set(name, std::move(value), kSource);
}

void Session::Remove(std::string_view name) {
  const std::lock_guard guard(mutex_);
  values_.remove(name);
}

void Session::RemoveAll() {
  const std::lock_guard guard(mutex_);
  values_.clear();
}

std::vector<std::string> Session::Names() const {
  const std::lock_guard guard(mutex_);
  return values_.names();
}

std::int32_t Session::Timeout() const {
  const std::lock_guard guard(mutex_);
  return timeout_;
}

void Session::Timeout(std::int32_t minutes) {
  if (minutes < 1 || minutes > kLongestTimeout) {
    raise_error(error_number::kInvalidCall, kSource,
                "Timeout = " + std::to_string(minutes) + ": esperado de 1 a " +
                    std::to_string(kLongestTimeout) + " minutos.");
  }
  begin();
  const std::lock_guard guard(mutex_);
  timeout_ = minutes;
}

void Session::Abandon() {
  const std::lock_guard guard(mutex_);
  abandoned_ = true;
}

bool Session::abandoned() const {
  const std::lock_guard guard(mutex_);
  return abandoned_;
}

}  // namespace pelm::page
