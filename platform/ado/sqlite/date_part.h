/// The parts of a date that DATEPART, DATENAME, DATEADD and DATEDIFF know.
#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "platform/ado/sqlite/tokenizer.h"

namespace pelm::ado::sqlite {

enum class DatePart {
  Year,
  Quarter,
  Month,
  DayOfYear,
  Day,
  Week,
  Weekday,
  Hour,
  Minute,
  Second,
  Millisecond
};

/// Nothing for a name that is no part.
inline std::optional<DatePart> date_part_named(std::string_view name) {
  struct Name {
    std::string_view name;
    DatePart part;
  };
  static constexpr std::array kNames = {
      Name{"year", DatePart::Year},       Name{"yyyy", DatePart::Year},
      Name{"yy", DatePart::Year},         Name{"quarter", DatePart::Quarter},
      Name{"qq", DatePart::Quarter},      Name{"q", DatePart::Quarter},
      Name{"month", DatePart::Month},     Name{"mm", DatePart::Month},
      Name{"m", DatePart::Month},         Name{"dayofyear", DatePart::DayOfYear},
      Name{"dy", DatePart::DayOfYear},    Name{"y", DatePart::DayOfYear},
      Name{"day", DatePart::Day},         Name{"dd", DatePart::Day},
      Name{"d", DatePart::Day},           Name{"week", DatePart::Week},
      Name{"wk", DatePart::Week},         Name{"ww", DatePart::Week},
      Name{"weekday", DatePart::Weekday}, Name{"dw", DatePart::Weekday},
      Name{"w", DatePart::Weekday},       Name{"hour", DatePart::Hour},
      Name{"hh", DatePart::Hour},         Name{"minute", DatePart::Minute},
      Name{"mi", DatePart::Minute},       Name{"n", DatePart::Minute},
      Name{"second", DatePart::Second},   Name{"ss", DatePart::Second},
      Name{"s", DatePart::Second},        Name{"millisecond", DatePart::Millisecond},
      Name{"ms", DatePart::Millisecond},
  };
  const auto found = std::find_if(kNames.begin(), kNames.end(),
                                  [&](const Name& n) { return equal_names(n.name, name); });
  if (found == kNames.end()) return {};
  return found->part;
}

}  // namespace pelm::ado::sqlite
