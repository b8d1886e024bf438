// The translation's forms, blind spots, failures and texts that never end, case by case.
#include "data/sql_translation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "data/function_rules.h"
#include "data/translation_rules.h"
#include "pelm/error.h"
#include "platform/value/text.h"

namespace pelm::data {

// Found by the test framework, which looks in the namespace of the type.
static void PrintTo(const FunctionRule& rule, std::ostream* out) { *out << rule.opening; }

namespace {

struct Case {
  std::string name;
  std::string sql;
  std::string oracle;
};

void PrintTo(const Case& tested, std::ostream* out) { *out << tested.name; }

std::string name_of(const ::testing::TestParamInfo<Case>& tested) { return tested.param.name; }

class TranslateSql : public ::testing::TestWithParam<Case> {};

TEST_P(TranslateSql, GivesTheOracleText) {
  SCOPED_TRACE(GetParam().sql);
  std::string sql = GetParam().sql;
  ASSERT_TRUE(translation_ends(sql));
  EXPECT_TRUE(translate_sql(sql, "Oracle"));
  EXPECT_EQ(sql, GetParam().oracle);
}

INSTANTIATE_TEST_SUITE_P(
    RightJoin, TranslateSql,
    ::testing::Values(Case{"DropsTheBlankBefore", "select a from t where x =* y",
                           "select a from t where x(+) = y"},
                      Case{"OfTwoTables", "a.x =* b.y", "a.x(+) = b.y"},
                      Case{"Twice", "a =* b and c =* d", "a(+) = b and c(+) = d"},
                      Case{"DropsAnyCharacterBefore", "a.x=*b.y", "a.(+) =b.y"},
                      Case{"DropsAWholeAccentedCharacter", "ação=*b", "açã(+) =b"},
                      Case{"AtTheSecondCharacter", " =* y", "(+) = y"},
                      Case{"AStarAfterItIsAnotherOperator", "x =** y", "x(+)(+) = y"},
                      Case{"AnEqualSignBeforeItIsLost", "x ==* y", "x (+) = y"},
                      Case{"InsideAQuotedText", "select 'a =* b'", "select 'a(+) = b'"}),
    name_of);

INSTANTIATE_TEST_SUITE_P(
    LeftJoin, TranslateSql,
    ::testing::Values(
        Case{"EndsBeforeAnd", "a.x *= b.y and c = 1", "a.x = b.y(+) and c = 1"},
        Case{"EndsBeforeAndInAnyCase", "a.x *= b.y AND c = 1", "a.x = b.y(+) AND c = 1"},
        Case{"AndWinsOverOrderBy",
             "select a from t1, t2 where t1.k *= t2.k and t2.f = 1 order by a",
             "select a from t1, t2 where t1.k = t2.k(+) and t2.f = 1 order by a"},
        Case{"EndsBeforeOrderBy", "a *= b order by c", "a = b(+) order by c"},
        Case{"EndsBeforeGroupBy", "a *= b Group By c", "a = b(+) Group By c"},
        Case{"OrderByWinsOverAnEarlierGroupBy", "a *= b group by c order by d",
             "a = b group by c(+) order by d"},
        Case{"EndsWithTheText", "where a *= b", "where a = b(+) "},
        Case{"AndInsideAWordEndsIt", "a *= t.brand_id order by b", "a = t.b(+) and_id order by b"},
        Case{"AndInsideAQuotedTextEndsIt", "a *= 'Sandra'", "a = '(+) andra'"},
        Case{"DropsTheCharacterBeforeAnd", "a *= (b)and c", "a = (b(+) and c"},
        Case{"DropsAWholeAccentedCharacterBeforeAnd", "a *= são and sã\u00E9and c",
             "a = são(+) and sã\u00E9and c"},
        Case{"AccentedCharactersCountOnce", "é *= çã order by ü", "é = çã(+) order by ü"},
        Case{"WithNothingBeforeAnd", "a *=and b", "a (+) and b"},
        Case{"TwiceBeforeOneAnd", "a *= b *= c and d", "a = b = c(+)(+) and d"},
        Case{"OncePerAnd", "a *= b and c *= d and e", "a = b(+) and c = d(+) and e"},
        Case{"TwiceToTheEnd", "a *= b, c *= d", "a = b, c = d(+) (+) "},
        Case{"AStarBeforeItIsAnotherOperator", "a **= b and c", "a = b(+)(+) and c"},
        Case{"TheOldPlaceOfOrderByIsKept", "a *= b and c *= d order by e",
             "a = b(+) and c =(+) d order by e"},
        Case{"TheStarAloneIsLostWhereTheOldPlaceCutsTheOperator",
             "a *= b and c *= d and e *= f order by g",
             "a = b(+) and c = d(+) and e (+) = f order by g"},
        Case{"TheNextOperatorIsMarkedInsideTheLastMark", "a *= b, c *= d order by e",
             "a = b, c = d((+) ) order by e"},
        Case{"ThreeOperatorsNestTheirMarks", "a *= b, c *= d, e *= f order by g",
             "a = b, c = d, e = f(((+) ) ) order by g"}),
    name_of);

INSTANTIATE_TEST_SUITE_P(
    Concatenation, TranslateSql,
    ::testing::Values(Case{"OfABlank", "select nome+' '+sobrenome from p",
                           "select nome || ' ' || sobrenome from p"},
                      Case{"OfAnEmptyTextBecomesABlank", "a+''+b", "a || ' ' || b"},
                      Case{"OfABlankSpacedOut", "a+ ' ' +b", "a || ' ' || b"},
                      Case{"OfAnEmptyTextSpacedOut", "a+ '' +b", "a || ' ' || b"},
                      Case{"OfLtrim", "a+LTRIM('')+b", "a || LTRIM('') || b"},
                      Case{"OfSmallLtrim", "a+ltrim('')+b", "a || LTRIM('') || b"},
                      Case{"OfMixedLtrimStays", "a+Ltrim('')+b", "a+Ltrim('')+b"},
                      Case{"UnevenlySpacedStays", "a+' ' + b", "a+' ' + b"},
                      Case{"OfTwoColumnsStays", "a + b", "a + b"},
                      Case{"NeighboursShareNoPlus", "a+' '+' '+b", "a || ' ' || ' '+b"},
                      Case{"Space", "select space(10)", "select  rpad('z',10)"},
                      Case{"CapitalSpaceStays", "select SPACE(10)", "select SPACE(10)"},
                      Case{"SpaceInsideAWord", "myspace(1)", "my rpad('z',1)"}),
    name_of);

INSTANTIATE_TEST_SUITE_P(
    Function, TranslateSql,
    ::testing::Values(
        Case{"Isnull", "select isnull(a,0) from t", "SELECT NVL(A,0) FROM T"},
        Case{"Substring", "select substring(nome,1,2) from t", "SELECT SUBSTR(NOME,1,2) FROM T"},
        Case{"IsnullInIsnull", "IsNull(isnull(a,b),c)", "NVL(NVL(A,B),C)"},
        Case{"IsnullAtTheEnd", "select isnull(", "SELECT NVL("},
        Case{"QuotedTextsBecomeCapitalsToo", "select isnull(a,'não')", "SELECT NVL(A,'NÃO')"},
        Case{"InsideAWord", "select fisnull(a)", "SELECT FNVL(A)"},
        Case{"NoRuleKeepsTheLetterCase", "select getdate from t", "select getdate from t"},
        Case{"DatepartHour", "f(datepart(hh,x))", "F(TO_NUMBER(TO_CHAR(X), 'HH24'))"},
        Case{"DatepartDay", "(DATEPART(DD,a.b))", "(TO_NUMBER(TO_CHAR(A.B), 'DD'))"},
        Case{"DatepartMonth", "(datepart(MM,x))", "(TO_NUMBER(TO_CHAR(X), 'MM'))"},
        Case{"DatepartYear", "(Datepart(Yy,x))", "(TO_NUMBER(TO_CHAR(X), 'YY'))"},
        Case{"GetdateTakesAParenthesis", "values(1,getdate())", "VALUES(1,SYSDATE)"},
        Case{"GetdateInGetdate", "f(getdate(getdate()))", "F(SYSDATESYSDATE)"},
        Case{"ConvertInteger", "(convert(integer,a))", "(TO_NUMBER(A))"},
        Case{"ConvertIntegerInItself", "(convert(integer,convert(integer,a)))",
             "(TO_NUMBER(TO_NUMBER(A)))"},
        Case{"ConvertMoney", "(convert(money,a))", "(TO_NUMBER(A))"},
        Case{"ConvertFloat", "(convert(float,a))", "(TO_NUMBER(A))"},
        Case{"DatepartOfAFunction", "datepart(mm,f(x))", "TO_NUMBER(TO_CHAR(F(X), 'MM'))"},
        Case{"ABlankInTheOpeningStays", "convert( money,a)convert (money,b)",
             "convert( money,a)convert (money,b)"}),
    name_of);

INSTANTIATE_TEST_SUITE_P(
    Left, TranslateSql,
    ::testing::Values(Case{"KeepsTheLetterCase", "select left(nome, 3) from t",
                           "select SubStr(nome, 1, 3) from t"},
                      Case{"InCapitals", "LEFT(NOME, 3)", "SubStr(NOME, 1, 3)"},
                      Case{"TakesTheFirstComma", "left(f(a,b), 3)", "SubStr(f(a, 1,b), 3)"},
                      Case{"InLeft", "left(left(a,1),2)", "SubStr(SubStr(a, 1, 1,1),2)"},
                      Case{"Twice", "left(a,1)+left(b,2)", "SubStr(a, 1,1)+SubStr(b, 1,2)"},
                      Case{"WithoutAnArgument", "left(,1)", "SubStr(, 1,1)"},
                      Case{"InsideAWord", "select upleft(a,1)", "select upSubStr(a, 1,1)"},
                      Case{"AfterAnotherRule", "left(isnull(a,b),3)", "SubStr(NVL(A, 1,B),3)"},
                      Case{"JoinsAreLeftAlone", "a left outer join b", "a left outer join b"}),
    name_of);

INSTANTIATE_TEST_SUITE_P(Nothing, TranslateSql,
                         ::testing::Values(Case{"EmptyText", "", ""},
                                           Case{"PlainText", "select * from item where OID = 7",
                                                "select * from item where OID = 7"},
                                           Case{"NoValidCharacters", "\xC3\xFF(\x80*",
                                                "\xC3\xFF(\x80*"}),
                         name_of);

TEST(TranslateSqlServer, IsLeftAloneInCapitalsOnly) {
  std::string sql = "select isnull(a,0) from t where x =* y and getdate() > z";
  const std::string before = sql;
  EXPECT_TRUE(translate_sql(sql, "SQLSERVER"));
  EXPECT_EQ(sql, before);

  for (const char* server : {"SqlServer", "sqlserver", "SQLSERVER ", "", "Oracle", "ORACLE"}) {
    std::string other = "select isnull(a,0)";
    EXPECT_TRUE(translate_sql(other, server));
    EXPECT_EQ(other, "SELECT NVL(A,0)") << server;
  }
}

class TranslateSqlFailing : public ::testing::TestWithParam<Case> {};

TEST_P(TranslateSqlFailing, RaisesInvalidCallAndKeepsWhatWasRewritten) {
  SCOPED_TRACE(GetParam().sql);
  std::string sql = GetParam().sql;
  EXPECT_TRUE(translation_ends(sql));
  try {
    translate_sql(sql, "Oracle");
    FAIL() << "no error; the text is " << sql;
  } catch (const Error& error) {
    EXPECT_EQ(error.number(), error_number::kInvalidCall);
    EXPECT_EQ(error.source(), kProjectSource);
    EXPECT_EQ(error.description(), error_text(error_number::kInvalidCall));
  }
  EXPECT_EQ(sql, GetParam().oracle);
}

INSTANTIATE_TEST_SUITE_P(
    Failures, TranslateSqlFailing,
    ::testing::Values(Case{"RightJoinAtTheStart", "=* b and a =* c", "=* b and a =* c"},
                      Case{"LeftJoinBehindOrderBy", "select a order by b *= c",
                           "select a order by b *= c"},
                      Case{"LeftJoinBehindGroupBy", "group by b *= c", "group by b *= c"},
                      Case{"LeftJoinBehindOrderByAfterOthers", "a =* x, a *= b order by b *= c",
                           "a(+) = x, a = b(+) order by b *= c"},
                      Case{"LeftJoinPastTheOldPlaceOfOrderBy",
                           "a *= b and c *= d and e *= f and g *= h order by i",
                           "a = b(+) and c = d(+) and e = f(+) and g *= h order by i"},
                      Case{"LeftWithoutAComma", "select left(nome)", "select left(nome)"},
                      Case{"LeftWithoutACommaAfterOthers", "select left(a,1), left(b)",
                           "select left(a,1), left(b)"},
                      Case{"LeftWithoutACommaAfterAnotherRule", "select isnull(a,0), left(b)",
                           "SELECT NVL(A,0), LEFT(B)"}),
    name_of);

// Texts with the form at which their translation stays.
class TranslateSqlEndless : public ::testing::TestWithParam<Case> {};

TEST_P(TranslateSqlEndless, HasAFormWhoseRoundsNeverEnd) {
  const auto& [name, sql, form] = GetParam();
  SCOPED_TRACE(sql);
  EXPECT_FALSE(translation_ends(sql));
  EXPECT_EQ(endless_form(sql), form);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, TranslateSqlEndless,
    ::testing::Values(
        Case{"Getdate", "select getdate()", "GETDATE("},
        Case{"GetdateTwiceWithOneEnd", "f(getdate()), getdate()", "GETDATE("},
        Case{"GetdateWithoutClosing", "getdate(", "GETDATE("},
        Case{"GetdateInGetdateWithoutParenthesis", "getdate(getdate())", "GETDATE("},
        Case{"Datepart", "select datepart(dd,x) from t", "DATEPART(DD,"},
        Case{"DatepartOfAFunctionAndMore", "datepart(mm,f(x)+1)", "DATEPART(MM,"},
        Case{"DatepartOfTheDay", "select DATEPART(dd,getdate())", "GETDATE("},
        Case{"DatepartInItself", "(datepart(hh,datepart(hh,x)))))", "DATEPART(HH,"},
        Case{"ConvertInteger", "convert(integer,a) = 1", "CONVERT(INTEGER,"},
        Case{"ConvertMoney", "convert(money,a), b", "CONVERT(MONEY,"},
        Case{"ConvertFloat", "convert(float,a)", "CONVERT(FLOAT,"},
        Case{"ConvertDate", "convert(datetime,'05/03/2008',103)", "CONVERT(DATETIME,"},
        Case{"ConvertDateOfTen", "convert(datetime(10),a,103)", "CONVERT(DATETIME(10),"},
        Case{"ConvertDay", "convert(datetime,convert(char(10),a),103)",
             "CONVERT(DATETIME,CONVERT(CHAR(10),"},
        Case{"ConvertMoment", "convert(datetime,convert(char(30),a),113)",
             "CONVERT(DATETIME,CONVERT(CHAR(30),"},
        Case{"ConvertText", "convert(char(10),a,103)", "CONVERT(CHAR(10),"},
        Case{"ConvertTextWithAnEndElsewhere", "convert(char(10),a,103) convert(char(10),a,,103)",
             "CONVERT(CHAR(10),"},
        Case{"PutTogetherByAnEarlierRule", "(datepart(hh,convert(char(10)))", "CONVERT(CHAR(10),"}),
    name_of);

const FunctionRule& rule_of(std::string_view opening) {
  for (const FunctionRule& rule : kFunctionRules) {
    if (rule.opening == opening) return rule;
  }
  throw std::out_of_range(std::string(opening));
}

TEST(RuleRound, MakesCapitalsFirstAndThenChangesNothingWhereTheTargetIsMissing) {
  const FunctionRule& rule = rule_of("GETDATE(");
  const std::string once = rule_round(rule, "select getdate()");
  EXPECT_EQ(once, "SELECT GETDATE()");
  EXPECT_EQ(rule_round(rule, once), once) << "and the opening form is still there";
}

TEST(RuleRound, TakesTheArgumentInItsOwnLetterCase) {
  const FunctionRule& rule = rule_of("ISNULL(");
  EXPECT_EQ(rule_round(rule, "isnull(a,0)"), "ISNULL(A,0)") << "no target for the small \"a\"";
  EXPECT_EQ(rule_round(rule, "ISNULL(A,0)"), "NVL(A,0)");
}

TEST(RuleRound, ReplacesEveryOccurrenceWithTheSameArgument) {
  EXPECT_EQ(rule_round(rule_of("ISNULL("), "ISNULL(A) ISNULL(B) ISNULL(AB)"),
            "NVL(A) ISNULL(B) NVL(AB)");
}

TEST(RuleRound, PutsTheOracleClosingInSmallLettersAndTheNextRoundMakesThemCapitals) {
  const FunctionRule& rule = rule_of("CONVERT(CHAR(10),");
  const std::string once = rule_round(rule, "CONVERT(CHAR(10),A,103) CONVERT(CHAR(10),A,,103)");
  EXPECT_EQ(once, "CONVERT(CHAR(10),A,103) TO_CHAR(A,, 'dd/mm/yyyy')");
  const std::string twice = rule_round(rule, once);
  EXPECT_EQ(twice, "CONVERT(CHAR(10),A,103) TO_CHAR(A,, 'DD/MM/YYYY')");
  EXPECT_EQ(rule_round(rule, twice), twice);
}

TEST(RuleRound, LeavesATextWithoutTheOpeningAsItIs) {
  EXPECT_EQ(rule_round(rule_of("GETDATE("), "select a"), "select a");
}

// What all_rounds relies on, asked of the tables themselves.
class FunctionRules : public ::testing::TestWithParam<FunctionRule> {};

std::size_t longest_overlap(std::string_view left, std::string_view right) {
  for (std::size_t n = std::min(left.size(), right.size()); n > 0; --n) {
    if (left.substr(left.size() - n) == right.substr(0, n)) return n;
  }
  return 0;
}

TEST_P(FunctionRules, NeverMakeTheirOwnOpening) {
  const FunctionRule& rule = GetParam();
  if (rule.closing.size() > 1) return;  // never ends, whatever it makes
  const std::string_view opening = rule.opening;
  EXPECT_EQ(rule.oracle_opening.find(opening), std::string_view::npos);
  EXPECT_EQ(rule.oracle_closing.find(opening), std::string_view::npos);
  EXPECT_EQ(longest_overlap(rule.oracle_opening, opening), 0U);
  EXPECT_EQ(longest_overlap(opening, rule.oracle_opening), 0U);
  EXPECT_EQ(longest_overlap(rule.oracle_closing, opening), 0U);
  EXPECT_EQ(longest_overlap(opening.substr(1), opening), 0U);
  // The argument ends with the closing's first character, which no opening of these holds.
  if (rule.closing.empty()) return;
  EXPECT_EQ(opening.find(rule.closing), std::string_view::npos);
}

TEST_P(FunctionRules, OfSeveralClosingCharactersCannotMeetTheirTargetAtTheFirstOpening) {
  const FunctionRule& rule = GetParam();
  if (rule.closing.size() < 2) return;
  EXPECT_NE(rule.closing[0], rule.closing[1]);
  EXPECT_EQ(longest_overlap(rule.opening.substr(1), rule.opening), 0U);
}

TEST_P(FunctionRules, AreInCapitalsForTheServersOwnForms) {
  EXPECT_EQ(text::upper(GetParam().opening), GetParam().opening);
  EXPECT_EQ(text::upper(GetParam().closing), GetParam().closing);
}

INSTANTIATE_TEST_SUITE_P(All, FunctionRules, ::testing::ValuesIn(kFunctionRules));

TEST(UpperCase, OnceIsEnoughForEveryCharacter) {
  std::string all;
  for (char32_t code = 1; code < 0x3000; ++code) {
    if (code < 0x80) {
      all += static_cast<char>(code);
    } else if (code < 0x800) {
      all += {static_cast<char>(0xC0U | (code >> 6U)), static_cast<char>(0x80U | (code & 0x3FU))};
    } else {
      all += {static_cast<char>(0xE0U | (code >> 12U)),
              static_cast<char>(0x80U | ((code >> 6U) & 0x3FU)),
              static_cast<char>(0x80U | (code & 0x3FU))};
    }
  }
  const std::string once = text::upper(all);
  EXPECT_EQ(text::upper(once), once);
  EXPECT_EQ(text::length(once), text::length(all));
}

}  // namespace
}  // namespace pelm::data
