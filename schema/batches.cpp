// Cutting a script at the lines that end a part.
#include "schema/batches.h"

#include <algorithm>
#include <array>

namespace pelm {
namespace {

constexpr std::array<std::string_view, 3> kEnds = {"GO", "/", "//"};

std::vector<std::string_view> lines_of(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

bool ends_part(std::string_view line) { return std::ranges::find(kEnds, line) != kEnds.end(); }

/// For people, or for the client alone.
bool is_left_out(std::string_view line) {
  return line.empty() || line.starts_with("--") || line.starts_with("DELIMITER ");
}

}  // namespace

std::vector<std::string> batches(std::string_view script) {
  const std::vector<std::string_view> lines = lines_of(script);
  if (std::ranges::none_of(lines, ends_part)) return {std::string(script)};
  std::vector<std::string> parts;
  std::string part;
  for (const std::string_view line : lines) {
    if (ends_part(line)) {
      if (!part.empty()) parts.push_back(std::move(part));
      part.clear();
    } else if (!is_left_out(line)) {
      part.append(line).append("\n");
    }
  }
  if (!part.empty()) parts.push_back(std::move(part));
  return parts;
}

}  // namespace pelm
