// Finding columns by name.
#include "platform/ado/column_named.h"

#include <string>

#include "pelm/error.h"
#include "platform/ado/error_source.h"
#include "platform/ado/name_compare.h"

namespace pelm::ado {

void raise_no_such_column(std::string_view name) {
  raise_error(error_number::kItemNotFound, kFieldsSource, "(" + std::string(name) + ")");
}

// One after another: for a dozen names that is quicker than any table.
std::size_t column_named(std::span<const Column> columns, std::string_view name) {
  std::size_t i = 0;
  for (const Column& column : columns) {
    if (same_name(column.name, name)) return i;
    ++i;
  }
  raise_no_such_column(name);
}

}  // namespace pelm::ado
