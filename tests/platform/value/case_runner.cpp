// The functions that the tables of cases call.
#include "platform/value/case_runner.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <stdexcept>

#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/value/case_table.h"
#include "platform/value/clock.h"
#include "platform/value/formatting.h"
#include "platform/value/text.h"

namespace pelm::cases {
namespace {

// Inputs and results in the tables' notation.

template <class Number>
Number number_in(std::string_view s) {
  Number n{};
  const auto read = std::from_chars(s.data(), s.data() + s.size(), n);
  if (read.ec != std::errc{} || read.ptr != s.data() + s.size()) {
    throw std::runtime_error("not a number: " + std::string(s));
  }
  return n;
}

Date date_in(const std::string& s) {
  CivilTime t;
  int end = 0;
  const int read = std::sscanf(s.c_str(), "%4d-%2d-%2d%n %2d:%2d:%2d%n", &t.year, &t.month, &t.day,
                               &end, &t.hour, &t.minute, &t.second, &end);
  if ((read != 3 && read != 6) || static_cast<std::size_t>(end) != s.size()) {
    throw std::runtime_error("not a date: " + s);
  }
  return Date::from_civil(t);
}

bool boolean_in(const std::string& s) {
  if (s != "True" && s != "False") throw std::runtime_error("not a Boolean: " + s);
  return s == "True";
}

std::string day_out(Date d) {
  const CivilTime t = d.civil();
  std::array<char, 40> out{};
  std::snprintf(out.data(), out.size(), "%04d-%02d-%02d", t.year, t.month, t.day);
  return out.data();
}

std::string moment_out(Date d) {
  const CivilTime t = d.civil();
  std::array<char, 40> out{};
  std::snprintf(out.data(), out.size(), " %02d:%02d:%02d", t.hour, t.minute, t.second);
  return day_out(d) + out.data();
}

std::string double_out(double v) {
  std::array<char, 40> out{};
  std::snprintf(out.data(), out.size(), "%.17g", v);
  return out.data();
}

std::string boolean_out(bool v) { return v ? "True" : "False"; }

// Two doubles that the platform writes alike count as the same.
std::string fifteen_digits(const std::string& number) {
  if (number.starts_with('#')) return number;
  std::array<char, 40> out{};
  std::snprintf(out.data(), out.size(), "%.14e", number_in<double>(number));
  return out.data();
}

// The functions. `Value` makes the argument from the input.

Variant as_text(const std::string& s) { return s; }
Variant as_double(const std::string& s) { return number_in<double>(s); }
Variant as_integer(const std::string& s) { return number_in<std::int16_t>(s); }
Variant as_long(const std::string& s) { return number_in<std::int32_t>(s); }
Variant as_boolean(const std::string& s) { return boolean_in(s); }
Variant as_date(const std::string& s) { return date_in(s); }

// "null", "empty", "bool" (True), a text in quotes, or a number.
Variant as_told(const std::string& s) {
  if (s == "null") return Null{};
  if (s == "empty") return {};
  if (s == "bool") return true;
  if (s.starts_with('"') && s.ends_with('"') && s.size() > 1) return s.substr(1, s.size() - 2);
  return number_in<double>(s);
}

using Value = Variant(const std::string&);

template <Value value>
std::string to_integer_of(const std::string& s) {
  return std::to_string(to_integer(value(s)));
}
template <Value value>
std::string to_long_of(const std::string& s) {
  return std::to_string(to_long(value(s)));
}
template <Value value>
std::string to_double_of(const std::string& s) {
  return double_out(to_double(value(s)));
}
template <Value value>
std::string to_boolean_of(const std::string& s) {
  return boolean_out(to_boolean(value(s)));
}
template <Value value>
std::string to_date_of(const std::string& s) {
  const ScopedClock clock(Date::from_civil({2008, 7, 1}));
  return moment_out(to_date(value(s)));
}
template <Value value>
std::string to_text_of(const std::string& s) {
  return to_text(value(s));
}
template <Value value>
std::string is_numeric_of(const std::string& s) {
  return boolean_out(is_numeric(value(s)));
}

std::string is_date_of(const std::string& s) {
  const ScopedClock clock(Date::from_civil({2008, 7, 1}));
  return boolean_out(is_date(s));
}

template <int year>
std::string day_of(const std::string& s) {
  const ScopedClock clock(Date::from_civil({year, 7, 1}));
  return day_out(to_date(s));
}

// "value | pattern"
template <Value value>
std::string format_of(const std::string& s) {
  const ScopedClock clock(Date::from_civil({2008, 7, 1}));
  const auto parts = split(s, " | ");
  return format(value(parts.at(0)), parts.at(1));
}

std::string format_number_of(const std::string& s) { return format_number(number_in<double>(s)); }
std::string month_name_of(const std::string& s) {
  return std::string(month_name(number_in<int>(s)));
}
std::string weekday_name_of(const std::string& s) {
  return std::string(weekday_name(number_in<int>(s)));
}
std::string weekday_of(const std::string& s) { return std::to_string(date_in(s).weekday()); }

// "months;date"
Date months_added(const std::string& s) {
  const auto parts = split(s, ";");
  return add_months(date_in(parts.at(1)), number_in<double>(parts.at(0)));
}
std::string moment_after_months(const std::string& s) { return moment_out(months_added(s)); }
std::string text_after_months(const std::string& s) {
  try {
    return to_text(months_added(s));
  } catch (const Error&) {
    return {};  // the table notes the error in its other column only
  }
}

std::string left_of(const std::string& s) {
  const auto parts = split(s, ";");
  return text::left(parts.at(0), number_in<std::int64_t>(parts.at(1)));
}
std::string right_of(const std::string& s) {
  const auto parts = split(s, ";");
  return text::right(parts.at(0), number_in<std::int64_t>(parts.at(1)));
}
std::string mid_of(const std::string& s) {
  const auto parts = split(s, ";");
  const auto start = number_in<std::int64_t>(parts.at(1));
  if (parts.size() == 2) return text::mid(parts[0], start);
  return text::mid(parts[0], start, number_in<std::int64_t>(parts.at(2)));
}
template <text::Compare compare>
std::string instr_of(const std::string& s) {
  const auto parts = split(s, ";");
  return std::to_string(
      text::instr(number_in<std::int64_t>(parts.at(0)), parts.at(1), parts.at(2), compare));
}
std::string trim_of(const std::string& s) { return std::string(text::trim(s)); }
std::string upper_of(const std::string& s) { return text::upper(s); }
std::string lower_of(const std::string& s) { return text::lower(s); }
std::string replace_of(const std::string& s) {
  const auto parts = split(s, ";");
  return text::replace_all(parts.at(0), parts.at(1), parts.at(2));
}

constexpr Evaluation kEvaluations[] = {
    {"calendar_month_day_year", "month-day-year", "CDate", day_of<2008>},
    {"calendar_month_day_year", "month-day-year", "IsDate", is_date_of},
    {"case", "LCase", "result", lower_of},
    {"case", "UCase", "result", upper_of},
    {"cdate_isdate", "CDate", "result", to_date_of<as_text>},
    {"cdate_isdate", "IsDate", "result", is_date_of},
    {"cdbl", "CDbl", "result", to_double_of<as_text>, fifteen_digits},
    {"cint", "CInt", "result", to_integer_of<as_text>},
    {"clng", "CLng", "result", to_long_of<as_text>},
    {"cstr_date", "CStr", "result", to_text_of<as_date>},
    {"cstr_number", "CStr(Boolean)", "result", to_text_of<as_boolean>},
    {"cstr_number", "CStr(Double)", "result", to_text_of<as_double>},
    {"cstr_number", "CStr(Integer)", "result", to_text_of<as_integer>},
    {"cstr_number", "CStr(Long)", "result", to_text_of<as_long>},
    {"date_three_numbers", "CDate", "result", day_of<2008>},
    {"date_two_numbers", "CDate", "result_if_now_2007", day_of<2007>},
    {"date_two_numbers", "CDate", "result_if_now_2008", day_of<2008>},
    {"dateadd_month", "DateAdd(\"m\")", "CStr(result)", text_after_months},
    {"dateadd_month", "DateAdd(\"m\")", "result", moment_after_months},
    {"format_date", "Format", "result", format_of<as_date>},
    {"format_text", "Format", "result", format_of<as_text>},
    {"formatnumber", "FormatNumber(x;2)", "result", format_number_of},
    {"names_weekday", "MonthName", "result", month_name_of},
    {"names_weekday", "Weekday", "result", weekday_of},
    {"names_weekday", "WeekdayName", "result", weekday_name_of},
    {"null_empty", "CBool", "result", to_boolean_of<as_told>},
    {"null_empty", "CDate", "result", to_date_of<as_told>},
    {"null_empty", "CDbl", "result", to_double_of<as_told>},
    {"null_empty", "CInt", "result", to_integer_of<as_told>},
    {"null_empty", "CLng", "result", to_long_of<as_told>},
    {"null_empty", "CStr", "result", to_text_of<as_told>},
    {"null_empty", "IsNumeric", "result", is_numeric_of<as_told>},
    {"rounding", "CInt", "result", to_integer_of<as_double>},
    {"rounding", "CLng", "result", to_long_of<as_double>},
    {"single_char", "CInt", "result", to_integer_of<as_text>},
    {"single_char", "CLng", "result", to_long_of<as_text>},
    {"text_functions", "InStr", "result", instr_of<text::Compare::Exact>},
    {"text_functions", "InStr(text)", "result", instr_of<text::Compare::CaseBlind>},
    {"text_functions", "Left", "result", left_of},
    {"text_functions", "Mid", "result", mid_of},
    {"text_functions", "Replace", "result", replace_of},
    {"text_functions", "Right", "result", right_of},
    {"text_functions", "Trim", "result", trim_of},
};

constexpr Inapplicable kInapplicable[] = {
    // Operators of the page language.
    {"null_empty", "&", "null & \"a\""},
    {"null_empty", "+", "null + \"a\""},
    {"null_empty", "=", "null = 1"},
    {"text_functions", "Mod", "7;3"},
    {"text_functions", "Mod", "7;-3"},
    {"text_functions", "Mod", "100;99"},
    {"text_functions", "Mod", "198;99"},
    {"text_functions", "Mod", "-7;2"},
    // Statements and functions that nothing here needs.
    {"text_functions", "Asc", "\"\""},
    {"text_functions", "Chr", "256"},
    {"text_functions", "ReDim a(-1)", ""},
    // Values that the argument's type keeps out: null for a text, a number or a date; an error.
    {"null_empty", "CStr", "CVErr(5)"},
    {"null_empty", "DateAdd", "\"m\";1;null"},
    {"null_empty", "DateAdd", "\"m\";null;date"},
    {"null_empty", "FormatNumber", "null"},
    {"null_empty", "Left", "\"hello\";null"},
    {"null_empty", "Len", "null"},
    {"null_empty", "Trim", "null"},
};

}  // namespace

std::span<const Evaluation> evaluations() { return kEvaluations; }

std::span<const Inapplicable> inapplicable_rows() { return kInapplicable; }

}  // namespace pelm::cases
