/// What every fuzzing target has: its entry, and pieces of the input.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

/// Called with one input; returns 0. Ends the program where something that always holds does not.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace pelm::fuzz {

inline std::string_view text_of(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// What always holds.
inline void require(bool holds) {
  if (!holds) std::abort();
}

/// Takes pieces off an input, "\n" between them; the last is whatever is left.
class Pieces {
 public:
  explicit Pieces(std::string_view input) : left_(input) {}
  std::string_view next() {
    const std::size_t end = left_.find('\n');
    const std::string_view piece = left_.substr(0, end);
    left_ = end == std::string_view::npos ? std::string_view() : left_.substr(end + 1);
    return piece;
  }
  bool empty() const { return left_.empty(); }

 private:
  std::string_view left_;
};

}  // namespace pelm::fuzz
