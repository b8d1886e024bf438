// Reading rows without a record set.
#include "platform/ado/read_rows.h"

#include <cstddef>

#include "pelm/error.h"
#include "platform/ado/command_impl.h"
#include "platform/ado/connection_impl.h"
#include "platform/ado/error_source.h"

namespace pelm::ado {
namespace {

/// Most queries that are read out have no more rows than this.
constexpr std::size_t kRowsAtFirst = 16;

std::unique_ptr<Cursor> started(const std::shared_ptr<Connection>& connection,
                                std::string_view text) {
  ConnectionImpl& link = ConnectionImpl::opened(connection.get(), kRecordsetSource);
  std::unique_ptr<Cursor> cursor = link.execute(text, {}, CommandImpl::kDefaultTimeout);
  if (cursor->columns()->empty()) raise_error(error_number::kObjectClosed, kRecordsetSource);
  return cursor;
}

}  // namespace

bool read_first_row(const std::shared_ptr<Connection>& connection, std::string_view text,
                    std::span<const std::string_view> columns, std::span<Variant> values) {
  const auto cursor = started(connection, text);
  if (!cursor->next()) return false;
  const Columns& known = *cursor->columns();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    values[i] = cursor->value(known.named(columns[i]));
  }
  return true;
}

std::vector<Variant> read_all_rows(const std::shared_ptr<Connection>& connection,
                                   std::string_view text,
                                   std::span<const std::string_view> columns) {
  std::vector<Variant> values;
  const auto cursor = started(connection, text);
  if (!cursor->next()) return values;
  std::vector<std::size_t> places;
  places.reserve(columns.size());
  for (const std::string_view name : columns) {
    places.push_back(cursor->columns()->named(name));
  }
  values.reserve(columns.size() * kRowsAtFirst);
  do {
    for (const std::size_t place : places) values.push_back(cursor->value(place));
  } while (cursor->next());
  return values;
}

}  // namespace pelm::ado
