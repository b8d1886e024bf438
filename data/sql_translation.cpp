// The translation, step by step.
#include "data/sql_translation.h"

#include <chrono>
#include <cstddef>
#include <thread>
#include <utility>

#include "data/function_rules.h"
#include "data/outer_joins.h"
#include "data/text_output.h"
#include "data/translation_forms.h"
#include "data/translation_rules.h"
#include "data/word_search.h"
#include "pelm/error.h"
#include "platform/value/text.h"

namespace pelm::data {
namespace {

constexpr std::string_view kSqlServer = "SQLSERVER";
constexpr std::size_t kNowhere = std::string_view::npos;

constexpr WordSearch kLeftSearch(kLeft);

// Each "Left(" gives its comma ", 1" in front of it; an argument with "Left(" in it gives its own
// comma one for each.
void rewrite_left(std::string& sql) {
  const std::string_view all = sql;
  TextOutput out(sql.size() + sql.size() / 2);
  std::size_t begin = 0;
  for (std::size_t at = kLeftSearch.find(all); at != kNowhere;) {
    const std::size_t comma = all.find(',', at);  // kept: the first comma, whatever its nesting
    if (comma == kNowhere) raise_error(error_number::kInvalidCall);
    std::size_t open = 0;
    for (; at < comma; at = kLeftSearch.find(all, begin)) {  // nowhere is behind every place
      out.put(all.substr(begin, at - begin));
      out.put(kOracleLeft);
      begin = at + kLeft.size();
      ++open;
    }
    out.put(all.substr(begin, comma - begin));
    for (; open > 0; --open) out.put(", 1");
    begin = comma;
  }
  out.put(all.substr(begin));
  sql = std::move(out).take();
}

// Returns the rule whose rounds never end for the text that `sql` then holds; null when all do.
const FunctionRule* rewrite_for_oracle(std::string& sql) {
  Forms forms = forms_in(sql);
  if (!forms.any()) return nullptr;

  if (forms.right_join) {
    rewrite_right_joins(sql);
    forms = forms_in(sql);
  }
  if (forms.left_join) {
    rewrite_left_joins(sql);
    forms = forms_in(sql);
  }
  for (std::size_t i = 0; i < kConcatenations.size(); ++i) {
    if (!forms.concatenations[i]) continue;
    sql = text::replace_all(sql, kConcatenations[i].find, kConcatenations[i].with);
  }
  for (std::size_t i = 0; i < kFunctionRules.size(); ++i) {
    if (!forms.functions[i]) continue;
    std::optional<std::string> rewritten = all_rounds(kFunctionRules[i], sql);
    if (!rewritten) return &kFunctionRules[i];
    sql = *std::move(rewritten);
    forms = forms_in(sql);  // a rule may put the parts of a later one together
  }
  if (forms.left) rewrite_left(sql);
  return nullptr;
}

// kept: nothing stops the rounds of a rule that finds no target. The sleep spares the processor.
[[noreturn]] void repeat_for_ever(const FunctionRule& rule, std::string& sql) {
  for (;;) {
    sql = rule_round(rule, sql);
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

}  // namespace

bool translate_sql(std::string& sql, std::string_view server) {
  if (server == kSqlServer) return true;
  if (const FunctionRule* endless = rewrite_for_oracle(sql)) repeat_for_ever(*endless, sql);
  return true;
}

std::optional<std::string_view> endless_form(std::string_view sql) {
  std::string text(sql);
  try {
    if (const FunctionRule* endless = rewrite_for_oracle(text)) return endless->opening;
  } catch (const Error&) {  // an error ends it
  }
  return std::nullopt;
}

bool translation_ends(std::string_view sql) { return !endless_form(sql); }

}  // namespace pelm::data
