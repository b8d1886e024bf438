// Reading and writing numbers.
#include "platform/value/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <system_error>

#include "platform/value/blank.h"
#include "platform/value/regional.h"

namespace pelm {
namespace {

constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }

// The digits of a number without its marks: digits × 10^exponent. More digits than can matter to
// a double are dropped, a trace of them kept, so that a text of any length reads in place.
class Mantissa {
 public:
  void add(char digit, bool after_decimal_mark) {
    any_ = true;
    if (count_ == 0 && digit == '0') {
      exponent_ -= after_decimal_mark ? 1 : 0;
    } else if (count_ < kKept) {
      digits_[count_++] = digit;
      exponent_ -= after_decimal_mark ? 1 : 0;
    } else {
      if (digit != '0') digits_[kKept - 1] = '1';
      exponent_ += after_decimal_mark ? 0 : 1;
    }
  }

  bool any() const { return any_; }

  // Nothing when the number is too large.
  std::optional<double> value(std::int64_t written_exponent) {
    if (count_ == 0) return 0.0;
    constexpr std::int64_t kFarBeyondDouble = 99999;
    const std::int64_t exponent =
        std::clamp(exponent_ + written_exponent, -kFarBeyondDouble, kFarBeyondDouble);
    char* end = digits_.data() + count_;
    *end++ = 'e';
    end = std::to_chars(end, digits_.data() + digits_.size(), exponent).ptr;

    double v = 0.0;
    const auto read = std::from_chars(digits_.data(), end, v);
    if (read.ec == std::errc{}) return v;
    const bool below_one = exponent + static_cast<std::int64_t>(count_) <= 0;
    return below_one ? std::optional(0.0) : std::nullopt;
  }

 private:
  static constexpr std::size_t kKept = 800;  // 767 digits decide any double
  std::array<char, kKept + 16> digits_;
  std::size_t count_ = 0;
  std::int64_t exponent_ = 0;
  bool any_ = false;
};

class NumberReader {
 public:
  explicit NumberReader(std::string_view s) : rest_(s) {}

  NumberReading read() {
    rest_ = skip_blanks(rest_);
    if (rest_.starts_with('&')) return read_bits();
    read_before();
    if (!read_digits() || !read_exponent() || !read_after()) return {};
    const std::optional<double> magnitude = mantissa_.value(exponent_);
    if (!magnitude) return {NumberReading::Kind::TooLarge, 0.0, 0};
    const bool negative = sign_ == '-' || opened_;
    return {NumberReading::Kind::Decimal, negative ? -*magnitude : *magnitude, 0};
  }

 private:
  bool take(char c) {
    if (!rest_.starts_with(c)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool take_currency() {
    if (currency_ || !rest_.starts_with(regional::kCurrency)) return false;
    rest_.remove_prefix(regional::kCurrency.size());
    return currency_ = true;
  }

  bool take_sign() {
    if (!rest_.starts_with('+') && !rest_.starts_with('-')) return false;
    sign_ = rest_.front();
    rest_.remove_prefix(1);
    return true;
  }

  void read_before() {
    do {
      rest_ = skip_blanks(rest_);
    } while (take_currency() || (sign_ == 0 && !opened_ && (take_sign() || (opened_ = take('(')))));
  }

  bool read_digits() {
    bool after_mark = false;
    for (; !rest_.empty(); rest_.remove_prefix(1)) {
      const char c = rest_.front();
      if (is_digit(c)) {
        mantissa_.add(c, after_mark);
      } else if (c == regional::kDecimalMark) {
        if (after_mark) return false;
        after_mark = true;
      } else if (c == regional::kGroupMark) {
        if (!mantissa_.any()) return false;  // kept: after the first digit it may stand anywhere
      } else {
        break;
      }
    }
    return mantissa_.any();
  }

  bool read_exponent() {
    if (rest_.empty() || std::string_view("eEdD").find(rest_.front()) == std::string_view::npos) {
      return true;
    }
    rest_.remove_prefix(1);
    const bool negative = take('-');
    if (!negative) take('+');
    if (rest_.empty() || !is_digit(rest_.front())) return false;
    constexpr std::int64_t kFarBeyondAnyText = 1'000'000'000'000;
    for (; !rest_.empty() && is_digit(rest_.front()); rest_.remove_prefix(1)) {
      exponent_ = std::min(exponent_ * 10 + (rest_.front() - '0'), kFarBeyondAnyText);
    }
    if (negative) exponent_ = -exponent_;
    return true;
  }

  bool read_after() {
    const bool sign_may_follow = sign_ == 0 && !opened_;
    bool closed = false;
    for (;;) {
      rest_ = skip_blanks(rest_);
      if (rest_.empty()) return opened_ == closed;
      if (sign_may_follow && (sign_ == 0 || rest_.starts_with(sign_)) && take_sign()) {
        continue;  // kept: "7--" is -7
      }
      if (opened_ && !closed && take(')')) {
        closed = true;
      } else if (!take_currency()) {
        return false;
      }
    }
  }

  NumberReading read_bits() {
    rest_.remove_prefix(1);
    const bool hexadecimal = take('H') || take('h');
    if (!hexadecimal && !take('O') && !take('o')) return {};
    NumberReading reading{NumberReading::Kind::BitPattern, 0.0, 0};
    const auto read = std::from_chars(rest_.data(), rest_.data() + rest_.size(), reading.bits,
                                      hexadecimal ? 16 : 8);
    if (read.ec == std::errc::invalid_argument) return {};
    rest_.remove_prefix(static_cast<std::size_t>(read.ptr - rest_.data()));
    if (!skip_blanks(rest_).empty()) return {};
    if (read.ec != std::errc{}) reading.kind = NumberReading::Kind::TooLarge;
    return reading;
  }

  std::string_view rest_;
  Mantissa mantissa_;
  std::int64_t exponent_ = 0;
  char sign_ = 0;
  bool opened_ = false;
  bool currency_ = false;
};

}  // namespace

NumberReading read_number(std::string_view s) noexcept { return NumberReader(s).read(); }

SignificantDigits::SignificantDigits(double v) noexcept
    : negative(std::signbit(v)), exponent(0), count(kMax), digits{} {
  std::array<char, 32> scientific{};  // d.dddddddddddddde±xx
  const char* end = std::to_chars(scientific.data(), scientific.data() + scientific.size(),
                                  std::fabs(v), std::chars_format::scientific, kMax - 1)
                        .ptr;
  digits[0] = scientific[0];
  std::copy_n(scientific.data() + 2, kMax - 1, digits.data() + 1);
  const char* written = scientific.data() + kMax + 2;  // past the "e"
  if (*written == '+') ++written;
  std::from_chars(written, end, exponent);
  while (count > 1 && digits[static_cast<std::size_t>(count) - 1] == '0') --count;
}

std::string_view not_finite_text(double v) noexcept {
  if (std::isfinite(v)) return {};
  if (std::isnan(v)) return "-1,#IND";
  return v > 0 ? "1,#INF" : "-1,#INF";
}

std::string number_text(double v) {
  if (!std::isfinite(v)) return std::string(not_finite_text(v));
  const SignificantDigits d(v);
  const std::string_view digits = d.text();
  const int places = std::max(0, d.count - 1 - d.exponent);
  std::string out;
  if (d.negative) out += '-';

  if (d.exponent >= SignificantDigits::kMax || places > SignificantDigits::kMax) {
    out += digits.front();
    if (digits.size() > 1) (out += regional::kDecimalMark) += digits.substr(1);
    out += d.exponent < 0 ? "E-" : "E+";
    const int magnitude = std::abs(d.exponent);
    if (magnitude < 10) out += '0';
    return out += std::to_string(magnitude);
  }
  if (d.exponent < 0) {
    ((out += '0') += regional::kDecimalMark).append(static_cast<std::size_t>(-d.exponent - 1), '0');
    return out += digits;
  }
  const auto whole = static_cast<std::size_t>(d.exponent) + 1;
  if (digits.size() <= whole) return out.append(digits).append(whole - digits.size(), '0');
  return ((out += digits.substr(0, whole)) += regional::kDecimalMark) += digits.substr(whole);
}

}  // namespace pelm
