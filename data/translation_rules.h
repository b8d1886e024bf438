/// The SQL Server forms that are rewritten for Oracle, as tables in the order of their rewriting.
#pragma once

#include <array>
#include <string_view>

namespace pelm::data {

/// Every occurrence, letter case exact, once.
struct Replacement {
  std::string_view find;
  std::string_view with;
};

inline constexpr std::array<Replacement, 7> kConcatenations = {{
    {"+' '+", " || ' ' || "},
    {"+''+", " || ' ' || "},  // kept: an empty text between two others becomes a blank
    {"+ ' ' +", " || ' ' || "},
    {"+ '' +", " || ' ' || "},  // kept: the same
    {"+LTRIM('')+", " || LTRIM('') || "},
    {"+ltrim('')+", " || LTRIM('') || "},
    {"space(", " rpad('z',"},  // kept: small letters only
}};

/// A function or conversion: its text before and after the argument, for each server. The forms
/// are searched for in any letter case; those of SQL Server are in capitals here.
struct FunctionRule {
  std::string_view opening;
  std::string_view closing;  ///< Empty: the opening alone is rewritten.
  std::string_view oracle_opening;
  std::string_view oracle_closing;
};

inline constexpr std::array<FunctionRule, 15> kFunctionRules = {{
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
}};

inline constexpr std::string_view kLeft = "LEFT(";
inline constexpr std::string_view kOracleLeft = "SubStr(";

inline constexpr std::string_view kRightJoin = "=*";
inline constexpr std::string_view kLeftJoin = "*=";
inline constexpr std::string_view kOracleJoin = "(+)";

}  // namespace pelm::data
