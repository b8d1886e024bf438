// Format, FormatNumber, names and months.
#include "platform/value/formatting.h"

#include <algorithm>
#include <cmath>

#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/value/number_text.h"
#include "platform/value/regional.h"

namespace pelm {
namespace {

// `digits` of a whole number to `keep` of them, half away from zero. True when it became one digit
// longer: 995 to two digits is 100.
bool round_half_away(std::string& digits, std::size_t keep) {
  if (keep >= digits.size()) return false;
  const bool up = digits[keep] >= '5';
  digits.resize(keep);
  if (!up) return false;
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
    if (*digit != '9') return ++*digit, false;
    *digit = '0';
  }
  digits.insert(digits.begin(), '1');
  return true;
}

std::string grouped(std::string_view whole) {
  std::string out;
  for (std::size_t i = 0; i < whole.size(); ++i) {
    if (i > 0 && (whole.size() - i) % 3 == 0) out += regional::kGroupMark;
    out += whole[i];
  }
  return out;
}

}  // namespace

std::string format(const Variant& v, std::string_view pattern) {
  switch (v.type()) {
    case Variant::Type::Empty:
    case Variant::Type::Null:
      return {};
    case Variant::Type::Text:
      try {
        return pattern.empty() ? v.text() : format_date(to_date(v), pattern);
      } catch (const Error&) {
        return v.text();  // kept: a text that is no date is its own format
      }
    default:
      return pattern.empty() ? to_text(v) : format_date(to_date(v), pattern);
  }
}

std::string format_number(double v, int decimals) {
  if (decimals < 0 || decimals > SignificantDigits::kMax) raise_error(error_number::kInvalidCall);
  if (!std::isfinite(v)) return std::string(not_finite_text(v));

  const SignificantDigits significant(v);
  std::string digits(significant.text());
  const auto places = static_cast<std::size_t>(decimals);
  std::size_t whole = 1;  // digits before the comma
  if (significant.exponent >= 0) {
    whole += static_cast<std::size_t>(significant.exponent);
  } else {  // leading zeros; more than one past the last place change nothing
    digits.insert(0, std::min(static_cast<std::size_t>(-significant.exponent), places + 2), '0');
  }
  if (round_half_away(digits, whole + places)) ++whole;
  digits.resize(whole + places, '0');

  const bool zero = digits.find_first_not_of('0') == std::string::npos;
  std::string out = significant.negative && !zero ? "-" : "";
  out += grouped(std::string_view(digits).substr(0, whole));
  if (decimals == 0) return out;
  return (out += regional::kDecimalMark) += digits.substr(whole);
}

std::string_view month_name(int month) {
  if (month < 1 || month > 12) raise_error(error_number::kInvalidCall);
  return regional::kMonthNames[static_cast<std::size_t>(month - 1)];
}

std::string_view weekday_name(int weekday) {
  if (weekday < 1 || weekday > 7) raise_error(error_number::kInvalidCall);
  return regional::kWeekdayNames[static_cast<std::size_t>(weekday - 1)];
}

Date add_months(Date d, double months) { return Date::from_civil(add_months(d.civil(), months)); }

CivilTime add_months(CivilTime t, double months) {
  constexpr double kWholeCalendar = 12 * 10000;
  const bool in_calendar = std::fabs(months) < kWholeCalendar;  // false for a NaN too
  if (!in_calendar) raise_error(error_number::kInvalidCall);
  const int month = t.year * 12 + t.month - 1 + static_cast<int>(months);
  if (month < 0) raise_error(error_number::kInvalidCall);
  t.year = month / 12;
  t.month = month % 12 + 1;
  if (t.year < 100 || t.year > 9999) raise_error(error_number::kInvalidCall);
  while (!is_valid(t)) --t.day;
  return t;
}

}  // namespace pelm
