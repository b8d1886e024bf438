/// The platform's Format and FormatNumber, and its names of months and days, in Portuguese.
#pragma once

#include <string>
#include <string_view>

#include "pelm/variant.h"

namespace pelm {

/// A date through a pattern; letters in any case, the date rounded to its second first.
///
/// d dd ddd dddd day, short and long name of its weekday; m mm mmm mmmm month and its names; yy
/// yyyy year; h hh hour of 24, of 12 where AM/PM, am/pm, A/P or a/p stands in the pattern and
/// prints that half; n nn minute; s ss second; m and mm after hours or before seconds are minutes.
/// y day of the year, w weekday from Sunday 1, ww week from Sunday with 1 January in the first, q
/// quarter. ddddd short date, dddddd long date, ttttt time, c as `to_text` writes. "/" and ":"
/// print the regional separators; a "quoted" text or a character after \ stands for itself, as
/// does every other. The names "General Date", "Long Date", "Medium Date", "Short Date", "Long
/// Time", "Medium Time" and "Short Time" are patterns too; an empty pattern is "c".
std::string format_date(Date d, std::string_view pattern);

/// `format_date` for any value: a text is read as a date first, then as a number; a text that is
/// neither comes back unchanged, as does any text through an empty pattern. Null and empty give
/// "". Raises type mismatch (13) for arrays and objects, overflow (6) for a number that is no day.
/// Patterns for numbers are not known here: see `format_number`.
std::string format(const Variant& v, std::string_view pattern);

/// Half away from zero on the 15 significant digits; "." between thousands, "," before the
/// decimals, a leading zero, the sign in front and none before zero. `decimals`: 0 to 15, invalid
/// call (5) outside. A number that is not finite is written as `to_text` writes it.
std::string format_number(double v, int decimals = 2);

/// "janeiro" to "dezembro". Raises invalid call (5) outside 1 to 12.
std::string_view month_name(int month);
/// "domingo" to "sábado", Sunday is 1. Raises invalid call (5) outside 1 to 7.
std::string_view weekday_name(int weekday);

/// Adds whole months, the day clipped to the month's last, the time kept; `months` is truncated.
/// Raises invalid call (5) when the result leaves the years 100 to 9999.
Date add_months(Date d, double months);
CivilTime add_months(CivilTime t, double months);  ///< The same of a valid one.

}  // namespace pelm
