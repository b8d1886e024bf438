/// The database objects that a page may hold but C++ code has no need of: collections and fields
/// as objects of their own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "pelm/ado/command.h"
#include "pelm/ado/recordset.h"
#include "pelm/object.h"
#include "pelm/variant.h"

namespace pelm::automation {

class FieldObject;

/// The columns of a record set; keeps it alive.
class FieldsObject : public Object {
 public:
  /// The same one while somebody holds it or one of its fields.
  static std::shared_ptr<FieldsObject> of(ado::Recordset& records);

  explicit FieldsObject(std::shared_ptr<ado::Recordset> owner) : owner_(std::move(owner)) {}
  ado::Recordset& records() const noexcept { return *owner_; }
  std::int32_t Count() const { return static_cast<std::int32_t>(owner_->FieldCount()); }
  /// By name or 0-based position; the same object while somebody holds it. Raises 3265.
  std::shared_ptr<FieldObject> Item(const Variant& index);

 private:
  std::shared_ptr<ado::Recordset> owner_;
  std::vector<std::weak_ptr<FieldObject>> given_;  // by position
};

/// One column of a record set's current row; keeps its record set alive.
class FieldObject : public Object {
 public:
  FieldObject(std::shared_ptr<FieldsObject> fields, std::size_t index)
      : fields_(std::move(fields)), index_(index) {}
  ado::Field field() const { return fields_->records().Fields(index_); }

 private:
  std::shared_ptr<FieldsObject> fields_;
  std::size_t index_;
};

/// The arguments of a command; keeps it alive.
class ParametersObject : public Object {
 public:
  explicit ParametersObject(std::shared_ptr<ado::Command> owner) : owner_(std::move(owner)) {}
  std::int32_t Count() const { return static_cast<std::int32_t>(owner_->Parameters().size()); }
  /// By name or 0-based position. Raises 3265.
  std::shared_ptr<ado::Parameter> Item(const Variant& index) const;
  void Append(std::shared_ptr<ado::Parameter> parameter) { owner_->Append(std::move(parameter)); }

 private:
  std::shared_ptr<ado::Command> owner_;
};

}  // namespace pelm::automation
