/// Whether two names of columns, providers or parameters are the same, without case.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "platform/value/text.h"

namespace pelm::ado {
namespace detail {

constexpr std::uint64_t each_byte(std::uint64_t byte) { return byte * 0x0101010101010101U; }

/// Up to eight bytes from the beginning of a name, the others zero; of a name of four to seven
/// bytes some stand twice.
inline std::uint64_t first_bytes(const char* name, std::size_t size) noexcept {
  std::uint64_t bytes = 0;
  if (size >= sizeof bytes) {
    std::memcpy(&bytes, name, sizeof bytes);
  } else if (size >= sizeof(std::uint32_t)) {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    std::memcpy(&begin, name, sizeof begin);
    std::memcpy(&end, name + size - sizeof end, sizeof end);
    bytes = begin | (std::uint64_t{end} << 32U);
  } else {
    for (std::size_t i = 0; i < size; ++i) {
      bytes = (bytes << 8U) | static_cast<unsigned char>(name[i]);
    }
  }
  return bytes;
}

/// Of eight characters below 0x80 each.
inline bool same_letters(std::uint64_t a, std::uint64_t b) noexcept {
  constexpr std::uint64_t kCase = each_byte(0x20);
  const std::uint64_t differ = a ^ b;
  if ((differ & ~kCase) != 0) return false;
  const std::uint64_t lower = a | kCase;
  const std::uint64_t letters =
      (lower + each_byte(0x80 - 'a')) & ~(lower + each_byte(0x7F - 'z')) & each_byte(0x80);
  return ((differ << 2U) & ~letters) == 0;
}

}  // namespace detail

/// As `text::equal_case_blind`, fast for the unaccented names that nearly all columns have.
inline bool same_name(std::string_view a, std::string_view b) noexcept {
  constexpr std::size_t kStep = sizeof(std::uint64_t);
  if (a.size() != b.size()) return false;
  for (std::size_t at = 0; at < a.size(); at += kStep) {
    const std::uint64_t x = detail::first_bytes(a.data() + at, a.size() - at);
    const std::uint64_t y = detail::first_bytes(b.data() + at, b.size() - at);
    if (x == y) continue;
    if (((x | y) & detail::each_byte(0x80)) != 0) return text::equal_case_blind(a, b);
    if (!detail::same_letters(x, y)) return false;
  }
  return true;
}

}  // namespace pelm::ado
