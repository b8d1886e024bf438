/// Dates as the embedded database keeps and converts them.
///
/// Kept as 'YYYY-MM-DD HH:MM:SS': such texts compare as the dates do. Read from any of the forms
/// that SQL texts of pages use; printed in the styles of CONVERT.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "pelm/date.h"
#include "platform/ado/sqlite/session_state.h"

namespace pelm::ado::sqlite {

/// 'YYYY-MM-DD HH:MM:SS'.
class StoredDate {
 public:
  explicit StoredDate(const CivilTime& t) noexcept;
  std::string_view text() const noexcept { return {text_.data(), text_.size()}; }

 private:
  std::array<char, 19> text_ = {'0', '0', '0', '0', '-', '0', '0', '-', '0', '0',
                                ' ', '0', '0', ':', '0', '0', ':', '0', '0'};
};
std::string stored_date(const CivilTime& t);
std::string stored_date(Date d);

/// Reads the stored form and nothing else.
std::optional<CivilTime> read_stored_date(std::string_view s) noexcept;

/// Reads "20080305", "2008-03-05" (always year, month, day), "5/3/2008", "05.03.08", "5 mar 2008",
/// each with an optional time "14:07[:09[.123]] [AM|PM]", with "T" before it too, and a time
/// alone (on 1 January 1900, as for the empty text). Fractions of a second are dropped.
std::optional<CivilTime> read_date(std::string_view s, DateOrder order) noexcept;

/// The text of CONVERT(VARCHAR, date, style): 0 to 14, 20, 21, 100 to 114, 120, 121, 126. Nothing
/// for another style.
std::optional<std::string> styled_date(const CivilTime& t, int style, const Language& language);
/// The order in which CONVERT(DATETIME, text, style) reads; `otherwise` for a style without one.
DateOrder order_of_style(int style, DateOrder otherwise) noexcept;

/// Days since 1 January 1970.
std::int64_t day_number(const CivilTime& t) noexcept;
/// Seconds since 1 January 1970.
std::int64_t second_number(const CivilTime& t) noexcept;
/// Nothing outside the years 100 to 9999.
std::optional<CivilTime> from_second_number(std::int64_t seconds) noexcept;
/// The day clipped to the month's last.
std::optional<CivilTime> plus_months(CivilTime t, std::int64_t months) noexcept;
/// Sunday is 1.
int weekday_of(const CivilTime& t) noexcept;

/// Month and weekday names of a language, 0-based.
std::string_view month_of(const Language& language, int month) noexcept;
std::string_view short_month_of(const Language& language, int month) noexcept;
std::string_view weekday_name_of(const Language& language, int weekday) noexcept;

}  // namespace pelm::ado::sqlite
