// How the embedded database compares texts.
#include "platform/ado/sqlite/collation.h"

#include <sqlite3.h>

#include <array>
#include <cstdint>

#include "platform/value/case_map.h"
#include "platform/value/utf8.h"

namespace pelm::ado::sqlite {
namespace {

// The letter under the accent, for the Latin-1 small letters from U+00E0 on; 0 where there is none.
constexpr std::array<char, 32> kLatinBases = {'a', 'a', 'a', 'a', 'a', 'a', 0,   'c', 'e', 'e', 'e',
                                              'e', 'i', 'i', 'i', 'i', 0,   'n', 'o', 'o', 'o', 'o',
                                              'o', 0,   0,   'u', 'u', 'u', 'u', 'y', 0,   'y'};
constexpr char32_t kFirstLatin = 0xE0;
constexpr char32_t kPastUnicode = 0x110000;  // a stray byte sorts behind every character

std::string_view without_trailing_blanks(std::string_view s) noexcept {
  while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
  return s;
}

// The character at `at` in small letters; moves `at` behind it.
char32_t small_letter(std::string_view s, std::size_t& at) noexcept {
  const auto byte = static_cast<unsigned char>(s[at]);
  if (byte < 0x80) {
    ++at;
    return byte >= 'A' && byte <= 'Z' ? byte + 0x20U : byte;
  }
  const text::Character c = text::character_at(s, at);
  at += c.size;
  return c.valid ? text::lower_letter(c.code) : kPastUnicode + c.code;
}

char32_t base_letter(char32_t small) noexcept {
  if (small < kFirstLatin || small >= kFirstLatin + kLatinBases.size()) return small;
  const char base = kLatinBases[small - kFirstLatin];
  return base == 0 ? small : static_cast<char32_t>(base);
}

int sign(char32_t a, char32_t b) noexcept { return a < b ? -1 : a > b ? 1 : 0; }

// `accents`: what decides between texts of the same letters.
int compare(std::string_view a, std::string_view b, bool accents) noexcept {
  a = without_trailing_blanks(a);
  b = without_trailing_blanks(b);
  int accent = 0;
  std::size_t i = 0, j = 0;
  while (i < a.size() && j < b.size()) {
    const char32_t x = small_letter(a, i);
    const char32_t y = small_letter(b, j);
    if (x == y) continue;
    if (const int order = sign(base_letter(x), base_letter(y)); order != 0) return order;
    if (accent == 0) accent = sign(x, y);
  }
  if (i < a.size()) return 1;
  if (j < b.size()) return -1;
  return accents ? accent : 0;
}

template <int (*Compare)(std::string_view, std::string_view) noexcept>
int collate(void*, int a_size, const void* a, int b_size, const void* b) {
  return Compare({static_cast<const char*>(a), static_cast<std::size_t>(a_size)},
                 {static_cast<const char*>(b), static_cast<std::size_t>(b_size)});
}

// One element of a pattern that stands for exactly one character.
struct Element {
  std::size_t end = 0;  // where the next element begins
  bool matches = false;
};

// `at` is behind "[". A set that never closes matches nothing.
Element match_set(std::string_view p, std::size_t at, char32_t c) noexcept {
  Element element{p.size(), false};
  bool negated = false;
  if (at < p.size() && p[at] == '^') {
    negated = true;
    ++at;
  }
  bool inside = false;
  for (bool first = true; at < p.size(); first = false) {
    if (p[at] == ']' && !first) return {at + 1, inside != negated};
    const char32_t low = small_letter(p, at);
    char32_t high = low;
    if (at + 1 < p.size() && p[at] == '-' && p[at + 1] != ']') {
      ++at;
      high = small_letter(p, at);
    }
    inside = inside || (low <= c && c <= high);
  }
  return element;
}

Element match_one(std::string_view p, std::size_t at, char32_t escape, char32_t c) noexcept {
  if (p[at] == '_' && escape != U'_') return {at + 1, true};
  if (p[at] == '[' && escape != U'[') return match_set(p, at + 1, c);
  std::size_t end = at;
  char32_t own = small_letter(p, end);
  if (escape != 0 && own == escape && end < p.size()) own = small_letter(p, end);
  return {end, own == c};
}

bool is_any_text(std::string_view p, std::size_t at, char32_t escape) noexcept {
  return at < p.size() && p[at] == '%' && escape != U'%';
}

}  // namespace

int compare_texts(std::string_view a, std::string_view b) noexcept { return compare(a, b, true); }

int compare_texts_accent_blind(std::string_view a, std::string_view b) noexcept {
  return compare(a, b, false);
}

bool like(std::string_view p, std::string_view s, char32_t escape) noexcept {
  constexpr std::size_t kNone = std::string_view::npos;
  escape = text::lower_letter(escape);
  std::size_t pattern = 0, at = 0;
  std::size_t retry_pattern = kNone, retry_at = 0;  // behind the last "%", and where it ends so far
  while (at < s.size() || pattern < p.size()) {
    if (is_any_text(p, pattern, escape)) {
      retry_pattern = ++pattern;
      retry_at = at;
      continue;
    }
    if (at < s.size() && pattern < p.size()) {
      std::size_t next = at;
      const char32_t c = small_letter(s, next);
      const Element element = match_one(p, pattern, escape, c);
      if (element.matches) {
        pattern = element.end;
        at = next;
        continue;
      }
    }
    if (retry_pattern == kNone || retry_at >= s.size()) return false;
    small_letter(s, retry_at);
    pattern = retry_pattern;
    at = retry_at;
  }
  return true;
}

std::size_t find_case_blind(std::string_view s, std::string_view pattern, std::size_t from,
                            std::size_t& matched) noexcept {
  matched = 0;
  if (pattern.empty()) return std::string_view::npos;
  for (std::size_t start = from; start < s.size();) {
    std::size_t i = start, j = 0;
    while (i < s.size() && j < pattern.size()) {
      std::size_t next_i = i, next_j = j;
      if (small_letter(s, next_i) != small_letter(pattern, next_j)) break;
      i = next_i;
      j = next_j;
    }
    if (j == pattern.size()) {
      matched = i - start;
      return start;
    }
    small_letter(s, start);
  }
  return std::string_view::npos;
}

void register_collations(sqlite3* db) {
  sqlite3_create_collation(db, kCollation, SQLITE_UTF8, nullptr, collate<compare_texts>);
  sqlite3_create_collation(db, kAccentBlindCollation, SQLITE_UTF8, nullptr,
                           collate<compare_texts_accent_blind>);
}

}  // namespace pelm::ado::sqlite
