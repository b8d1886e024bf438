/// Dates as people write them here.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "pelm/date.h"

namespace pelm {

/// The date, the time, or both, that a text names; nothing when it names none.
///
/// Three numbers are day-month-year, else year-month-day, else month-day-year, else
/// year-day-month: the first that the calendar has. Two are day and month of the clock's year, else
/// month and day of it, else month and year. A month may be named (in full or by its three
/// letters) and keeps its place in those orders. ":" and "." join a time, "AM" and "PM" follow
/// one; "-", "/", "," and blanks part the rest. "de" may stand beside a month's name, as in the
/// long date. Not read: one number alone, a separator at either end or two in a row, 24:00,
/// fractions of a second, "T" between date and time, names of weekdays, other languages' months.
std::optional<Date> read_date(std::string_view s);

/// dd/mm/yyyy hh:mm:ss, without the time at midnight, without the date on day zero; day zero at
/// midnight is "00:00:00".
std::string date_text(Date d);
std::string date_text(const CivilTime& t);  ///< The same of a valid one.

}  // namespace pelm
