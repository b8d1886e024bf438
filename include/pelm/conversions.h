/// The platform's conversions between values, under Brazilian regional settings.
///
/// Contents: `to_integer`, `to_long`, `to_double`, `to_boolean`, `to_date`, `to_text`,
/// `is_date`, `is_numeric`.
///
///     pelm::to_long("1.234,5");      // 1234: "." groups, "," is the decimal mark
///     pelm::to_date("5/3/2008");     // 5 March 2008
///     pelm::to_text(0.5);            // "0,5"
///
/// Every function raises type mismatch (13) for a text that does not read as the type, for an
/// array and for an object; invalid use of null (94) for null; overflow (6) out of range.
/// Empty gives 0, "", False and 30 December 1899. True is -1 as a number, a date is its serial.
/// None of them asks the process's locale. How texts are read: platform/value/number_text.h and
/// platform/value/date_text.h.
#pragma once

#include <cstdint>
#include <string>

#include "pelm/variant.h"

namespace pelm {

/// 16-bit; halves go to the even neighbour. "&H" and "&O" in a text fill the bits: "&HFFFF" is -1.
std::int16_t to_integer(const Variant& v);
/// 32-bit; halves go to the even neighbour. "&HFFFFFFFF" is -1, "&HFFFF" is 65535.
std::int32_t to_long(const Variant& v);
/// "&H" and "&O" are plain numbers here, of up to 64 bits.
double to_double(const Variant& v);
/// Numbers: anything but 0 is True. Texts: "True" and "False" in any case and without blanks, or
/// a number.
bool to_boolean(const Variant& v);
/// Day comes first in a text; a text that is no date but a number is a day serial, so "1.2.2020"
/// is day 122020. A text raises 13 where a number out of range raises 6.
Date to_date(const Variant& v);
/// Numbers with up to 15 digits and a decimal comma, with an exponent past 15 places; dates as
/// dd/mm/yyyy hh:mm:ss, the time left out at midnight and the date left out on day zero; "True" and
/// "False".
std::string to_text(const Variant& v);
std::string to_text(Variant&& v);  ///< takes a text over uncopied

/// True for a date and for a text that `to_date` reads other than as a bare number.
bool is_date(const Variant& v) noexcept;
/// True for empty, numbers, Booleans and texts that `to_double` reads.
bool is_numeric(const Variant& v) noexcept;

}  // namespace pelm
