// Fixed-width fields and numbers in display form.
#include <string>

#include "pelm/base.h"
#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/value/formatting.h"
#include "platform/value/text.h"

namespace pelm {
namespace {

constexpr std::int16_t kInFront = 1;

/// A typed number with the decimal comma that the display uses.
std::string with_decimal_comma(std::string_view typed) {
  const bool has_both =
      typed.find('.') != std::string_view::npos && typed.find(',') != std::string_view::npos;
  // Dots beside a comma are thousands marks; on their own they are decimal points.
  return text::replace_all(typed, ".", has_both ? "" : ",");
}

}  // namespace

std::string Base::CompleteWith(std::string_view Data, std::int16_t Size, std::int16_t Side,
                               std::string_view Complemento) const {
  const auto length = static_cast<std::int64_t>(text::length(Data));
  if (length == Size) return std::string(Data);
  if (length > Size) return text::left(Data, Size);

  // kept: the fill goes in whole each time, so a longer one overshoots and an empty one does not
  // fill at all
  std::string fill;
  for (std::int64_t i = length; i < Size; ++i) fill += Complemento;
  return Side == kInFront ? fill + std::string(Data) : std::string(Data) + fill;
}

std::string Base::Format_Number(std::string_view Valor, std::string_view TIPO) const {
  try {
    if (TIPO == "int") return to_text(to_integer(Valor));
    if (TIPO == "dbl") return format_number(to_double(with_decimal_comma(Valor)));
  } catch (const Error&) {
    // kept: whatever is wrong with it, the text comes back as it was given
  }
  return std::string(Valor);
}

}  // namespace pelm
