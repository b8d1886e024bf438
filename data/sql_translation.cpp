// The translation, step by step.
#include "data/sql_translation.h"

#include <chrono>
#include <cstddef>
#include <thread>
#include <utility>

#include "data/function_rules.h"
#include "data/outer_joins.h"
#include "data/translation_forms.h"
#include "data/translation_rules.h"
#include "pelm/error.h"
#include "platform/value/text.h"

namespace pelm::data {
namespace {

constexpr std::string_view kSqlServer = "SQLSERVER";

// Each "Left(" gives its comma ", 1" in front of it; an argument with "Left(" in it gives its own
// comma one for each.
void rewrite_left(std::string& sql) {
  std::string out;
  out.reserve(sql.size() + sql.size() / 2);
  std::size_t begin = 0;
  std::size_t open = 0;  // since the last comma
  const auto take = [&](std::size_t end, std::size_t next) {
    out.append(sql, begin, end - begin);
    begin = next;
  };
  for (std::size_t at = 0; at < sql.size(); ++at) {
    if (sql[at] == ',' && open > 0) {  // kept: the first comma, whatever its nesting
      take(at, at);
      for (; open > 0; --open) out.append(", 1");
    } else if (sql[at] == '(' && at + 1 >= kLeft.size() &&
               stands_at(sql, at + 1 - kLeft.size(), kLeft)) {
      take(at + 1 - kLeft.size(), at + 1);
      out.append(kOracleLeft);
      ++open;
    }
  }
  if (open > 0) raise_error(error_number::kInvalidCall);
  take(sql.size(), sql.size());
  sql = std::move(out);
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
