// Reading tables of cases.
#include "platform/value/case_table.h"

#include <charconv>
#include <fstream>
#include <stdexcept>

namespace pelm::cases {
namespace {

void append_utf8(std::string& out, unsigned code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0U | (code >> 6U));
    out += static_cast<char>(0x80U | (code & 0x3FU));
  } else {
    out += static_cast<char>(0xE0U | (code >> 12U));
    out += static_cast<char>(0x80U | ((code >> 6U) & 0x3FU));
    out += static_cast<char>(0x80U | (code & 0x3FU));
  }
}

// How much of `s`, which begins with a backslash, the escape takes; 0 for an unknown one.
std::size_t append_escape(std::string& out, std::string_view s) {
  constexpr std::string_view kNames = "tnr\\";
  constexpr std::string_view kValues = "\t\n\r\\";
  if (s.size() < 2) return 0;
  if (const std::size_t known = kNames.find(s[1]); known != std::string_view::npos) {
    out += kValues[known];
    return 2;
  }
  unsigned code = 0;
  if (s[1] != 'u' || s.size() < 6) return 0;
  const char* end = s.data() + 6;
  if (std::from_chars(s.data() + 2, end, code, 16).ptr != end) return 0;
  append_utf8(out, code);
  return 6;
}

std::string unescaped(std::string_view s, const std::string& where) {
  std::string out;
  while (!s.empty()) {
    if (s.front() != '\\') {
      out += s.front();
      s.remove_prefix(1);
      continue;
    }
    const std::size_t taken = append_escape(out, s);
    if (taken == 0) throw std::runtime_error(where + ": unknown escape");
    s.remove_prefix(taken);
  }
  return out;
}

}  // namespace

std::vector<std::string> split(std::string_view s, std::string_view separator) {
  std::vector<std::string> pieces;
  for (;;) {
    const std::size_t at = s.find(separator);
    pieces.emplace_back(s.substr(0, at));
    if (at == std::string_view::npos) return pieces;
    s.remove_prefix(at + separator.size());
  }
}

Table read_table(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string line;
  if (!std::getline(file, line)) throw std::runtime_error(path + ": cannot be read");
  Table table{split(line, "\t"), {}};
  for (std::size_t number = 2; std::getline(file, line); ++number) {
    const std::string where = path + ":" + std::to_string(number);
    Row row{number, {}};
    for (const std::string& field : split(line, "\t"))
      row.fields.push_back(unescaped(field, where));
    if (row.fields.size() != table.columns.size()) {
      throw std::runtime_error(where + ": " + std::to_string(row.fields.size()) + " columns");
    }
    table.rows.push_back(std::move(row));
  }
  return table;
}

}  // namespace pelm::cases
