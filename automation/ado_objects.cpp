// Fields and parameters as objects.
#include "automation/ado_objects.h"

#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/ado/recordset_impl.h"

namespace pelm::automation {
namespace {

/// A position within `count`; raises 3265 for any other.
std::size_t position(const Variant& index, std::size_t count, std::string_view source) {
  const std::int32_t at = to_long(index);
  if (at < 0 || static_cast<std::size_t>(at) >= count) {
    raise_error(error_number::kItemNotFound, source, to_text(index));
  }
  return static_cast<std::size_t>(at);
}

}  // namespace

std::shared_ptr<FieldsObject> FieldsObject::of(ado::Recordset& records) {
  std::weak_ptr<Object>& kept = ado::RecordsetImpl::of(records).fields_by_name;
  if (const ObjectRef known = kept.lock()) return std::static_pointer_cast<FieldsObject>(known);
  auto made = std::make_shared<FieldsObject>(
      std::static_pointer_cast<ado::Recordset>(records.shared_from_this()));
  kept = made;
  return made;
}

std::shared_ptr<FieldObject> FieldsObject::Item(const Variant& index) {
  const std::size_t at = index.is_text() ? owner_->Fields(index.text()).Index()
                                         : position(index, owner_->FieldCount(), "ADODB.Fields");
  if (at >= given_.size()) given_.resize(at + 1);
  if (auto known = given_[at].lock()) return known;
  auto made =
      std::make_shared<FieldObject>(std::static_pointer_cast<FieldsObject>(shared_from_this()), at);
  given_[at] = made;
  return made;
}

std::shared_ptr<ado::Parameter> ParametersObject::Item(const Variant& index) const {
  const auto& all = owner_->Parameters();
  if (!index.is_text()) return all[position(index, all.size(), "ADODB.Parameters")];
  const ado::Parameter* found = &owner_->Parameters(index.text());
  for (const auto& parameter : all) {
    if (parameter.get() == found) return parameter;
  }
  raise_error(error_number::kItemNotFound, "ADODB.Parameters", index.text());
}

}  // namespace pelm::automation
