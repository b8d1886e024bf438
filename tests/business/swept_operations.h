/// Every operation of Base that calls the database, with what it leaves behind at each of its
/// steps: what the sweeps over faults go through.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "pelm/base.h"

namespace pelm::test {

struct SweptOperation {
  std::string_view label;  ///< of the test, where an operation has several
  std::string_view name;
  std::string_view world;  ///< statements that make the rows it meets
  std::function<void(Base&)> act;
  /// Row counts, and what `probe` gives where there is one, before the first write and after each.
  std::vector<std::string> stages;
  std::string_view probe = {};
  bool retries_storing = false;  ///< a failure to store does not leave it
};

const std::vector<SweptOperation>& swept_operations();

/// A statement that empties the tables which they write or read.
std::string_view emptied_world();

}  // namespace pelm::test
