// Comparing a statement with those seen before.
#include "platform/ado/sqlite/seen_texts.h"

#include <cstdint>
#include <cstring>

namespace pelm::ado::sqlite {
namespace {

bool is_digit(char c) noexcept { return c >= '0' && c <= '9'; }

// What may follow a number without being taken for a part of it, whatever its digits are.
bool ends_number(char c) noexcept {
  return c == ' ' || c == ')' || c == ',' || c == ';' || c == '\r' || c == '\n' || c == '\t';
}

// The high bit of each byte that is a quote or in the row of the digits, where "=" is too: a
// literal begins there or further on.
std::uint64_t possible_starts(std::uint64_t word) noexcept {
  constexpr std::uint64_t kOnes = 0x0101010101010101U;
  const auto zero_bytes = [](std::uint64_t bytes) {  // each below 0x80
    return ~(bytes + 0x7FU * kOnes) & (0x80U * kOnes);
  };
  return zero_bytes((word & (0x70U * kOnes)) ^ (0x30U * kOnes)) |
         zero_bytes((word & (0x7FU * kOnes)) ^ (0x27U * kOnes));
}

bool same_bytes(const char* a, const char* b, std::size_t size) noexcept {
  return std::memcmp(a, b, size) == 0;
}

}  // namespace

// By what stands before the first literal, or a little less of it, a word at a time; a text that
// goes on for long without one is not looked at to its end.
std::size_t SeenTexts::place_of(std::string_view sql) noexcept {
  constexpr std::size_t kMostWords = 12;
  std::uint64_t hash = 0;
  std::uint64_t word = 0;
  for (std::size_t i = 0; i < kMostWords && sql.size() >= sizeof word; ++i) {
    std::memcpy(&word, sql.data(), sizeof word);
    const std::uint64_t starts = possible_starts(word);
    word &= ((starts & (~starts + 1)) >> 7U) - 1;  // what stands before the first
    hash = (hash ^ word) * 0x9E3779B97F4A7C15U;
    hash ^= hash >> 32U;
    if (starts != 0) break;
    sql.remove_prefix(sizeof word);
  }
  return (hash ^ (hash >> 16U)) % kPlaces;
}

std::optional<SeenTexts::Place> SeenTexts::place_in(std::string_view sql,
                                                    const Literal& literal) noexcept {
  if (literal.doubled) return {};
  Place place;
  place.begin = static_cast<std::size_t>(literal.text.data() - sql.data());
  place.end = place.begin + literal.text.size();
  place.kind = literal.kind;
  if (place.kind == Literal::Kind::Number && place.end < sql.size() &&
      !ends_number(sql[place.end])) {
    return {};
  }
  return place;
}

bool SeenTexts::same(const Seen& seen, std::string_view sql, std::vector<Literal>& literals) {
  std::size_t at = 0;      // in `sql`
  std::size_t behind = 0;  // in the text seen
  for (std::size_t i = 0; i < seen.literals.size(); ++i) {
    const Place& place = seen.literals[i];
    const std::size_t between = place.begin - behind;
    if (sql.size() - at < between) return false;
    if (!same_bytes(sql.data() + at, seen.text.data() + behind, between)) return false;
    at += between;
    behind = place.end;
    const std::size_t begin = at;
    Literal& literal = literals[i];
    literal = {place.kind, 0, {}, false};
    if (place.kind == Literal::Kind::Number) {
      std::int64_t number = 0;
      for (; at < sql.size() && is_digit(sql[at]); ++at) {
        if (at - begin == kLongestNumber) return false;
        number = number * 10 + (sql[at] - '0');
      }
      if (at == begin) return false;
      literal.number = number;
    } else {
      // A quote that is doubled, or closes too early, leaves no room for what must follow.
      at = sql.find('\'', at);
      if (at == std::string_view::npos) return false;
    }
    literal.text = sql.substr(begin, at - begin);
  }
  return sql.substr(at) == std::string_view(seen.text).substr(behind);
}

const std::string* SeenTexts::find(std::string_view sql, std::vector<Literal>& literals) {
  if (sql.size() > kLongestText) return nullptr;
  const Seen& seen = seen_[place_of(sql)];
  if (seen.text.empty()) return nullptr;
  literals.resize(seen.literals.size());
  if (!same(seen, sql, literals)) return nullptr;
  return &seen.shape;
}

void SeenTexts::remember(std::string_view sql, std::span<const Literal> literals,
                         const std::string& shape) {
  if (sql.size() > kLongestText || literals.size() > kMostLiterals || literals.empty()) return;
  Seen& seen = seen_[place_of(sql)];
  seen.text.clear();
  seen.literals.clear();
  for (const Literal& literal : literals) {
    const std::optional<Place> place = place_in(sql, literal);
    if (!place) return;
    seen.literals.push_back(*place);
  }
  seen.shape = shape;
  seen.text = sql;  // last: until then there is none
}

}  // namespace pelm::ado::sqlite
