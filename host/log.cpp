// One write for each line, so that lines of several threads do not mix.
#include "host/log.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>

namespace pelm::host {
namespace {

std::string local_time() {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm fields = {};
  localtime_r(&now, &fields);
  std::array<char, 32> text = {};
  const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &fields);
  return {text.data(), length};
}

}  // namespace

std::string one_line(std::string_view event) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string line;
  line.reserve(event.size());
  for (const char c : event) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\n') {
      line += "\\n";
    } else if (byte < 0x20 || byte == 0x7f) {
      line.append("\\x").append(1, kDigits[byte >> 4U]).append(1, kDigits[byte & 0xFU]);
    } else {
      line += c;
    }
  }
  return line;
}

void log_to_stderr(std::string_view event) {
  const std::string line = local_time() + " " + one_line(event) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace pelm::host
