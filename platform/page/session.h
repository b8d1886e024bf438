/// The variables of one visitor, kept by the host between pages.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "pelm/object.h"
#include "pelm/variant.h"
#include "platform/page/variables.h"

namespace pelm::page {

/// Several pages of one visitor may run at once, so every call is safe from any thread.
class Session : public Object {
 public:
  /// `begin` runs once, when a page first asks for the id or writes: a visitor whose pages never
  /// do needs no session. It may raise, and then the page's call fails with it.
  explicit Session(std::string id, std::function<void()> begin = nullptr);

  const std::string& SessionID() const;
  /// For the host: the id, without beginning the session.
  const std::string& id() const { return id_; }
  /// Empty when there is no variable of that name; names compare without case.
  Variant Value(std::string_view name) const;
  /// Raises invalid call (5) for an object: objects belong to the thread that made them.
  void Value(std::string_view name, Variant value);
  void Remove(std::string_view name);
  void RemoveAll();
  std::vector<std::string> Names() const;
  /// Minutes without a page before it is forgotten; default 20, 1 to 1440.
  std::int32_t Timeout() const;
  void Timeout(std::int32_t minutes);
  /// Forgotten once the page has ended.
  void Abandon();
  bool abandoned() const;

 private:
  void begin() const;

  const std::string id_;
  mutable std::mutex mutex_;
  mutable std::function<void()> begin_;  ///< empty once it has run
  Variables values_;
  std::int32_t timeout_ = 20;
  bool abandoned_ = false;
};

}  // namespace pelm::page
