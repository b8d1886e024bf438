// One round of each rule of the translation to Oracle, and the whole where it ends.
#include "data/function_rules.h"
#include "data/outer_joins.h"
#include "data/sql_translation.h"
#include "data/translation_rules.h"
#include "fuzz/fuzzing.h"
#include "pelm/error.h"

namespace {

template <class Call>
void may_be_refused(Call call) {
  try {
    call();
  } catch (const pelm::Error& error) {
    pelm::fuzz::require(error.number() == pelm::error_number::kInvalidCall);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelm::data;
  const std::string_view sql = pelm::fuzz::text_of(data, size);
  for (const FunctionRule& rule : kFunctionRules) static_cast<void>(rule_round(rule, sql));
  std::string text(sql);
  may_be_refused([&] { rewrite_right_joins(text); });
  text = sql;
  may_be_refused([&] { rewrite_left_joins(text); });
  const bool ends = translation_ends(sql);
  pelm::fuzz::require(ends == !endless_form(sql));
  text = sql;
  if (ends) may_be_refused([&] { translate_sql(text, "ORACLE"); });
  text = sql;
  translate_sql(text, "SQLSERVER");
  pelm::fuzz::require(text == sql);
  return 0;
}
