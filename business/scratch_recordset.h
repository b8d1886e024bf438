/// The record set of the operation in progress, kept in the object's scratch field and let go
/// when the operation ends, by success or by failure.
#pragma once

#include <memory>
#include <utility>

#include "pelm/ado/recordset.h"

namespace pelm::business {

class ScratchRecordset {
 public:
  ScratchRecordset(std::shared_ptr<ado::Recordset>& field, std::shared_ptr<ado::Recordset> records)
      : field_(field) {
    field_ = std::move(records);
  }
  ScratchRecordset(const ScratchRecordset&) = delete;
  ScratchRecordset& operator=(const ScratchRecordset&) = delete;
  /// A row added but not stored is dropped with it.
  ~ScratchRecordset() { field_.reset(); }

  ado::Recordset* operator->() const { return field_.get(); }
  ado::Recordset& operator*() const { return *field_; }

 private:
  std::shared_ptr<ado::Recordset>& field_;
};

}  // namespace pelm::business
