/// The variables of one visitor, kept by the host between pages.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pelm/object.h"
#include "pelm/variant.h"

namespace pelm::page {

/// Several pages of one visitor may run at once, so every call is safe from any thread.
class Session : public Object {
 public:
  explicit Session(std::string id);

  const std::string& SessionID() const { return id_; }
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
  const std::string id_;
  mutable std::mutex mutex_;
  std::vector<std::pair<std::string, Variant>> values_;
  std::int32_t timeout_ = 20;
  bool abandoned_ = false;
};

}  // namespace pelm::page
