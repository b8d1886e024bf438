/// The platform's Format and FormatNumber, and its names of months and days, in Portuguese.
#pragma once

#include <string>
#include <string_view>

#include "pelm/variant.h"

namespace pelm {

/// A date through a pattern of d dd ddd dddd m mm mmm mmmm yy yyyy h hh n nn s ss; "/" and ":"
/// print the regional separators, m after h or before s means minutes, letters in any case;
/// every other character stands for itself.
std::string format_date(Date d, std::string_view pattern);

/// `format_date` for any value: a text is read as a date first, then as a number; a text that is
/// neither comes back unchanged. Null gives "". Raises type mismatch (13) for arrays and objects.
std::string format(const Variant& v, std::string_view pattern);

/// Half away from zero on the 15 significant digits; "." between thousands, "," before the
/// decimals, a leading zero, the sign in front. `decimals`: 0 to 15.
std::string format_number(double v, int decimals = 2);

/// "janeiro" to "dezembro". Raises invalid call (5) outside 1 to 12.
std::string_view month_name(int month);
/// "domingo" to "sábado", Sunday is 1. Raises invalid call (5) outside 1 to 7.
std::string_view weekday_name(int weekday);

/// Adds whole months, the day clipped to the month's last, the time kept; `months` is truncated.
/// Raises invalid call (5) when the result leaves the years 100 to 9999.
Date add_months(Date d, double months);

}  // namespace pelm
