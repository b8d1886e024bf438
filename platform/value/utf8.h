/// One character of a UTF-8 text at a time; a byte that fits nowhere is a character by itself.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pelm::text {

struct Character {
  char32_t code;     ///< The code point, or the byte when `valid` is false.
  std::size_t size;  ///< Bytes, 1 to 4.
  bool valid;
};

/// The character at byte `at`, which lies within `s`. Overlong forms, surrogates and cut
/// sequences are not valid UTF-8.
inline Character character_at(std::string_view s, std::size_t at) noexcept {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(s[at + i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return {lead, 1, true};

  const Character lone{lead, 1, false};
  const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || s.size() - at < size) return lone;

  char32_t code = lead & (0x7FU >> size);
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0U) != 0x80U) return lone;
    code = (code << 6U) | (byte(i) & 0x3FU);
  }
  const bool overlong = (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (overlong || surrogate || code > 0x10FFFF) return lone;
  return {code, size, true};
}

inline void append_character(std::string& out, char32_t code) {
  const auto put = [&](char32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (code < 0x80) return put(code);
  if (code < 0x800) {
    put(0xC0U | (code >> 6U));
  } else {
    if (code < 0x10000) {
      put(0xE0U | (code >> 12U));
    } else {
      put(0xF0U | (code >> 18U));
      put(0x80U | ((code >> 12U) & 0x3FU));
    }
    put(0x80U | ((code >> 6U) & 0x3FU));
  }
  put(0x80U | (code & 0x3FU));
}

/// Bytes at the start of `s` that are ASCII, found many at a time.
std::size_t ascii_prefix(std::string_view s) noexcept;

}  // namespace pelm::text
