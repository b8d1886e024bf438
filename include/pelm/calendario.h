/// A month as a page shows it, with links to the months beside it.
///
///     Calendario calendar;
///     calendar.OnStartPage(context);
///     calendar.ScriptName("calendario.page");
///     calendar.ShowCalendar();
///
/// A click on a day calls the page's script function `Choose` with "dd/mm/yyyy". The look is the
/// page's: the classes are Calendar, nav, DayOfTheweek, Day and Today.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "pelm/date.h"
#include "pelm/page_widget.h"

namespace pelm {

class Calendario : public PageWidget {
 public:
  Calendario();

  /// The address of the page that shows the calendar; the links to other months lead there.
  const std::string& ScriptName() const { return ScriptName_; }
  void ScriptName(std::string address) { ScriptName_ = std::move(address); }

  /// Writes the month of the query string's "date", else of its "month", "day" and "year" (read
  /// day first), else of today, and marks that day. "campo" is passed on. Nothing is escaped.
  /// Raises 91 outside a page, 5 where the month before or after leaves the years 100 to 9999.
  void ShowCalendar();

 private:
  std::string query(std::string_view name) const;
  Date shown_date() const;

  std::string ScriptName_;
};

}  // namespace pelm
