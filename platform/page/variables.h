/// The named values behind Application and Session: in order of first assignment, names without
/// case. Knows nothing of threads; its owner locks.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pelm/variant.h"

namespace pelm::page {

class Variables {
 public:
  /// Empty when there is none of that name.
  Variant get(std::string_view name) const;
  /// Raises invalid call (5) with `source` for an object, also inside an array: objects belong to
  /// the thread that made them.
  void set(std::string_view name, Variant value, std::string_view source);
  void remove(std::string_view name);
  void clear() { values_.clear(); }
  std::vector<std::string> names() const;

 private:
  std::vector<std::pair<std::string, Variant>> values_;
};

}  // namespace pelm::page
