// The rules for functions and conversions.
#include "data/function_rules.h"

#include <algorithm>
#include <cstdint>

#include "data/text_output.h"
#include "platform/value/text.h"

namespace pelm::data {
namespace {

using text::Compare;

constexpr std::size_t kNowhere = std::string_view::npos;

// Rules that close with one ")". The argument takes that ")" with it, so a rewriting needs a
// second one right after it. Nested openings share their first ")": the outer one is rewritten
// first, and what it leaves after the ")" decides whether the inner one can follow.
std::optional<std::string> all_rounds_to_parenthesis(const FunctionRule& rule,
                                                     const std::string& sql) {
  const std::string_view all = sql;
  const bool same_closing = rule.oracle_closing == rule.closing;
  TextOutput out(sql.size() + sql.size() / 2);
  std::size_t begin = 0;
  for (std::size_t at = all.find(rule.opening); at != kNowhere;) {
    const std::size_t close = all.find(')', at);
    if (close == kNowhere) return std::nullopt;
    const std::size_t after = std::min(all.find_first_not_of(')', close), all.size());
    const std::size_t parentheses = after - close;

    std::size_t nested = 0;
    for (; at < close; at = all.find(rule.opening, begin)) {  // nowhere is behind every place
      out.put(all.substr(begin, at - begin));
      out.put(rule.oracle_opening);
      begin = at + rule.opening.size();
      ++nested;
    }
    const bool ends = rule.oracle_closing.empty()
                          ? parentheses > nested  // each rewriting takes one away
                          : parentheses > 1 && (nested == 1 || same_closing);
    if (!ends) return std::nullopt;

    if (!same_closing) {
      out.put(all.substr(begin, close + 1 - begin));
      out.put(rule.oracle_closing);
      begin = close + 1 + nested;
    }
  }
  out.put(all.substr(begin));
  return std::move(out).take();
}

}  // namespace

std::string rule_round(const FunctionRule& rule, std::string_view sql) {
  const std::string capitals = text::upper(sql);
  const std::int64_t at = text::instr(1, capitals, rule.opening, Compare::CaseBlind);
  if (at == 0) return std::string(sql);

  const std::string rest = text::mid(sql, at + static_cast<std::int64_t>(rule.opening.size()));
  const std::int64_t close =
      rule.closing.empty() ? 1 : text::instr(1, rest, rule.closing, Compare::CaseBlind);
  const std::string argument = text::left(rest, close);  // kept: in the letter case it had

  const auto around = [&](std::string_view opening, std::string_view closing) {
    return std::string(opening).append(argument).append(closing);
  };
  return text::replace_all(capitals, around(rule.opening, rule.closing),
                           around(rule.oracle_opening, rule.oracle_closing));
}

std::optional<std::string> all_rounds(const FunctionRule& rule, std::string_view sql) {
  // A rewriting needs the closing form again right after its own first character. No closing form
  // of several characters begins with the same character twice, so the first opening of such a
  // rule stays where it is for ever, whatever the rounds do to later ones.
  if (rule.closing.size() > 1) return std::nullopt;

  // The first round at the latest makes everything capitals; from then on, an opening without a
  // closing is rewritten wherever it stands.
  const std::string capitals = text::upper(sql);
  if (rule.closing.empty()) {
    return text::replace_all(capitals, rule.opening, rule.oracle_opening);
  }
  return all_rounds_to_parenthesis(rule, capitals);
}

}  // namespace pelm::data
