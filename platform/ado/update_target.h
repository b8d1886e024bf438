/// Where the rows of a record set are stored, and how a row is found there again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection_impl.h"
#include "platform/ado/edit_buffer.h"
#include "platform/ado/row_store.h"

namespace pelm::ado {

/// Columns are numbered as in the record set; those of the table may stand in another order.
class UpdateTarget {
 public:
  UpdateTarget() = default;  ///< no table: nothing can be stored
  /// `columns` are those of the table and those of the record set.
  UpdateTarget(std::string table, ColumnList columns);
  /// Of a statement, whose text says the table; `result` are the columns it returned.
  UpdateTarget(ConnectionImpl& connection, std::string_view sql, const ColumnList& result,
               std::int32_t timeout);

  /// The table's own description of a column of the record set; null for a computed one.
  const Column* column(ColumnIndex index) const noexcept;

  // Each raises 3251 where the table or a column is not known from the statement.
  void insert(ConnectionImpl& connection, const EditBuffer& edit, std::int32_t timeout) const;
  /// Raises kConcurrencyViolation unless exactly one row has the key and, in the assigned columns,
  /// the values of `row`.
  void update(ConnectionImpl& connection, const EditBuffer& edit, const RowStore& rows,
              std::size_t row, std::int32_t timeout) const;
  /// Raises kConcurrencyViolation unless exactly one row has the key of `row`.
  void remove(ConnectionImpl& connection, const RowStore& rows, std::size_t row,
              std::int32_t timeout) const;

  /// Fills a row that was added with what the database made of it: defaults, numbers it gave.
  /// `assigned` values are in the row; `identity_is_ours` says that the last number given by the
  /// engine was given to this row. Leaves the row as it is where it cannot be found again.
  void read_added_row(ConnectionImpl& connection, RowStore& rows, std::size_t row,
                      std::span<const ColumnIndex> assigned, bool identity_is_ours,
                      std::int32_t timeout) const;

 private:
  struct Search;
  void check_storable() const;
  /// -1 for a column that the other side does not have.
  int in_table(std::size_t result_column) const noexcept;
  int in_result(std::size_t table_column) const noexcept;
  /// The table's numbers of some columns of the record set; `room` holds them where they differ.
  std::span<const ColumnIndex> all_in_table(std::span<const ColumnIndex> columns,
                                            std::vector<ColumnIndex>& room) const;
  bool has_key_in(const RowStore& rows, std::size_t row) const;
  Search search_for(const RowStore& rows, std::size_t row,
                    std::span<const ColumnIndex> assigned) const;
  void find_key();

  std::string table_;  // as it was named; empty where the rows are not those of one table
  ColumnList columns_;
  std::vector<ColumnIndex> key_;  // numbers of the table
  bool same_numbers_ = false;     // both maps are empty then
  std::vector<int> in_table_;
  std::vector<int> in_result_;
};

}  // namespace pelm::ado
