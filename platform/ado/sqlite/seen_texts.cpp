// Comparing a statement with those seen before.
#include "platform/ado/sqlite/seen_texts.h"

#include <cstdint>
#include <cstring>
#include <utility>

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

// Leaves the literals of `sql` where it is.
bool SeenTexts::same(const Seen& seen, std::string_view sql) {
  if (seen.text.empty()) return false;
  const char* at = sql.data();
  const char* const end = at + sql.size();
  const char* earlier = seen.text.data();  // where we are in the text seen
  Literal* literal = literals_.data();
  for (const Place& place : seen.literals) {
    const char* const begins = seen.text.data() + place.begin;
    const auto between = static_cast<std::size_t>(begins - earlier);
    if (static_cast<std::size_t>(end - at) < between || !same_bytes(at, earlier, between)) {
      return false;
    }
    at += between;
    earlier = seen.text.data() + place.end;
    const char* const begin = at;
    std::int64_t number = 0;
    if (place.kind == Literal::Kind::Number) {
      const char* const too_long = begin + kLongestNumber;
      for (; at < end && is_digit(*at); ++at) {
        if (at == too_long) return false;
        number = number * 10 + (*at - '0');
      }
      if (at == begin) return false;
    } else {
      // A quote that is doubled, or closes too early, leaves no room for what must follow.
      at = static_cast<const char*>(std::memchr(at, '\'', static_cast<std::size_t>(end - at)));
      if (at == nullptr) return false;
    }
    *literal++ = {place.kind, number, {begin, static_cast<std::size_t>(at - begin)}, false};
  }
  const auto rest = static_cast<std::size_t>(seen.text.data() + seen.text.size() - earlier);
  return static_cast<std::size_t>(end - at) == rest && same_bytes(at, earlier, rest);
}

SeenTexts::Seen& SeenTexts::arrive_at(std::size_t place) noexcept {
  Seen& before = seen_[last_];
  if (before.next != place) {
    before.next_but_one = before.next;
    before.next = static_cast<std::uint8_t>(place);
  }
  last_ = place;
  return seen_[place];
}

SeenTexts::Known* SeenTexts::recognise(std::size_t place, std::string_view sql) {
  if (!same(seen_[place], sql)) return nullptr;
  literal_count_ = seen_[place].literals.size();
  return &arrive_at(place).known;
}

// A page asks the same things in the same order for each of its rows, so the texts that came after
// the last one are tried before any place is reckoned.
SeenTexts::Known* SeenTexts::find(std::string_view sql) {
  if (sql.size() > kLongestText) return nullptr;
  if (Known* const likely = recognise(seen_[last_].next, sql)) return likely;
  if (Known* const likely = recognise(seen_[last_].next_but_one, sql)) return likely;
  const std::size_t place = place_of(sql);
  if (Known* const there = recognise(place, sql)) return there;
  return recognise(place ^ 1U, sql);
}

SeenTexts::Known* SeenTexts::remember(std::string_view sql, std::span<const Literal> literals,
                                      const std::string& shape) {
  if (sql.size() > kLongestText || literals.size() > kMostLiterals) return nullptr;
  const std::size_t place = place_of(sql);
  std::swap(seen_[place], seen_[place ^ 1U]);  // who stood there has moved aside
  Seen& seen = arrive_at(place);
  seen.text.clear();
  seen.literals.clear();
  for (const Literal& literal : literals) {
    const std::optional<Place> within = place_in(sql, literal);
    if (!within) return nullptr;
    seen.literals.push_back(*within);
  }
  seen.known = {shape, nullptr};
  seen.text = sql;  // last: until then there is none
  return &seen.known;
}

}  // namespace pelm::ado::sqlite
