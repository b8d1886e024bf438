/// A literal of a statement that becomes a parameter.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pelm::ado::sqlite {

struct Literal {
  enum class Kind { Number, Text, Date };
  Kind kind = Kind::Number;
  std::int64_t number = 0;
  /// As written, without its quotes; a part of the statement's text, of a number as well.
  std::string_view text;
  bool doubled = false;  ///< quotes inside are doubled still

  std::string content() const;
};

/// The longest number whose digits fit 64 bits whatever they are.
inline constexpr std::size_t kLongestNumber = 18;

}  // namespace pelm::ado::sqlite
