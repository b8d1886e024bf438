/// The web application's shared variables. One object for the whole process, safe from any thread.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "pelm/object.h"
#include "pelm/variant.h"
#include "platform/page/variables.h"

namespace pelm::page {

class Application : public Object {
 public:
  /// Asked for variables that are not here; empty when it has none either.
  using Elsewhere = std::function<Variant(std::string_view name)>;
  explicit Application(Elsewhere elsewhere = nullptr);

  /// Empty when there is no variable of that name; names compare without case.
  Variant Value(std::string_view name) const;
  /// Raises invalid call (5) for an object: objects belong to the thread that made them.
  void Value(std::string_view name, Variant value);
  void Remove(std::string_view name);
  void RemoveAll();
  /// In order of first assignment.
  std::vector<std::string> Names() const;

  /// One page at a time between the two, readers too; nests on the same thread. `Unlock` by a
  /// thread that holds nothing does nothing.
  void Lock();
  void Unlock();
  /// For the host at the end of a page: releases all that this thread still holds. True when it
  /// held anything.
  bool unlock_all();

 private:
  mutable std::recursive_mutex mutex_;
  std::atomic<std::thread::id> owner_{};  ///< of the page's lock; no thread when there is none
  int depth_ = 0;                         ///< touched by the owner alone
  Variables values_;
  const Elsewhere elsewhere_;
};

}  // namespace pelm::page
