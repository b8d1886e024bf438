// The literal translation. Positions are 1-based characters, as in the words of the steps.
#include "data/literal_translation.h"

#include <cstdint>
#include <stdexcept>

#include "pelm/error.h"
#include "platform/value/text.h"

namespace pelm::data::literal {
namespace {

using text::Compare;
using text::instr;
using text::left;
using text::mid;
using text::replace_all;
using text::upper;

std::int64_t length(std::string_view s) { return static_cast<std::int64_t>(text::length(s)); }

// Mid with the characters from `first` up to `last`; a negative length fails.
std::string from_to(std::string_view s, std::int64_t first, std::int64_t last) {
  return mid(s, first, last - first + 1);
}

void right_joins(std::string& sql) {
  while (const auto p = instr(1, sql, "=*", Compare::CaseBlind)) {
    sql = left(sql, p - 2) + "(+) =" + mid(sql, p + 2);
  }
}

void left_joins(std::string& sql) {
  const auto order_by = instr(1, sql, "order by", Compare::CaseBlind);
  const auto group_by = instr(1, sql, "group by", Compare::CaseBlind);
  while (const auto p = instr(1, sql, "*=", Compare::CaseBlind)) {
    const std::string before = left(sql, p - 1);
    std::int64_t e = instr(p, sql, "and", Compare::CaseBlind);
    if (e == 0) e = order_by;
    if (e == 0) e = group_by;
    std::string term = mid(sql, p);
    std::string rest;
    if (e != 0) {
      term = from_to(sql, p, e - 2);
      rest = mid(sql, e);
    }
    sql = before + mid(term, 2) + "(+) " + rest;
  }
}

void concatenations(std::string& sql) {
  sql = replace_all(sql, "+' '+", " || ' ' || ");
  sql = replace_all(sql, "+''+", " || ' ' || ");
  sql = replace_all(sql, "+ ' ' +", " || ' ' || ");
  sql = replace_all(sql, "+ '' +", " || ' ' || ");
  sql = replace_all(sql, "+LTRIM('')+", " || LTRIM('') || ");
  sql = replace_all(sql, "+ltrim('')+", " || LTRIM('') || ");
  sql = replace_all(sql, "space(", " rpad('z',");
}

struct Rule {
  std::string opening, closing, oracle_opening, oracle_closing;
};

const Rule kRules[] = {
    {"DATEPART(HH,", ")", "TO_NUMBER(TO_CHAR(", ", 'HH24'))"},
    {"DATEPART(DD,", ")", "TO_NUMBER(TO_CHAR(", ", 'DD'))"},
    {"DATEPART(MM,", ")", "TO_NUMBER(TO_CHAR(", ", 'MM'))"},
    {"DATEPART(YY,", ")", "TO_NUMBER(TO_CHAR(", ", 'YY'))"},
    {"SUBSTRING(", "", "SUBSTR(", ""},
    {"GETDATE(", ")", "SYSDATE", ""},
    {"CONVERT(INTEGER,", ")", "TO_NUMBER(", ")"},
    {"CONVERT(DATETIME,CONVERT(CHAR(10),", "),103)", "TO_DATE(TO_CHAR(",
     ", 'dd/mm/yyyy'), 'dd/mm/yyyy' )"},
    {"CONVERT(DATETIME,CONVERT(CHAR(30),", "),113)", "TO_DATE(TO_CHAR(",
     ", 'dd/mm/yyyy hh24:mi:ss'))"},
    {"CONVERT(DATETIME,", ",103)", "TO_DATE(", ")"},
    {"CONVERT(DATETIME(10),", ",103)", "TO_DATE(", ")"},
    {"CONVERT(MONEY,", ")", "TO_NUMBER(", ")"},
    {"CONVERT(FLOAT,", ")", "TO_NUMBER(", ")"},
    {"CONVERT(CHAR(10),", ",103)", "TO_CHAR(", ", 'dd/mm/yyyy')"},
    {"ISNULL(", "", "NVL(", ""},
};

// Returns whether the rounds end.
bool apply(const Rule& rule, std::string& sql) {
  for (int round = 0; round < 10'000; ++round) {
    const auto p = instr(1, upper(sql), rule.opening, Compare::CaseBlind);
    if (p == 0) return true;
    const std::string rest = mid(sql, p + length(rule.opening));
    const std::int64_t c =
        rule.closing.empty() ? 1 : instr(1, rest, rule.closing, Compare::CaseBlind);
    const std::string arg = left(rest, c);
    const std::string before_round = sql;
    sql = replace_all(upper(sql), rule.opening + arg + rule.closing,
                      rule.oracle_opening + arg + rule.oracle_closing);
    if (sql == before_round) return false;
  }
  throw std::logic_error("10,000 rounds of " + rule.opening + " for: " + sql);
}

void left_functions(std::string& sql) {
  if (instr(1, upper(sql), "LEFT(", Compare::CaseBlind) == 0) return;
  std::string working = sql;
  while (const auto p = instr(1, working, "Left(", Compare::CaseBlind)) {
    std::string out = left(working, p - 1) + "SubStr(";
    const std::string tail = mid(working, p + 5);
    const auto q = instr(1, tail, ",");
    out = out + left(tail, q - 1) + ", 1" + mid(tail, q);
    working = out;
  }
  sql = working;
}

}  // namespace

Translation translate(std::string_view sql) {
  std::string text(sql);
  try {
    right_joins(text);
    left_joins(text);
    concatenations(text);
    for (const Rule& rule : kRules) {
      if (!apply(rule, text)) return {Outcome::NeverEnds, text, rule.opening};
    }
    left_functions(text);
  } catch (const Error& error) {
    if (error.number() != error_number::kInvalidCall) throw;
    return {Outcome::Fails, text};
  }
  return {Outcome::Ends, text};
}

}  // namespace pelm::data::literal
