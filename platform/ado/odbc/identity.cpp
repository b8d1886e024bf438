// Reading the two kinds of statements that matter to identity numbers.
#include "platform/ado/odbc/identity.h"

#include "platform/ado/name_compare.h"

namespace pelm::ado::odbc {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kWordEnds = " \t\r\n(),;";
constexpr std::string_view kSequenceSuffix = "_ID";

/// Takes the next word off the text; quoted parts of a name may hold anything.
std::string_view take_word(std::string_view& rest) {
  const std::size_t first = rest.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) {
    rest = {};
    return {};
  }
  rest.remove_prefix(first);
  std::size_t end = 0;
  char closing = '\0';
  for (; end < rest.size(); ++end) {
    const char c = rest[end];
    if (closing != '\0') {
      if (c == closing) closing = '\0';
    } else if (c == '"' || c == '`') {
      closing = c;
    } else if (c == '[') {
      closing = ']';
    } else if (kWordEnds.find(c) != std::string_view::npos) {
      break;
    }
  }
  const std::string_view word = rest.substr(0, end);
  rest.remove_prefix(end);
  return word;
}

bool nothing_left(std::string_view rest) {
  return rest.find_first_not_of(" \t\r\n;") == std::string_view::npos;
}

}  // namespace

std::optional<std::string> asks_identity(std::string_view sql) {
  if (!same_name(take_word(sql), "select")) return std::nullopt;
  if (!same_name(take_word(sql), "@@identity")) return std::nullopt;
  std::string_view name = take_word(sql);
  if (same_name(name, "as")) name = take_word(sql);
  if (!nothing_left(sql)) return std::nullopt;
  return std::string(name.empty() ? "identity" : name);
}

std::string inserted_table(std::string_view sql) {
  if (!same_name(take_word(sql), "insert")) return {};
  std::string_view table = take_word(sql);
  if (same_name(table, "into")) table = take_word(sql);
  return std::string(table);
}

std::string sequence_of(std::string_view table) {
  std::string name(table);
  const bool quoted = name.ends_with('"') || name.ends_with('`') || name.ends_with(']');
  name.insert(quoted ? name.size() - 1 : name.size(), kSequenceSuffix);
  return name;
}

}  // namespace pelm::ado::odbc
