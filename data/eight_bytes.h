/// Eight bytes of a text, tested at once.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace pelm::data {

/// The first byte in the lowest bits, on every machine.
using EightBytes = std::uint64_t;

/// From the order that the machine reads them in.
inline EightBytes first_lowest(EightBytes bytes) noexcept {
  return std::endian::native == std::endian::little ? bytes : __builtin_bswap64(bytes);
}

inline EightBytes eight_bytes_at(const char* at) noexcept {
  EightBytes bytes = 0;
  std::memcpy(&bytes, at, sizeof bytes);
  return first_lowest(bytes);
}

constexpr EightBytes eight_times(unsigned char byte) noexcept {
  return 0x0101010101010101U * EightBytes{byte};
}

/// A one in place of each byte that is zero, a zero in place of the others.
constexpr EightBytes zero_bytes(EightBytes bytes) noexcept {
  constexpr EightBytes kLow = eight_times(0x7F);
  return ~(((bytes & kLow) + kLow) | bytes | kLow) >> 7U;
}

}  // namespace pelm::data
