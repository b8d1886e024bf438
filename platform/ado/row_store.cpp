// Holding rows.
#include "platform/ado/row_store.h"

#include <utility>

namespace pelm::ado {
namespace {

constexpr std::size_t kMostCellsKept = 256;

}  // namespace

void RowStore::reset(std::size_t columns) {
  columns_ = columns;
  size_ = 0;
  cells_.clear();
  if (cells_.capacity() > kMostCellsKept) std::vector<Variant>().swap(cells_);
  more_.reset();
}

RowStore::More& RowStore::more() {
  if (more_ == nullptr) more_ = std::make_unique<More>();
  return *more_;
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
  PackedRows& packed = more().packed;
  while (!is_full() && cursor.next()) {
    for (std::size_t c = 0; c < columns_; ++c) row[c] = cursor.value(c);
    packed.append(row);
    ++size_;
  }
}

std::size_t RowStore::append() {
  if (size_ < kAsValues) {
    cells_.resize(cells_.size() + columns_, Null{});
  } else {
    more().packed.append(std::vector<Variant>(columns_, Null{}));
  }
  return size_++;
}

Variant RowStore::value_of_packed(std::size_t row, std::size_t column) const {
  if (!more_->changed.empty()) {
    const auto changed = more_->changed.find(row);
    if (changed != more_->changed.end()) return changed->second[column];
  }
  return more_->packed.value(row - kAsValues, column);
}

void RowStore::set_in_packed(std::size_t row, std::size_t column, Variant&& value) {
  auto changed = more_->changed.find(row);
  if (changed == more_->changed.end()) {
    std::vector<Variant> values;
    values.reserve(columns_);
    for (std::size_t c = 0; c < columns_; ++c) {
      values.push_back(more_->packed.value(row - kAsValues, c));
    }
    changed = more_->changed.emplace(row, std::move(values)).first;
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
  std::vector<bool>& erased = more().erased;
  if (row >= erased.size()) erased.resize(row + 1, false);
  if (erased[row]) return;
  erased[row] = true;
  ++more_->erased_count;
}

}  // namespace pelm::ado
