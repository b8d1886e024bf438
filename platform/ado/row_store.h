/// The rows that a record set holds: the first as values, which is all that most queries give, the
/// others packed.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "pelm/variant.h"
#include "platform/ado/packed_rows.h"
#include "platform/ado/provider.h"

namespace pelm::ado {

/// Rows keep their number while others are erased; an erased one counts in `size`, not in `live`.
class RowStore {
 public:
  /// Drops every row; the memory of a few is kept for the next.
  void reset(std::size_t columns);
  /// Appends the rows of a cursor up to its end or to `limit` rows in all; 0 is no limit.
  void read(Cursor& cursor, std::size_t limit);
  /// Appends a row of nulls and returns its number.
  std::size_t append();

  std::size_t size() const noexcept { return size_; }
  std::size_t live() const noexcept {
    return more_ == nullptr ? size_ : size_ - more_->erased_count;
  }
  bool is_live(std::size_t row) const noexcept {
    return row < size_ && (more_ == nullptr || !more_->is_erased(row));
  }
  /// The first live row at or after `row`; `size()` when there is none.
  std::size_t next_live(std::size_t row) const noexcept;
  /// The last live row at or before `row`, which may be below 0; -1 when there is none.
  std::ptrdiff_t previous_live(std::ptrdiff_t row) const noexcept;

  Variant value(std::size_t row, std::size_t column) const {
    return row < kAsValues ? cells_[row * columns_ + column] : value_of_packed(row, column);
  }
  void set(std::size_t row, std::size_t column, Variant&& value) {
    if (row < kAsValues) {
      cells_[row * columns_ + column] = std::move(value);
    } else {
      set_in_packed(row, column, std::move(value));
    }
  }
  void erase(std::size_t row);

  static constexpr std::size_t kAsValues = 64;  ///< so many rows are not packed

 private:
  /// What few record sets need.
  struct More {
    PackedRows packed;                                    // the rows from kAsValues on
    std::map<std::size_t, std::vector<Variant>> changed;  // instead of what is packed
    std::vector<bool> erased;                             // as far as the last that is
    std::size_t erased_count = 0;

    bool is_erased(std::size_t row) const noexcept { return row < erased.size() && erased[row]; }
  };
  More& more();
  Variant value_of_packed(std::size_t row, std::size_t column) const;
  void set_in_packed(std::size_t row, std::size_t column, Variant&& value);

  std::size_t columns_ = 0;
  std::size_t size_ = 0;
  std::vector<Variant> cells_;  // row after row
  std::unique_ptr<More> more_;
};

}  // namespace pelm::ado
