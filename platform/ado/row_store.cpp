// Holding rows.
#include "platform/ado/row_store.h"

namespace pelm::ado {

void RowStore::reset(std::size_t columns) {
  columns_ = columns;
  size_ = 0;
  cells_.clear();
  erased_.clear();
  erased_count_ = 0;
}

void RowStore::read(Cursor& cursor, std::size_t limit) {
  while ((limit == 0 || size_ < limit) && cursor.next()) {
    if (size_ == 0) cells_.reserve(columns_);  // many queries return a single row
    for (std::size_t c = 0; c < columns_; ++c) cells_.push_back(cursor.value(c));
    ++size_;
  }
}

std::size_t RowStore::append() {
  cells_.resize(cells_.size() + columns_, Null{});
  if (!erased_.empty()) erased_.push_back(false);
  return size_++;
}

std::size_t RowStore::next_live(std::size_t row) const noexcept {
  while (row < size_ && !is_live(row)) ++row;
  return row;
}

std::ptrdiff_t RowStore::previous_live(std::ptrdiff_t row) const noexcept {
  while (row >= 0 && !is_live(static_cast<std::size_t>(row))) --row;
  return row;
}

void RowStore::erase(std::size_t row) {
  erased_.resize(size_, false);
  if (erased_[row]) return;
  erased_[row] = true;
  ++erased_count_;
}

}  // namespace pelm::ado
