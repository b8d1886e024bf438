// The old outer-join operators, each in one pass over the text.
//
// The rules are told as "rewrite the first operator, then search again from the start". A pass from
// left to right gives the same text, because a rewriting never makes an operator further left than
// the byte before it: "=**" and "**=" are the cases where it makes one there.
#include "data/outer_joins.h"

#include <cstddef>
#include <string_view>
#include <utility>

#include "data/text_output.h"
#include "data/translation_rules.h"
#include "data/word_search.h"
#include "pelm/error.h"
#include "platform/value/text.h"
#include "platform/value/utf8.h"

namespace pelm::data {
namespace {

constexpr std::size_t kNowhere = std::string_view::npos;

constexpr WordSearch kAnd("AND");
constexpr WordSearch kOrderBy("ORDER BY");
constexpr WordSearch kGroupBy("GROUP BY");

std::size_t last_character_size(std::string_view s) noexcept {
  if (static_cast<unsigned char>(s.back()) < 0x80) return 1;
  for (std::size_t size = 4; size > 1; --size) {
    if (s.size() >= size && text::character_at(s, s.size() - size).size == size) return size;
  }
  return 1;
}

void put_repeated(TextOutput& out, std::string_view piece, std::size_t times) {
  for (; times > 0; --times) out.put(piece);
}

// The stars at the end of `out`, which now stand before a "=", are operators too.
std::size_t drop_stars(TextOutput& out) {
  std::size_t stars = 0;
  for (; out.text().ends_with('*'); ++stars) out.drop(1);
  return stars;
}

// Puts what follows a star that was dropped, without the stars of the operators in it, and
// returns how many those were. `rest` is empty or begins with the "=" of the dropped star.
std::size_t put_without_stars(TextOutput& out, std::string_view rest) {
  std::size_t stars = 0;
  while (!rest.empty()) {
    stars += drop_stars(out);
    const std::size_t next = rest.find(kLeftJoin, 1);
    out.put(rest.substr(0, next));
    if (next == kNowhere) break;
    ++stars;
    rest.remove_prefix(next + 1);
  }
  return stars;
}

// The same for a term that ends before some other text: its last character is lost.
std::size_t put_term(TextOutput& out, std::string_view term) {
  term.remove_suffix(last_character_size(term));
  return 1 + put_without_stars(out, term.substr(1));
}

// The state of a pass: `out` stands for sql[0, begin), rewritten.
struct Pass {
  TextOutput out;
  std::size_t begin = 0;
  /// Operators; each made the text before `begin` two characters longer.
  std::size_t rewritten = 0;

  void take(std::string_view sql, std::size_t end) {
    out.put(sql.substr(begin, end - begin));
    begin = end;
  }
};

// kept: the place of "order by" is the one before any rewriting, so after one it is some other
// place of the text, and each further operator is marked inside what the last one wrote.
void rewrite_up_to_place(std::string& sql, Pass& pass, std::size_t operator_at, std::size_t place) {
  const auto fail = [&] {
    pass.take(sql, sql.size());
    sql = std::move(pass.out).take();
    raise_error(error_number::kInvalidCall);
  };
  const std::string_view rest = std::string_view(sql).substr(pass.begin);
  if (place < pass.begin) fail();
  const std::size_t characters = text::length(rest.substr(0, place - pass.begin));
  if (characters < 2 * pass.rewritten) fail();
  const std::size_t end =
      pass.begin +
      text::left(rest, static_cast<std::int64_t>(characters - 2 * pass.rewritten)).size();
  if (end <= operator_at) fail();

  pass.take(sql, operator_at);
  if (end == operator_at + 1) {  // kept: the term is empty, so the star alone is lost
    pass.out.put("(+) ");
  } else {
    const std::string_view term = std::string_view(sql).substr(operator_at, end - operator_at);
    const std::size_t count = put_term(pass.out, term);
    put_repeated(pass.out, "(", count);
    pass.out.put("+");
    put_repeated(pass.out, ") ", count);
  }
  pass.begin = end;
  if (sql.find(kLeftJoin, end) != kNowhere) fail();  // that operator is after the place
}

}  // namespace

void rewrite_right_joins(std::string& sql) {
  if (sql.starts_with(kRightJoin)) raise_error(error_number::kInvalidCall);
  const std::string_view all = sql;
  TextOutput out(sql.size() + sql.size() / 2);
  std::size_t begin = 0;
  for (std::size_t at = all.find(kRightJoin); at != kNowhere; at = all.find(kRightJoin, begin)) {
    out.put(all.substr(begin, at - begin));
    out.drop(last_character_size(out.text()));  // kept: blank or not
    out.put("(+) =");
    begin = at + kRightJoin.size();
    for (; begin < all.size() && all[begin] == '*'; ++begin) {  // "=**": the new "=" has a star
      out.drop(2);
      out.put("(+) =");
    }
  }
  out.put(all.substr(begin));
  sql = std::move(out).take();
}

void rewrite_left_joins(std::string& sql) {
  Pass pass{TextOutput(sql.size() + sql.size() / 2)};
  for (std::size_t at = sql.find(kLeftJoin); at != kNowhere; at = sql.find(kLeftJoin, pass.begin)) {
    const std::size_t end = kAnd.find(sql, at);  // kept: "and" inside a word ends a term too
    if (end != kNowhere) {
      pass.take(sql, at);
      const std::size_t count = put_term(pass.out, std::string_view(sql).substr(at, end - at));
      put_repeated(pass.out, kOracleJoin, count);
      pass.out.put(" ");
      pass.begin = end;
      pass.rewritten += count;
      continue;
    }
    std::size_t place = kOrderBy.find(sql);
    if (place == kNowhere) place = kGroupBy.find(sql);
    if (place != kNowhere) {
      rewrite_up_to_place(sql, pass, at, place);
      break;
    }
    pass.take(sql, at);
    const std::size_t count = 1 + put_without_stars(pass.out, std::string_view(sql).substr(at + 1));
    put_repeated(pass.out, "(+) ", count);
    pass.begin = sql.size();
    break;
  }
  pass.take(sql, sql.size());
  sql = std::move(pass.out).take();
}

}  // namespace pelm::data
