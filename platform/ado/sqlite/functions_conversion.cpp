// CONVERT and CAST.
#include <array>
#include <cmath>
#include <limits>

#include "platform/ado/sqlite/functions.h"
#include "platform/value/text.h"

namespace pelm::ado::sqlite {
namespace {

constexpr double kSecondsOfDay = 86400;
constexpr CivilTime kDayZero{1900, 1, 1, 0, 0, 0};

double days_since_day_zero(const CivilTime& t) {
  return static_cast<double>(second_number(t) - second_number(kDayZero)) / kSecondsOfDay;
}

// The digits of a whole number with a sign and blanks around it, and nothing else.
std::int64_t read_whole(std::string_view s, const char* type) {
  const auto v = read_number(s);
  if (!v || s.find_first_of(".eE") != std::string_view::npos) fail_conversion(s, type);
  return static_cast<std::int64_t>(*v);
}

std::int64_t whole_value(const FunctionCall& c, const char* type) {
  if (c.type(0) == SQLITE_INTEGER) return c.integer(0);
  if (const auto t = c.stored_date(0)) return std::llround(days_since_day_zero(*t));
  if (c.is_text(0)) return read_whole(c.text(0), type);
  return c.whole(0);
}

template <class T>
void to_whole(const FunctionCall& c, const char* type) {
  const std::int64_t v = whole_value(c, type);
  if (v < std::int64_t{std::numeric_limits<T>::min()} ||
      v > std::int64_t{std::numeric_limits<T>::max()}) {
    throw FunctionError{
        SQLITE_TOOBIG,
        std::string("Arithmetic overflow error converting to data type ") + type + "."};
  }
  c.give(v);
}

void to_int(FunctionCall& c) { to_whole<std::int32_t>(c, "int"); }
void to_smallint(FunctionCall& c) { to_whole<std::int16_t>(c, "smallint"); }
void to_tinyint(FunctionCall& c) { to_whole<std::uint8_t>(c, "tinyint"); }
void to_bigint(FunctionCall& c) { to_whole<std::int64_t>(c, "bigint"); }

void to_bit(FunctionCall& c) {
  if (c.is_text(0)) {
    if (text::equal_case_blind(c.text(0), "true")) return c.give(std::int64_t{1});
    if (text::equal_case_blind(c.text(0), "false")) return c.give(std::int64_t{0});
  }
  c.give(std::int64_t{c.number(0) != 0 ? 1 : 0});
}

double real_value(const FunctionCall& c) {
  if (const auto t = c.stored_date(0)) return days_since_day_zero(*t);
  return c.number(0);
}

void to_float(FunctionCall& c) { c.give(real_value(c)); }

// To a number of places, half away from zero on the digits as they are written.
double to_places(double v, std::int64_t places) {
  const double scale = std::pow(10.0, static_cast<double>(std::min<std::int64_t>(places, 15)));
  const double scaled = v * scale;
  return std::round(scaled + std::copysign(std::fabs(scaled) * 1e-15, scaled)) / scale;
}

void to_decimal(FunctionCall& c) { c.give(to_places(real_value(c), c.whole(1))); }

// Money texts may group their digits and carry the currency.
std::optional<double> read_money(std::string_view s) {
  std::string digits;
  for (const char ch : s) {
    if (ch != ',' && ch != '$') digits.push_back(ch);
  }
  return read_number(digits);
}

void to_money(FunctionCall& c) {
  constexpr std::int64_t kPlaces = 4;
  if (!c.is_text(0) || c.stored_date(0)) return c.give(to_places(real_value(c), kPlaces));
  const auto v = read_money(c.text(0));
  if (!v) fail_conversion(c.text(0), "money");
  c.give(to_places(*v, kPlaces));
}

// The text of the first argument; `style` is the third, null when CONVERT named none.
std::string shown(const FunctionCall& c) {
  switch (c.type(0)) {
    case SQLITE_INTEGER:
      return std::to_string(c.integer(0));
    case SQLITE_FLOAT:
      return number_text(c.real(0));
    default:
      break;
  }
  if (!c.is_null(2)) {
    if (const auto t = c.stored_date(0)) {
      const std::int64_t style = c.whole(2);
      const auto out = styled_date(*t, style >= 0 && style < 200 ? static_cast<int>(style) : 99,
                                   c.session().language);
      if (out) return *out;
      throw FunctionError{SQLITE_ERROR, "'" + std::to_string(style) +
                                            "' is not a valid style number when converting from "
                                            "datetime to a character string."};
    }
  }
  return std::string(c.text(0));
}

// pelm_to_text(value, length, style): a length below 0 is none.
void to_text(const FunctionCall& c, bool padded) {
  if (c.is_null(0)) return c.give_null();
  std::string s = shown(c);
  const std::int64_t limit = c.whole(1);
  if (limit < 0) return c.give(std::string_view(s));
  const auto size = static_cast<std::int64_t>(text::length(s));
  if (size > limit) {
    // Kept: a whole number that does not fit becomes an asterisk, a text is cut.
    s = c.type(0) == SQLITE_INTEGER ? "*" : text::left(s, limit);
  } else if (padded) {
    s.append(static_cast<std::size_t>(limit - size), ' ');
  }
  c.give(std::string_view(s));
}

void to_varchar(FunctionCall& c) { to_text(c, false); }
void to_char(FunctionCall& c) { to_text(c, true); }

// pelm_to_datetime(value, style)
void to_datetime(FunctionCall& c) {
  if (c.is_null(0)) return c.give_null();
  if (!c.is_text(0) || c.is_null(1)) return c.give(c.date(0));
  const std::int64_t style = c.whole(1);
  const DateOrder own = c.session().language.date_order;
  const auto t = read_date(
      c.text(0), order_of_style(style >= 0 && style < 200 ? static_cast<int>(style) : 0, own));
  if (!t) fail_conversion(c.text(0), "datetime");
  c.give(*t);
}

void to_day(FunctionCall& c) {
  CivilTime t = c.date(0);
  t.hour = t.minute = t.second = 0;
  c.give(t);
}

void isnumeric(FunctionCall& c) {
  const bool numeric =
      !c.is_null(0) && (!c.is_text(0) || (!c.text(0).empty() && read_money(c.text(0))));
  c.give(std::int64_t{numeric ? 1 : 0});
}

constexpr std::array kFunctions = {
    function<to_int>("pelm_to_int", 1),
    function<to_smallint>("pelm_to_smallint", 1),
    function<to_tinyint>("pelm_to_tinyint", 1),
    function<to_bigint>("pelm_to_bigint", 1),
    function<to_bit>("pelm_to_bit", 1),
    function<to_float>("pelm_to_float", 1),
    function<to_decimal>("pelm_to_decimal", 2),
    function<to_money>("pelm_to_money", 1),
    function<to_varchar, Nulls::ToTheFunction>("pelm_to_varchar", 3),
    function<to_char, Nulls::ToTheFunction>("pelm_to_char", 3),
    function<to_datetime, Nulls::ToTheFunction>("pelm_to_datetime", 2),
    function<to_day>("pelm_to_day", 1),
    function<isnumeric, Nulls::ToTheFunction>("isnumeric", 1),
};

}  // namespace

std::span<const Function> conversion_functions() { return kFunctions; }

}  // namespace pelm::ado::sqlite
