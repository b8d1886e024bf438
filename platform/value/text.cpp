// Text by characters.
#include "platform/value/text.h"

#include <algorithm>
#include <cstring>

#include "pelm/error.h"
#include "platform/value/case_map.h"
#include "platform/value/utf8.h"

namespace pelm::text {

std::size_t ascii_prefix(std::string_view s) noexcept {
  using Word = std::uint64_t;
  constexpr Word kHighBits = 0x8080808080808080U;
  const auto high_bits = [&](std::size_t at) {
    Word word = 0;
    std::memcpy(&word, s.data() + at, sizeof word);
    return word & kHighBits;
  };
  std::size_t at = 0;
  if (s.size() >= sizeof(Word)) {
    const std::size_t last = s.size() - sizeof(Word);
    const auto all_ascii = [&](std::size_t from) {
      return (high_bits(from) | high_bits(from + 8) | high_bits(from + 16) |
              high_bits(from + 24)) == 0;
    };
    while (at + 3 * sizeof(Word) <= last && all_ascii(at)) at += 4 * sizeof(Word);
    while (at < last && high_bits(at) == 0) at += sizeof(Word);
    at = std::min(at, last);  // the last word may begin before the place that is reached
    if (high_bits(at) == 0) return s.size();
  }
  while (at < s.size() && static_cast<unsigned char>(s[at]) < 0x80) ++at;
  return at;
}

namespace {

// The byte where character `count` (from 0) begins; the size of `s` when it has fewer.
std::size_t byte_of(std::string_view s, std::uint64_t count) noexcept {
  std::size_t at = 0;
  while (count > 0 && at < s.size()) {
    const std::size_t ascii = ascii_prefix(
        s.substr(at, static_cast<std::size_t>(std::min<std::uint64_t>(count, s.size() - at))));
    at += ascii;
    count -= ascii;
    if (count > 0 && at < s.size()) {
      at += character_at(s, at).size;
      --count;
    }
  }
  return at;
}

void require_call(bool valid) {
  if (!valid) raise_error(error_number::kInvalidCall);
}

std::uint64_t checked_count(std::int64_t count) {
  require_call(count >= 0);
  return static_cast<std::uint64_t>(count);
}

std::string_view from_character(std::string_view s, std::int64_t start) {
  require_call(start >= 1);
  return s.substr(byte_of(s, static_cast<std::uint64_t>(start - 1)));
}

struct Place {
  std::size_t byte;
  std::size_t characters;  ///< Whole characters before it, counted from where the search began.
};

constexpr std::size_t kNowhere = std::string_view::npos;

// The first `pattern` (not empty) in `s` whose ends are ends of characters: an invalid pattern
// may not match the inside of a valid character.
Place find(std::string_view s, std::string_view pattern) noexcept {
  std::size_t walked = 0;
  std::size_t characters = 0;
  const auto walk_to = [&](std::size_t byte) {
    while (walked < byte) {
      const std::size_t ascii = ascii_prefix(s.substr(walked, byte - walked));
      walked += ascii;
      characters += ascii;
      if (walked < byte) {
        walked += character_at(s, walked).size;
        ++characters;
      }
    }
    return walked == byte;
  };

  for (std::size_t hit = s.find(pattern); hit != kNowhere; hit = s.find(pattern, hit + 1)) {
    if (!walk_to(hit)) continue;
    std::size_t end = hit;
    while (end < hit + pattern.size()) end += character_at(s, end).size;
    if (end == hit + pattern.size()) return {hit, characters};
  }
  return {kNowhere, 0};
}

// ASCII letters from `first` on change their case bit; a block of fixed size at a time, which the
// compiler puts on vectors.
void change_case(char* at, char* end, char first) noexcept {
  constexpr std::ptrdiff_t kBlock = 32;
  const auto changed = [first](char c) {
    const bool letter = static_cast<unsigned char>(c - first) < 26;
    return static_cast<char>(c ^ (letter ? 0x20 : 0));
  };
  for (; end - at >= kBlock; at += kBlock) {
    for (std::ptrdiff_t i = 0; i < kBlock; ++i) at[i] = changed(at[i]);
  }
  for (; at != end; ++at) *at = changed(*at);
}

template <class MapLetter>
std::string mapped(std::string_view s, char first, MapLetter map_letter) {
  std::string out;
  out.reserve(s.size());
  for (std::size_t at = 0; at < s.size();) {
    const std::string_view ascii = s.substr(at, ascii_prefix(s.substr(at)));
    out.append(ascii);
    at += ascii.size();
    change_case(out.data() + out.size() - ascii.size(), out.data() + out.size(), first);
    if (at == s.size()) break;

    const Character c = character_at(s, at);
    if (c.valid) {
      append_character(out, map_letter(c.code));
    } else {
      out.push_back(s[at]);
    }
    at += c.size;
  }
  return out;
}

}  // namespace

std::size_t length(std::string_view s) noexcept {
  std::size_t count = 0;
  for (std::size_t at = 0; at < s.size();) {
    const std::size_t ascii = ascii_prefix(s.substr(at));
    at += ascii;
    count += ascii;
    if (at < s.size()) {
      at += character_at(s, at).size;
      ++count;
    }
  }
  return count;
}

std::string left(std::string_view s, std::int64_t count) {
  return std::string(s.substr(0, byte_of(s, checked_count(count))));
}

std::string right(std::string_view s, std::int64_t count) {
  const std::uint64_t wanted = checked_count(count);
  const std::uint64_t total = length(s);
  return std::string(s.substr(wanted >= total ? 0 : byte_of(s, total - wanted)));
}

std::string mid(std::string_view s, std::int64_t start) {
  return std::string(from_character(s, start));
}

std::string mid(std::string_view s, std::int64_t start, std::int64_t count) {
  require_call(count >= 0);
  return left(from_character(s, start), count);
}

std::int64_t instr(std::int64_t start, std::string_view s, std::string_view pattern,
                   Compare compare) {
  require_call(start >= 1);
  if (s.empty()) return 0;
  if (pattern.empty()) return start;  // kept: even past the end of `s`
  const std::string_view rest = from_character(s, start);
  // A letter maps to one letter, so a position in the mapped text is one in the text.
  const Place place =
      compare == Compare::Exact ? find(rest, pattern) : find(lower(rest), lower(pattern));
  return place.byte == kNowhere ? 0 : start + static_cast<std::int64_t>(place.characters);
}

std::string upper(std::string_view s) { return mapped(s, 'a', upper_letter); }

std::string lower(std::string_view s) { return mapped(s, 'A', lower_letter); }

bool detail::equal_case_blind(std::string_view a, std::string_view b) noexcept {
  // Most names have no accent: as long as neither has one, bytes are letters.
  std::size_t plain = 0;
  for (const std::size_t both = std::min(a.size(), b.size()); plain < both; ++plain) {
    const auto x = static_cast<unsigned char>(a[plain]);
    const auto y = static_cast<unsigned char>(b[plain]);
    if (x >= 0x80 || y >= 0x80) break;
    if (x != y && lower_letter(x) != lower_letter(y)) return false;
  }
  a.remove_prefix(plain);
  b.remove_prefix(plain);
  while (!a.empty() && !b.empty()) {
    const Character x = character_at(a, 0);
    const Character y = character_at(b, 0);
    const bool same = x.valid && y.valid ? lower_letter(x.code) == lower_letter(y.code)
                                         : x.valid == y.valid && x.code == y.code;
    if (!same) return false;
    a.remove_prefix(x.size);
    b.remove_prefix(y.size);
  }
  return a.empty() && b.empty();
}

std::string_view trim(std::string_view s) noexcept {
  while (!s.empty() && s.front() == ' ') s.remove_prefix(1);
  while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
  return s;
}

std::string replace_all(std::string_view s, std::string_view pattern, std::string_view with) {
  std::string out;
  out.reserve(s.size());
  const bool ascii = ascii_prefix(pattern) == pattern.size();  // it stands inside no character
  while (!pattern.empty()) {
    const std::size_t hit = ascii ? s.find(pattern) : find(s, pattern).byte;
    if (hit == kNowhere) break;
    out.append(s.substr(0, hit)).append(with);
    s.remove_prefix(hit + pattern.size());
  }
  out.append(s);
  return out;
}

}  // namespace pelm::text
