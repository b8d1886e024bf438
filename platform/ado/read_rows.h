/// The rows of a query, for callers that read them and are done: what a record set would give,
/// without making one that nobody else would see.
#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "pelm/ado/connection.h"
#include "pelm/variant.h"

namespace pelm::ado {

/// Runs `text` as `open_as_command` does and, where there is a row, puts the values of `columns`,
/// named in the order of the select list, into `values`, of the same size. False without a row.
/// Rows after the first are not read. Raises what opening a record set, asking it for its end and
/// asking its fields for their values would raise.
bool read_first_row(const std::shared_ptr<Connection>& connection, std::string_view text,
                    std::span<const std::string_view> columns, std::span<Variant> values);

/// The same of every row: their values one row after another.
std::vector<Variant> read_all_rows(const std::shared_ptr<Connection>& connection,
                                   std::string_view text,
                                   std::span<const std::string_view> columns);

}  // namespace pelm::ado
