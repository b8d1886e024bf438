// Reading the first row of a query.
#include "platform/ado/first_row.h"

#include <cstddef>

#include "pelm/error.h"
#include "platform/ado/column_named.h"
#include "platform/ado/command_impl.h"
#include "platform/ado/connection_impl.h"
#include "platform/ado/error_source.h"

namespace pelm::ado {

bool read_first_row(const std::shared_ptr<Connection>& connection, std::string_view text,
                    std::span<const std::string_view> columns, std::span<Variant> values) {
  ConnectionImpl& link = ConnectionImpl::opened(connection.get(), kRecordsetSource);
  const auto cursor = link.execute(text, {}, CommandImpl::kDefaultTimeout);
  const std::span<const Column> known = cursor->columns();
  if (known.empty()) raise_error(error_number::kObjectClosed, kRecordsetSource);
  if (!cursor->next()) return false;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    values[i] = cursor->value(column_named(known, columns[i]));
  }
  return true;
}

}  // namespace pelm::ado
