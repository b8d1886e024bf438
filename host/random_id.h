/// Numbers that nobody can guess, from the operating system.
#pragma once

#include <array>
#include <string>

namespace pelm::host {

/// Throws std::runtime_error when the system gives none.
std::array<unsigned char, 16> random_bytes();

/// 128 random bits as 32 hexadecimal digits.
std::string random_id();

/// 122 random bits as a UUID, "f81d4fae-7dec-41d0-a765-00a0c91e6bf6".
std::string random_uuid();

}  // namespace pelm::host
