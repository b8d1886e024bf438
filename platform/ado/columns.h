/// The columns of a result or of a table, and which of them a name means.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pelm/ado/constants.h"

namespace pelm::ado {

struct Column {
  std::string name = {};
  DataTypeEnum type = adVariant;  ///< adVariant: each value has its own type
  std::int32_t size = 0;          ///< characters of a text column; 0 is no limit
  bool nullable = true;
  bool key = false;          ///< part of the table's primary or unique key
  bool auto_number = false;  ///< given by the engine when not assigned
};

class Columns {
 public:
  Columns() = default;
  explicit Columns(std::vector<Column> all) : all_(std::move(all)) {}

  bool empty() const noexcept { return all_.empty(); }
  std::size_t size() const noexcept { return all_.size(); }
  const Column& operator[](std::size_t i) const noexcept { return all_[i]; }
  auto begin() const noexcept { return all_.begin(); }
  auto end() const noexcept { return all_.end(); }

  /// The number of the first column of that name, without case.
  std::optional<std::size_t> find(std::string_view name) const noexcept;
  /// The same; raises 3265 with the name when there is none.
  std::size_t named(std::string_view name) const;

 private:
  std::vector<Column> all_;
};

/// Kept by whoever needs it longer than the statement that it came with.
using ColumnList = std::shared_ptr<const Columns>;

/// Of a statement without rows.
const ColumnList& no_columns();

/// Raises 3265 with the name.
[[noreturn]] void raise_no_such_column(std::string_view name);

}  // namespace pelm::ado
