/// A look at the two scratch fields of a `Base`.
#pragma once

#include <string>

#include "pelm/base.h"

namespace pelm {

class BaseProbe {
 public:
  explicit BaseProbe(const Base& base) : base_(base) {}

  /// No operation has left its record set behind.
  bool is_idle() const { return base_.rsBase == nullptr; }
  const std::string& sSQL() const { return base_.sSQL; }

 private:
  const Base& base_;
};

}  // namespace pelm
