/// A look at the two scratch fields of a `Base`.
#pragma once

#include <memory>
#include <string>

#include "pelm/base.h"

namespace pelm {

class BaseProbe {
 public:
  explicit BaseProbe(const Base& base) : base_(base) {}

  /// No operation has left its record set behind.
  bool is_idle() const { return base_.rsBase == nullptr; }
  const std::string& sSQL() const { return base_.sSQL; }
  /// Of the operation in progress; null between operations.
  const std::shared_ptr<ado::Recordset>& rsBase() const { return base_.rsBase; }

 private:
  const Base& base_;
};

}  // namespace pelm
