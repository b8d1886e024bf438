// Holding rows.
#include "platform/ado/row_store.h"

#include <utility>

namespace pelm::ado {

void RowStore::reset(std::size_t columns) {
  columns_ = columns;
  size_ = 0;
  cells_.clear();
  packed_ = PackedRows();
  changed_.clear();
  erased_.clear();
  erased_count_ = 0;
}

void RowStore::read(Cursor& cursor, std::size_t limit) {
  const auto is_full = [&] { return limit != 0 && size_ >= limit; };
  while (size_ < kAsValues && !is_full() && cursor.next()) {
    if (size_ == 0) cells_.reserve(columns_);  // many queries return a single row
    for (std::size_t c = 0; c < columns_; ++c) cells_.push_back(cursor.value(c));
    ++size_;
  }
  if (size_ < kAsValues) return;
  std::vector<Variant> row(columns_);
  while (!is_full() && cursor.next()) {
    for (std::size_t c = 0; c < columns_; ++c) row[c] = cursor.value(c);
    packed_.append(row);
    ++size_;
  }
}

std::size_t RowStore::append() {
  if (size_ < kAsValues) {
    cells_.resize(cells_.size() + columns_, Null{});
  } else {
    packed_.append(std::vector<Variant>(columns_, Null{}));
  }
  if (!erased_.empty()) erased_.push_back(false);
  return size_++;
}

Variant RowStore::value_of_packed(std::size_t row, std::size_t column) const {
  if (!changed_.empty()) {
    const auto changed = changed_.find(row);
    if (changed != changed_.end()) return changed->second[column];
  }
  return packed_.value(row - kAsValues, column);
}

void RowStore::set(std::size_t row, std::size_t column, Variant&& value) {
  if (row < kAsValues) {
    cells_[row * columns_ + column] = std::move(value);
    return;
  }
  auto changed = changed_.find(row);
  if (changed == changed_.end()) {
    std::vector<Variant> values;
    values.reserve(columns_);
    for (std::size_t c = 0; c < columns_; ++c) {
      values.push_back(packed_.value(row - kAsValues, c));
    }
    changed = changed_.emplace(row, std::move(values)).first;
  }
  changed->second[column] = std::move(value);
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
