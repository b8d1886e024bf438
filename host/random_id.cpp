// getrandom() waits for nothing once a system is up, and answers so few bytes whole.
#include "host/random_id.h"

#include <sys/random.h>

#include <stdexcept>
#include <string_view>

namespace pelm::host {
namespace {

std::string hexadecimal(const std::array<unsigned char, 16>& bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const unsigned char byte : bytes) {
    text.append(1, kDigits[byte >> 4U]).append(1, kDigits[byte & 0xFU]);
  }
  return text;
}

}  // namespace

std::array<unsigned char, 16> random_bytes() {
  std::array<unsigned char, 16> bytes = {};
  if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    throw std::runtime_error("the system gave no random bytes");
  }
  return bytes;
}

std::string random_id() { return hexadecimal(random_bytes()); }

std::string random_uuid() {
  auto bytes = random_bytes();
  bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0FU) | 0x40U);  // version 4, RFC 9562
  bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3FU) | 0x80U);
  std::string text = hexadecimal(bytes);
  for (const std::size_t at : {20U, 16U, 12U, 8U}) text.insert(at, 1, '-');
  return text;
}

}  // namespace pelm::host
