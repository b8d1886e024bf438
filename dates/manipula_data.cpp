// Dates as texts.
#include "pelm/manipula_data.h"

#include <limits>

#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/value/clock.h"
#include "platform/value/formatting.h"
#include "platform/value/text.h"

namespace pelm {
namespace {

constexpr std::string_view kMesInvalido = "O mês informado não é valido";

constexpr std::string_view pattern(bool with_time) {
  return with_time ? "dd/mm/yyyy hh:mm:ss" : "dd/mm/yyyy";
}

std::string two_digits(int n) {
  const std::string digits = std::to_string(n);
  return digits.size() < 2 ? "0" + digits : digits;
}

std::string day_text(int year, int month, int day) {
  return std::to_string(year) + "-" + std::to_string(month) + "-" + std::to_string(day);
}

}  // namespace

std::string ManipulaData::DataAgora(bool DATAEHORA) const {
  const CivilTime today = clock_today().civil();
  std::string result =
      two_digits(today.day) + "/" + two_digits(today.month) + "/" + std::to_string(today.year);
  if (DATAEHORA) result += " " + to_text(clock_time());
  return result;
}

std::string ManipulaData::Minuto_hora(std::int32_t& Minuto) const {
  const std::int32_t hours = Minuto >= 60 ? Minuto / 60 : 0;
  Minuto -= hours * 60;
  // kept: a negative number of minutes is below 10 and gets the zero too
  return std::to_string(hours) + (Minuto < 10 ? ":0" : ":") + std::to_string(Minuto);
}

std::string ManipulaData::PrepData(Date DATAPARACONVERTER, bool DATAEHORA, bool SplitDate) const {
  if (!SplitDate) return format_date(DATAPARACONVERTER, pattern(DATAEHORA));

  const CivilTime t = DATAPARACONVERTER.civil();
  std::string pieces = day_text(t.year, t.month, t.day);
  if (DATAEHORA) {
    pieces += " " + std::to_string(t.hour) + ":" + std::to_string(t.minute) + ":" +
              std::to_string(t.second);
  }
  return format_date(to_date(pieces), pattern(DATAEHORA));
}

Date ManipulaData::PrepDataSemDia(std::int16_t Mes, std::int16_t Ano, bool MaiorDiadoMes) const {
  // kept: the message becomes the result, which is a date, so the caller gets a type mismatch
  if (Mes < 1 || Mes > 12) return to_date(kMesInvalido);

  std::int16_t day = 1;
  if (MaiorDiadoMes) {
    // kept: nothing stops at day 1; a year without dates goes on to the end of 16 bits
    for (day = 31; !is_date(day_text(Ano, Mes, day)); --day) {
      if (day == std::numeric_limits<std::int16_t>::min()) raise_error(error_number::kOverflow);
    }
  }
  return to_date(day_text(Ano, Mes, day));
}

std::string ManipulaData::PrepData_SQL(Date DATAPARACONVERTER, bool DATAEHORA) const {
  if (DATAEHORA) return "{ ts '" + format_date(DATAPARACONVERTER, "yyyy-mm-dd hh:mm:ss") + "' }";
  return "{ d '" + format_date(DATAPARACONVERTER, "yyyy-mm-dd") + "' }";
}

std::string ManipulaData::DataUniversal(std::string_view sData) const {
  // kept: a text of another length than ten is cut all the same
  const std::string day = text::mid(sData, 1, 2);
  const std::string month = text::mid(sData, 4, 2);
  const std::string year = text::mid(sData, 7, 4);
  return year + "-" + month + "-" + day;
}

}  // namespace pelm
