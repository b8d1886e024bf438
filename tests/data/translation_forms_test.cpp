// Finding the forms: every form at every place of a text, and nothing where there is none.
#include "data/translation_forms.h"

#include <gtest/gtest.h>

#include <string>

namespace pelm::data {
namespace {

std::string small(std::string_view s) {
  std::string out(s);
  for (char& c : out) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return out;
}

// Calls `check` for the form between fillings that reach over the scan's blocks.
template <class Check>
void at_every_place(const std::string& form, Check check) {
  for (std::size_t before : {0U, 1U, 2U, 7U, 63U, 64U, 65U, 127U, 128U, 129U, 200U, 300U}) {
    for (std::size_t after : {0U, 1U, 63U, 64U, 130U}) {
      check(std::string(before, 'x') + form + std::string(after, 'x'));
    }
  }
}

TEST(FormsIn, FindsEachFunctionInAnyLetterCase) {
  for (std::size_t i = 0; i < kFunctionRules.size(); ++i) {
    const std::string form(kFunctionRules[i].opening);
    for (const std::string& written : {form, small(form)}) {
      at_every_place(written, [&](const std::string& text) {
        EXPECT_TRUE(forms_in(text).functions[i]) << text;
        EXPECT_FALSE(forms_in(text).left) << text;
      });
    }
    EXPECT_FALSE(forms_in(form.substr(1)).functions[i]) << form;
    EXPECT_FALSE(forms_in(form.substr(0, form.size() - 1)).functions[i]) << form;
  }
}

TEST(FormsIn, FindsEachConcatenationInItsOwnLetterCaseOnly) {
  for (std::size_t i = 0; i < kConcatenations.size(); ++i) {
    const std::string form(kConcatenations[i].find);
    at_every_place(form, [&](const std::string& text) {
      const Forms forms = forms_in(text);
      EXPECT_TRUE(forms.concatenations[i]) << text;
      EXPECT_EQ(forms.concatenations.count(), 1U) << text;
    });
    EXPECT_FALSE(forms_in(form.substr(1)).any()) << form;
    EXPECT_FALSE(forms_in(form.substr(0, form.size() - 1)).any()) << form;
  }
  EXPECT_FALSE(forms_in("Space( SPACE( +Ltrim('')+").any());
}

TEST(FormsIn, FindsJoinsAndLeft) {
  at_every_place("=*", [](const std::string& text) { EXPECT_TRUE(forms_in(text).right_join); });
  at_every_place("*=", [](const std::string& text) { EXPECT_TRUE(forms_in(text).left_join); });
  at_every_place("lEFt(", [](const std::string& text) { EXPECT_TRUE(forms_in(text).left); });
  const Forms both = forms_in("=*=");
  EXPECT_TRUE(both.left_join && both.right_join);
}

TEST(FormsIn, FindsNothingInOrdinaryStatements) {
  for (const char* sql :
       {"", "(", "*", "+", ")", "select count(*) from t where (a = 1) and b in (1, 2)",
        "select a + b, ' ', '' from t left join u on (t.a = u.a)", "eft(", "getdate ()"}) {
    EXPECT_FALSE(forms_in(sql).any()) << sql;
  }
}

TEST(FormsIn, FindsAFormBehindVeryManyOthers) {
  const std::string text = std::string(10'000, '(') + std::string(10'000, 'x') + "isnull(";
  EXPECT_EQ(forms_in(text).functions.count(), 1U);
}

}  // namespace
}  // namespace pelm::data
