// Numbers written with a point.
#include "frame/number_parsing.h"

#include <cmath>

#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/value/text.h"

namespace pelm {

double parse_point_number(std::string_view sValor) {
  const std::size_t point = sValor.find('.');
  if (point == std::string_view::npos) return to_long(sValor);

  const std::string_view fraction = sValor.substr(point + 1);
  const double whole = to_long(sValor.substr(0, point));
  const double part = to_long(fraction);  // kept: further points group digits, a comma rounds
  const double scale = std::pow(100.0, static_cast<double>(text::length(fraction)));
  if (std::isinf(scale)) raise_error(error_number::kOverflow);
  return whole + part / scale;
}

}  // namespace pelm
