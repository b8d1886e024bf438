/// Brazilian regional settings: the only place that says how numbers and dates are written.
#pragma once

#include <array>
#include <string_view>

namespace pelm::regional {

inline constexpr char kDecimalMark = ',';
inline constexpr char kGroupMark = '.';
inline constexpr char kDateSeparator = '/';
inline constexpr char kTimeSeparator = ':';
inline constexpr std::string_view kCurrency = "R$";
inline constexpr std::string_view kShortDate = "dd/mm/yyyy";
inline constexpr std::string_view kLongTime = "hh:mm:ss";
inline constexpr std::string_view kLongDate = "dddd, d \"de\" mmmm \"de\" yyyy";
/// The word between the parts of a long date.
inline constexpr std::string_view kLongDateLink = "de";
/// Two-digit years up to this one are of the 2000s, those above of the 1900s.
inline constexpr int kTwoDigitYearMax = 29;

inline constexpr std::array<std::string_view, 12> kMonthNames = {
    "janeiro", "fevereiro", "março",    "abril",   "maio",     "junho",
    "julho",   "agosto",    "setembro", "outubro", "novembro", "dezembro"};
inline constexpr std::array<std::string_view, 12> kMonthAbbreviations = {
    "jan", "fev", "mar", "abr", "mai", "jun", "jul", "ago", "set", "out", "nov", "dez"};
inline constexpr std::array<std::string_view, 7> kWeekdayNames = {
    "domingo",      "segunda-feira", "terça-feira", "quarta-feira",
    "quinta-feira", "sexta-feira",   "sábado"};
inline constexpr std::array<std::string_view, 7> kWeekdayAbbreviations = {
    "dom", "seg", "ter", "qua", "qui", "sex", "sáb"};

}  // namespace pelm::regional
