// Decoded once, and only then judged: an encoded trick is the plain one by then.
#include "host/request_target.h"

#include <algorithm>
#include <vector>

namespace pelm::host {
namespace {

int hex_digit(char c) noexcept {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::optional<std::string> decode(std::string_view s) {
  std::string out;
  out.reserve(s.size());
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (s[i] != '%') {
      out += s[i];
      continue;
    }
    const int high = i + 2 < s.size() ? hex_digit(s[i + 1]) : -1;
    const int low = high >= 0 ? hex_digit(s[i + 2]) : -1;
    if (low < 0) return std::nullopt;
    out += static_cast<char>(high * 16 + low);
    i += 2;
  }
  return out;
}

bool is_forbidden(char c) noexcept {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7f || c == '\\';
}

/// Nothing when ".." goes above the root.
std::optional<std::string> normalized(std::string_view path) {
  std::vector<std::string_view> parts;
  bool folder = true;
  while (!path.empty()) {
    const std::size_t end = path.find('/');
    const std::string_view part = path.substr(0, end);
    folder = end != std::string_view::npos || part == "." || part == "..";
    path = end == std::string_view::npos ? std::string_view() : path.substr(end + 1);
    if (part == "..") {
      if (parts.empty()) return std::nullopt;
      parts.pop_back();
    } else if (!part.empty() && part != ".") {
      parts.push_back(part);
    }
  }
  std::string joined;
  for (const std::string_view part : parts) joined.append("/").append(part);
  if (folder) joined += '/';
  return joined;
}

}  // namespace

std::optional<RequestTarget> parse_target(std::string_view target) {
  target = target.substr(0, target.find('#'));
  const std::size_t mark = target.find('?');
  const std::string_view query =
      mark == std::string_view::npos ? std::string_view() : target.substr(mark + 1);
  const auto path = decode(target.substr(0, mark));
  if (!path || !path->starts_with('/')) return std::nullopt;
  if (std::any_of(path->begin(), path->end(), is_forbidden)) return std::nullopt;
  auto clean = normalized(std::string_view(*path).substr(1));
  if (!clean) return std::nullopt;
  return RequestTarget{*std::move(clean), std::string(query)};
}

bool has_hidden_part(std::string_view path) noexcept {
  return path.find("/.") != std::string_view::npos;
}

std::string encode_path(std::string_view path) {
  constexpr std::string_view kPlain = "-_.~/!$&'()*+,;=:@";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string out;
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    const bool plain = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                       kPlain.find(c) != std::string_view::npos;
    if (plain) {
      out += c;
    } else {
      out.append(1, '%').append(1, kDigits[byte >> 4U]).append(1, kDigits[byte & 0xFU]);
    }
  }
  return out;
}

}  // namespace pelm::host
