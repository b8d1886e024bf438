// Reading what a browser sends: url-encoded pairs and cookies.
#include "platform/page/request.h"

#include <unordered_set>

#include "platform/value/text.h"

namespace pelm::page {
namespace {

int hex_digit(char c) noexcept {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

enum class Plus { Blank, Itself };

std::string decode(std::string_view s, Plus plus) {
  std::string out;
  out.reserve(s.size());
  for (std::size_t i = 0; i < s.size(); ++i) {
    const int high = s[i] == '%' && i + 2 < s.size() ? hex_digit(s[i + 1]) : -1;
    const int low = high >= 0 ? hex_digit(s[i + 2]) : -1;
    if (low >= 0) {
      out += static_cast<char>(high * 16 + low);
      i += 2;
    } else {
      out += s[i] == '+' && plus == Plus::Blank ? ' ' : s[i];
    }
  }
  return out;
}

/// Adds each `separator`-separated "name=value" of `s`; a piece without "=" is a name alone.
void add_pairs(NamedValues& into, std::string_view s, char separator, Plus plus) {
  while (!s.empty()) {
    const std::size_t end = s.find(separator);
    const std::string_view piece = text::trim(s.substr(0, end));
    s = end == std::string_view::npos ? std::string_view() : s.substr(end + 1);
    if (piece.empty()) continue;
    const std::size_t equals = piece.find('=');
    const std::string_view value =
        equals == std::string_view::npos ? std::string_view() : piece.substr(equals + 1);
    into.add(decode(piece.substr(0, equals), plus), decode(value, plus));
  }
}

}  // namespace

NamedValues::NamedValues(std::vector<std::pair<std::string, std::string>> pairs)
    : pairs_(std::move(pairs)) {}

std::optional<std::string> NamedValues::Item(std::string_view name) const {
  std::optional<std::string> joined;
  for (const auto& [key, value] : pairs_) {
    if (!text::equal_case_blind(key, name)) continue;
    if (joined) {
      joined->append(", ").append(value);
    } else {
      joined = value;
    }
  }
  return joined;
}

std::vector<std::string> NamedValues::Values(std::string_view name) const {
  std::vector<std::string> values;
  for (const auto& [key, value] : pairs_) {
    if (text::equal_case_blind(key, name)) values.push_back(value);
  }
  return values;
}

std::vector<std::string> NamedValues::Names() const {
  std::vector<std::string> names;
  std::unordered_set<std::string> seen;  // a form can bring a million names
  for (const auto& [key, value] : pairs_) {
    if (seen.insert(text::lower(key)).second) names.push_back(key);
  }
  return names;
}

void NamedValues::add(std::string name, std::string value) {
  pairs_.emplace_back(std::move(name), std::move(value));
}

std::shared_ptr<NamedValues> parse_url_encoded(std::string_view text) {
  auto values = std::make_shared<NamedValues>();
  add_pairs(*values, text, '&', Plus::Blank);
  return values;
}

std::shared_ptr<NamedValues> parse_cookies(std::string_view header) {
  auto values = std::make_shared<NamedValues>();
  add_pairs(*values, header, ';', Plus::Itself);
  return values;
}

std::optional<std::string> Request::Item(std::string_view name) const {
  for (const auto* collection : {&QueryString, &Form, &Cookies, &ServerVariables}) {
    if (auto value = (*collection)->Item(name)) return value;
  }
  return std::nullopt;
}

}  // namespace pelm::page
