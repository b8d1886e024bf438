// Fields and parameters as objects.
#include "automation/ado_objects.h"

#include <string>

#include "pelm/conversions.h"
#include "pelm/error.h"

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

std::size_t named_field(ado::Recordset& records, const std::string& name) {
  // The record set answers by name; a field object needs to know where that is.
  const std::string_view found = records.Fields(name).Name();
  std::size_t at = 0;
  while (records.Fields(at).Name().data() != found.data()) ++at;
  return at;
}

}  // namespace

std::shared_ptr<FieldObject> FieldsObject::Item(const Variant& index) const {
  const std::size_t at = index.is_text() ? named_field(*owner_, index.text())
                                         : position(index, owner_->FieldCount(), "ADODB.Fields");
  return std::make_shared<FieldObject>(owner_, at);
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
