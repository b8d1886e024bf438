/// What a session's statements and functions share beside the database itself.
#pragma once

#include <cstdint>
#include <optional>

namespace pelm::ado::sqlite {

/// The order of the numbers in a date text whose year does not come first.
enum class DateOrder { DayMonthYear, MonthDayYear, YearMonthDay };

/// `set language` and `set dateformat`. A session begins in Portuguese.
struct Language {
  bool portuguese = true;
  DateOrder date_order = DateOrder::DayMonthYear;
};

struct SessionState {
  Language language;
  std::optional<std::int64_t> identity;  ///< @@identity; none before the first row with one
  std::int64_t rows = 0;                 ///< @@rowcount
};

}  // namespace pelm::ado::sqlite
