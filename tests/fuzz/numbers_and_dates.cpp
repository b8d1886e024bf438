// Texts as numbers and dates, and both as texts again.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "fuzz/fuzzing.h"
#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/value/date_text.h"
#include "platform/value/formatting.h"
#include "platform/value/number_text.h"

namespace {

using pelm::Variant;
using pelm::fuzz::require;

template <class Call>
void may_raise(Call call) {
  try {
    static_cast<void>(call());
  } catch (const pelm::Error& error) {
    require(error.number() != 0);
  }
}

void numbers(std::string_view text) {
  const pelm::NumberReading reading = pelm::read_number(text);
  if (reading.kind == pelm::NumberReading::Kind::Decimal) {
    const std::string written = pelm::number_text(reading.value);
    const pelm::NumberReading again = pelm::read_number(written);
    require(again.kind == reading.kind || again.kind == pelm::NumberReading::Kind::TooLarge);
    // 15 digits are kept, so what is written once is written so again.
    if (again.kind == reading.kind) require(pelm::number_text(again.value) == written);
  }
  double value = 0;
  if (!text.empty()) std::memcpy(&value, text.data(), std::min(text.size(), sizeof(value)));
  may_raise([&] { return pelm::number_text(value); });
  may_raise([&] { return pelm::format_number(value, static_cast<int>(text.size() % 18)); });
  may_raise([&] { return pelm::to_date(Variant(value)); });
  may_raise([&] { return pelm::to_long(Variant(value)); });
  may_raise([&] { return pelm::to_integer(Variant(value)); });
}

void dates(std::string_view text, std::string_view pattern) {
  if (const auto date = pelm::read_date(text)) {
    const auto again = pelm::read_date(pelm::date_text(*date));
    require(again && pelm::date_text(*again) == pelm::date_text(*date));
    may_raise([&] { return pelm::format_date(*date, pattern); });
    may_raise([&] { return pelm::add_months(*date, static_cast<double>(pattern.size()) - 8); });
  }
  may_raise([&] { return pelm::format(Variant(std::string(text)), pattern); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pelm::fuzz::Pieces pieces(pelm::fuzz::text_of(data, size));
  const std::string_view pattern = pieces.next();
  const std::string_view text = pieces.next();
  numbers(text);
  dates(text, pattern);
  const Variant value{std::string(text)};
  may_raise([&] { return pelm::to_integer(value); });
  may_raise([&] { return pelm::to_long(value); });
  may_raise([&] { return pelm::to_double(value); });
  may_raise([&] { return pelm::to_boolean(value); });
  may_raise([&] { return pelm::to_date(value); });
  static_cast<void>(pelm::is_date(value));
  static_cast<void>(pelm::is_numeric(value));
  return 0;
}
