/// Converting a value to the type of the column or parameter that it is assigned to.
#pragma once

#include <string_view>

#include "pelm/variant.h"
#include "platform/ado/provider.h"

namespace pelm::ado {

/// The value as the column holds it, by the rules of pelm/conversions.h; null stays null, also for
/// a column that refuses it: the engine tells. Raises kCantConvertValue for a value that does not
/// read as the type, kDataOverflow for a number out of range and for a text longer than the
/// column, both naming the column.
Variant converted_for(const Column& column, Variant value);
/// The same in place; a value that fails stays as it was or becomes its text.
void convert_for(const Column& column, Variant& value);

}  // namespace pelm::ado
