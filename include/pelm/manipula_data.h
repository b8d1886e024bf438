/// Dates as the texts that pages and SQL need.
///
/// Contents: `ManipulaData`.
///
///     pelm::ManipulaData data;
///     data.PrepData(d, false);          // "05/03/2008"
///     data.PrepData_SQL(d);             // "{ ts '2008-03-05 14:07:09' }"
///     data.PrepDataSemDia(2, 2008, true);   // 29 February 2008
///
/// Not for reading what a user typed: pelm/conversions.h does that.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "pelm/date.h"
#include "pelm/object.h"

namespace pelm {

/// Holds no state: one object serves any number of callers and threads. An error leaves with the
/// source of whoever raised it.
class ManipulaData : public Object {
 public:
  /// Today as "dd/mm/yyyy" and, unless `DATAEHORA` is False, a blank and the time as "hh:mm:ss".
  std::string DataAgora(bool DATAEHORA = true) const;

  /// Whole hours and the minutes that are left, as "H:MM"; `Minuto` is left with those minutes.
  /// A negative count stays as it is: -5 gives "0:0-5".
  std::string Minuto_hora(std::int32_t& Minuto) const;

  /// "dd/mm/yyyy hh:mm:ss", or "dd/mm/yyyy" when `DATAEHORA` is False. `SplitDate` takes the date
  /// to pieces and reads it back first; a date comes out the same either way.
  std::string PrepData(Date DATAPARACONVERTER, bool DATAEHORA = true, bool SplitDate = false) const;

  /// The first day of the month or, when `MaiorDiadoMes` is True, its last.
  ///
  /// `Ano` is read as in a text: 0 to 29 are of the 2000s, 30 to 99 of the 1900s, and a year up to
  /// 31 may be taken for the day, as in any text that is written day, month, year.
  /// Raises type mismatch (13) for a month outside 1 to 12 and for a first day that is no date;
  /// overflow (6) for a year that has no last day (below 0, above 9999).
  Date PrepDataSemDia(std::int16_t Mes, std::int16_t Ano, bool MaiorDiadoMes) const;

  /// The ODBC literal "{ ts 'yyyy-mm-dd hh:mm:ss' }", or "{ d 'yyyy-mm-dd' }" when `DATAEHORA` is
  /// False.
  std::string PrepData_SQL(Date DATAPARACONVERTER, bool DATAEHORA = true) const;

  /// "dd/mm/yyyy" into "yyyy-mm-dd", by fixed positions: any other text is cut in the same places.
  std::string DataUniversal(std::string_view sData) const;
};

}  // namespace pelm
