// The server's functions of texts.
#include <algorithm>
#include <array>

#include "platform/ado/sqlite/collation.h"
#include "platform/ado/sqlite/functions.h"
#include "platform/value/text.h"
#include "platform/value/utf8.h"

namespace pelm::ado::sqlite {
namespace {

constexpr std::int64_t kLongestText = 8'000'000;  // REPLICATE and SPACE stop here

std::int64_t characters(std::string_view s) { return static_cast<std::int64_t>(text::length(s)); }

std::int64_t length_argument(const FunctionCall& c, std::size_t i, const char* function) {
  const std::int64_t n = c.whole(i);
  if (n < 0) {
    throw FunctionError{SQLITE_ERROR, std::string("Invalid length parameter passed to the ") +
                                          function + " function."};
  }
  return n;
}

// Kept: blanks at the end do not count.
void len(FunctionCall& c) {
  std::string_view s = c.text(0);
  while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
  c.give(characters(s));
}

void datalength(FunctionCall& c) { c.give(characters(c.text(0))); }
void left(FunctionCall& c) {
  c.give(std::string_view(text::left(c.text(0), length_argument(c, 1, "left"))));
}
void right(FunctionCall& c) {
  c.give(std::string_view(text::right(c.text(0), length_argument(c, 1, "right"))));
}

// A start before the text takes from the length what stands before it.
void substring(FunctionCall& c) {
  std::int64_t start = c.whole(1);
  std::int64_t count = length_argument(c, 2, "substring");
  if (start < 1) {
    count = std::max<std::int64_t>(0, count + std::max<std::int64_t>(start, -count) - 1);
    start = 1;
  }
  c.give(std::string_view(text::mid(c.text(0), start, count)));
}

void charindex(FunctionCall& c) {
  if (c.text(0).empty()) return c.give(std::int64_t{0});
  const std::string_view s = c.text(1);
  const std::int64_t start = c.count() > 2 ? std::max<std::int64_t>(1, c.whole(2)) : 1;
  c.give(text::instr(start, s, c.text(0), text::Compare::CaseBlind));
}

// PATINDEX('%pattern%', text): the position at which the pattern fits.
void patindex(FunctionCall& c) {
  std::string_view pattern = c.text(0);
  const std::string_view s = c.text(1);
  const bool anywhere = !pattern.empty() && pattern.front() == '%';
  if (anywhere) pattern.remove_prefix(1);
  std::int64_t position = 1;
  for (std::size_t at = 0;; ++position) {
    if (like(pattern, s.substr(at), 0)) return c.give(position);
    if (!anywhere || at >= s.size()) return c.give(std::int64_t{0});
    at += text::character_at(s, at).size;
  }
}

void upper(FunctionCall& c) { c.give(std::string_view(text::upper(c.text(0)))); }
void lower(FunctionCall& c) { c.give(std::string_view(text::lower(c.text(0)))); }

// Kept: finds without case, as the server's collation does.
void replace(FunctionCall& c) {
  const std::string_view s = c.text(0);
  std::string out;
  std::size_t from = 0, matched = 0;
  for (std::size_t at = find_case_blind(s, c.text(1), 0, matched); at != std::string_view::npos;
       at = find_case_blind(s, c.text(1), from, matched)) {
    out.append(s, from, at - from);
    out += c.text(2);
    from = at + matched;
  }
  out.append(s, from);
  c.give(std::string_view(out));
}

void stuff(FunctionCall& c) {
  const std::string_view s = c.text(0);
  const std::int64_t start = c.whole(1);
  const std::int64_t count = c.whole(2);
  if (start < 1 || count < 0 || start > characters(s)) return c.give_null();
  const std::int64_t behind = std::min(characters(s), start - 1 + std::min(count, characters(s)));
  c.give(std::string_view(text::left(s, start - 1) + std::string(c.text(3)) +
                          text::mid(s, behind + 1)));
}

void replicate(FunctionCall& c) {
  const std::int64_t times = c.whole(1);
  if (times < 0) return c.give_null();
  const auto size = static_cast<std::int64_t>(c.text(0).size());
  if (size > 0 && times > kLongestText / size) {
    throw FunctionError{SQLITE_TOOBIG, "The text that REPLICATE would give is too long."};
  }
  std::string out;
  for (std::int64_t i = 0; i < times; ++i) out += c.text(0);
  c.give(std::string_view(out));
}

void space(FunctionCall& c) {
  const std::int64_t count = c.whole(0);
  if (count < 0) return c.give_null();
  c.give(
      std::string_view(std::string(static_cast<std::size_t>(std::min(count, kLongestText)), ' ')));
}

void reverse(FunctionCall& c) {
  const std::string_view s = c.text(0);
  std::string out;
  out.reserve(s.size());
  std::size_t at = 0;
  while (at < s.size()) {
    const std::size_t size = text::character_at(s, at).size;
    out.insert(0, s.substr(at, size));
    at += size;
  }
  c.give(std::string_view(out));
}

void ascii(FunctionCall& c) {
  const std::string_view s = c.text(0);
  if (s.empty()) return c.give_null();
  c.give(static_cast<std::int64_t>(text::character_at(s, 0).code));
}

// The engine calls this for "text LIKE pattern": pattern first.
void like_operator(FunctionCall& c) {
  char32_t escape = 0;
  if (c.count() > 2) {
    if (text::length(c.text(2)) != 1) {
      throw FunctionError{SQLITE_ERROR, "ESCAPE takes one character"};
    }
    escape = text::character_at(c.text(2), 0).code;
  }
  c.give(std::int64_t{like(c.text(0), c.text(1), escape) ? 1 : 0});
}

constexpr std::array kFunctions = {
    function<len>("len", 1),
    function<datalength>("datalength", 1),
    function<left>("left", 2),
    function<right>("right", 2),
    function<substring>("substring", 3),
    function<charindex>("charindex", 2),
    function<charindex>("charindex", 3),
    function<patindex>("patindex", 2),
    function<upper>("upper", 1),
    function<lower>("lower", 1),
    function<replace>("replace", 3),
    function<stuff>("stuff", 4),
    function<replicate>("replicate", 2),
    function<space>("space", 1),
    function<reverse>("reverse", 1),
    function<ascii>("ascii", 1),
    function<like_operator>("like", 2),
    function<like_operator>("like", 3),
};

}  // namespace

std::span<const Function> text_functions() { return kFunctions; }

}  // namespace pelm::ado::sqlite
