/// Rows in little more than the bytes of their values, for a record set that holds many.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "pelm/variant.h"

namespace pelm::ado {

/// Appended to and read; a packed row does not change.
class PackedRows {
 public:
  /// Values as a cursor gives them: null, a number, a Boolean, a date or text.
  void append(std::span<const Variant> row);
  Variant value(std::size_t row, std::size_t column) const;
  std::size_t size() const noexcept { return rows_.size(); }

 private:
  std::byte* take(std::size_t bytes);

  std::vector<const std::byte*> rows_;
  std::vector<std::unique_ptr<std::byte[]>> chunks_;
  std::byte* free_ = nullptr;  // in the last chunk
  std::size_t left_ = 0;
  std::size_t next_chunk_ = 4096;
};

}  // namespace pelm::ado
