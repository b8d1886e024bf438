// The application's variables under one recursive lock, which a page may hold over several calls.
#include "platform/page/application.h"

#include <utility>

namespace pelm::page {

Application::Application(Elsewhere elsewhere) : elsewhere_(std::move(elsewhere)) {}

Variant Application::Value(std::string_view name) const {
  const std::lock_guard guard(mutex_);
  Variant value = values_.get(name);
  return value.is_empty() && elsewhere_ ? elsewhere_(name) : value;
}

void Application::Value(std::string_view name, Variant value) {
  const std::lock_guard guard(mutex_);
  values_.set(name, std::move(value), "Application");
}

void Application::Remove(std::string_view name) {
  const std::lock_guard guard(mutex_);
  values_.remove(name);
}

void Application::RemoveAll() {
  const std::lock_guard guard(mutex_);
  values_.clear();
}

std::vector<std::string> Application::Names() const {
  const std::lock_guard guard(mutex_);
  return values_.names();
}

void Application::Lock() {
  mutex_.lock();
  owner_ = std::this_thread::get_id();
  ++depth_;
}

void Application::Unlock() {
  if (owner_.load() != std::this_thread::get_id()) return;
  if (--depth_ == 0) owner_ = std::thread::id();
  mutex_.unlock();
}

bool Application::unlock_all() {
  bool held = false;
  while (owner_.load() == std::this_thread::get_id()) {
    Unlock();
    held = true;
  }
  return held;
}

}  // namespace pelm::page
