/// Numbers as people write them here, and the 15 digits that a number is worth.
///
/// Contents: `read_number`, `number_text`, `SignificantDigits`.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace pelm {

/// What a text says when it is read as a number.
struct NumberReading {
  enum class Kind {
    NotANumber,
    Decimal,     ///< `value`
    BitPattern,  ///< `bits`, from &H or &O: the receiving type says what they are worth
    TooLarge,
  };
  Kind kind = Kind::NotANumber;
  double value = 0.0;
  std::uint64_t bits = 0;
};

/// Sign before or after, or parentheses for a negative; "R$" before or after; "." skipped after
/// the first digit, "," as the decimal mark; exponent with e or d; blanks at the ends and beside
/// sign and currency. Too small a number reads as 0.
NumberReading read_number(std::string_view s) noexcept;

/// A finite number rounded to 15 significant decimal digits, without zeros at the end.
struct SignificantDigits {
  static constexpr int kMax = 15;

  explicit SignificantDigits(double v) noexcept;

  /// The digits, at least one; "0" for zero.
  std::string_view text() const noexcept {
    return {digits.data(), static_cast<std::size_t>(count)};
  }

  bool negative;  ///< True for -0.0 too.
  int exponent;   ///< Power of ten of the first digit.
  int count;
  std::array<char, kMax> digits;
};

/// 15 significant digits and a decimal comma; with an exponent when plain writing would take more
/// than 15 digits before the comma or 15 after it. What is not finite prints as the old platform
/// printed it: "1,#INF", "-1,#INF", "-1,#IND".
std::string number_text(double v);

/// The text of a number that is not finite; empty for a finite one.
std::string_view not_finite_text(double v) noexcept;

}  // namespace pelm
