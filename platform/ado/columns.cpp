// The columns of a result or of a table, and which of them a name means.
#include "platform/ado/columns.h"

#include "pelm/error.h"
#include "platform/ado/error_source.h"
#include "platform/ado/name_compare.h"

namespace pelm::ado {

// One after another: for a few dozen names that is quicker than any table.
std::optional<std::size_t> Columns::find(std::string_view name) const noexcept {
  std::size_t i = 0;
  for (const Column& column : all_) {
    if (same_name(column.name, name)) return i;
    ++i;
  }
  return std::nullopt;
}

std::size_t Columns::named(std::string_view name) const {
  if (const auto found = find(name)) return *found;
  raise_no_such_column(name);
}

const ColumnList& no_columns() {
  static const ColumnList kNone = std::make_shared<const Columns>();
  return kNone;
}

void raise_no_such_column(std::string_view name) {
  raise_error(error_number::kItemNotFound, kFieldsSource, "(" + std::string(name) + ")");
}

}  // namespace pelm::ado
