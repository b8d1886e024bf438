/// The web application's shared variables. One object for the whole process, safe from any thread.
#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pelm/object.h"
#include "pelm/variant.h"

namespace pelm::page {

class Application : public Object {
 public:
  /// Empty when there is no variable of that name; names compare without case.
  Variant Value(std::string_view name) const;
  void Value(std::string_view name, Variant value);
  void Remove(std::string_view name);
  void RemoveAll();
  /// In order of first assignment.
  std::vector<std::string> Names() const;

  /// One page at a time between the two; nests on the same thread. The host unlocks what a page
  /// left locked.
  void Lock();
  void Unlock();

 private:
  mutable std::recursive_mutex mutex_;
  std::vector<std::pair<std::string, Variant>> values_;
};

}  // namespace pelm::page
