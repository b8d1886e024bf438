/// What was assigned to the current row and is not yet stored.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "pelm/ado/constants.h"
#include "pelm/variant.h"
#include "platform/ado/statement_texts.h"

namespace pelm::ado {

/// Values stand in the order of the first assignment to their column: the order of the write.
class EditBuffer {
 public:
  EditModeEnum mode() const noexcept { return mode_; }
  bool pending() const noexcept { return mode_ != adEditNone; }
  bool adding() const noexcept { return mode_ == adEditAdd; }

  /// `columns`: how many may be assigned.
  void begin_add(std::size_t columns) {
    columns_.reserve(columns);
    values_.reserve(columns);
    mode_ = adEditAdd;
  }
  void drop() noexcept {
    mode_ = adEditNone;
    columns_.clear();
    values_.clear();
  }
  /// Begins an edit of the current row unless one or an addition is pending.
  void assign(ColumnIndex column, Variant&& value) {
    if (mode_ == adEditNone) {
      columns_.reserve(kUsualEdit);
      values_.reserve(kUsualEdit);
      mode_ = adEditInProgress;
    }
    const auto known = std::ranges::find(columns_, column);
    if (known != columns_.end()) {
      values_[static_cast<std::size_t>(known - columns_.begin())] = std::move(value);
      return;
    }
    values_.push_back(std::move(value));
    columns_.push_back(column);
  }

  /// Null when the column was not assigned.
  const Variant* find(ColumnIndex column) const noexcept {
    const auto known = std::ranges::find(columns_, column);
    if (known == columns_.end()) return nullptr;
    return &values_[static_cast<std::size_t>(known - columns_.begin())];
  }
  std::span<const ColumnIndex> columns() const noexcept { return columns_; }
  std::span<const Variant> values() const noexcept { return values_; }
  Variant&& take_value(std::size_t i) noexcept { return std::move(values_[i]); }

 private:
  static constexpr std::size_t kUsualEdit = 8;  // columns; more than that make it grow

  EditModeEnum mode_ = adEditNone;
  std::vector<ColumnIndex> columns_;
  std::vector<Variant> values_;
};

}  // namespace pelm::ado
