// Check digits of payment slips.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "pelm/base.h"
#include "pelm/error.h"
#include "platform/value/text.h"

namespace pelm {
namespace {

constexpr std::size_t kBarcodeLength = 44;
constexpr std::size_t kTypedLineLength = 47;

int digit(char c) {
  if (c < '0' || c > '9') raise_error(error_number::kTypeMismatch);
  return c - '0';
}

/// A character that takes more than one byte is no digit.
int digit(std::string_view character) {
  if (character.size() != 1) raise_error(error_number::kTypeMismatch);
  return digit(character.front());
}

/// Weights 2, 1, 2, 1 … from the right; a product of two digits counts as their sum.
int modulus10_sum(std::string_view digits) {
  int sum = 0;
  int weight = 2;
  for (auto c = digits.rbegin(); c != digits.rend(); ++c) {
    const int product = digit(*c) * weight;
    sum += product < 10 ? product : product - 9;
    weight = 3 - weight;
  }
  return sum;
}

/// Weights 2 to 9 from the right, again and again.
int modulus11_sum(std::string_view digits) {
  int sum = 0;
  int weight = 2;
  for (auto c = digits.rbegin(); c != digits.rend(); ++c) {
    sum += digit(*c) * weight;
    weight = weight == 9 ? 2 : weight + 1;
  }
  return sum;
}

/// Cuts the character at a 1-based position out of `barcode` and returns it.
std::string cut_out(std::string& barcode, std::int64_t position) {
  std::string character = text::mid(barcode, position, 1);
  barcode.erase(text::left(barcode, position - 1).size(), character.size());
  return character;
}

/// The places of a code in a fixed number, zeros after its last: the compiler takes many at once.
constexpr std::size_t kPlaces = 48;
using Places = std::array<std::uint8_t, kPlaces>;

/// What each digit of a code of `length` counts; nothing for a code of another length, or where
/// any character is no digit. The sums then need no look at each of them.
template <std::size_t length>
std::optional<Places> digits_of(std::string_view code) {
  static_assert(length <= kPlaces);
  if (code.size() != length) return std::nullopt;
  Places digits;
  digits.fill('0');
  std::memcpy(digits.data(), code.data(), length);
  std::uint8_t wrong = 0;
  for (std::uint8_t& digit : digits) {
    digit = static_cast<std::uint8_t>(digit - '0');
    wrong = static_cast<std::uint8_t>(wrong | (digit > 9));
  }
  return wrong == 0 ? std::optional(digits) : std::nullopt;
}

/// Twice as wide as the places, as the products are.
using Weights = std::array<std::uint16_t, kPlaces>;

/// As modulus11_sum weighs what is left of a barcode when the digit at `check` is cut out.
constexpr Weights modulus11_weights(std::size_t check) {
  Weights weights{};
  std::uint16_t weight = 2;
  for (std::size_t i = kBarcodeLength; i-- > 0;) {
    if (i == check) continue;
    weights[i] = weight;
    weight = weight == 9 ? 2 : static_cast<std::uint16_t>(weight + 1);
  }
  return weights;
}

constexpr std::size_t kBillingCheck = 4;  // from 0, as all places here
constexpr Weights kBillingWeights = modulus11_weights(kBillingCheck);

int weighed_sum(const Places& digits, const Weights& weights) {
  std::uint16_t sum = 0;
  for (std::size_t i = 0; i < kPlaces; ++i) {
    sum = static_cast<std::uint16_t>(sum + digits[i] * weights[i]);
  }
  return sum;
}

/// A stretch of a code, and the place of the digit that checks it.
struct Stretch {
  std::size_t first;
  std::size_t length;
  std::size_t check() const { return first + length; }
};

/// Every bit of the places whose digits modulus10_sum doubles.
template <std::size_t count>
constexpr Places doubled_places(const std::array<Stretch, count>& stretches) {
  Places doubled{};
  for (const Stretch& s : stretches) {
    for (std::size_t i = 0; i < s.length; i += 2) doubled[s.first + s.length - 1 - i] = 0xFF;
  }
  return doubled;
}

/// Around its check digit, which is cut out: the second stretch goes on as the first leaves off.
constexpr Stretch kCollectionLeft = {0, 3};
constexpr std::array kCollection = {kCollectionLeft, Stretch{4, 40}};
constexpr Places kCollectionDoubled = doubled_places(kCollection);

constexpr std::array kTypedLine = {Stretch{0, 9}, Stretch{10, 10}, Stretch{21, 10}};
constexpr Places kTypedLineDoubled = doubled_places(kTypedLine);

/// What modulus10_sum adds for each place.
Places modulus10_terms(const Places& digits, const Places& doubled) {
  Places terms;
  for (std::size_t i = 0; i < kPlaces; ++i) {
    const int again = digits[i] > 4 ? digits[i] - 9 : digits[i];
    terms[i] = static_cast<std::uint8_t>(digits[i] + (again & doubled[i]));
  }
  return terms;
}

/// Of eight terms of 9 at most, whatever order the machine reads them in.
int sum_of_eight(const Places& terms, std::size_t first) {
  std::uint64_t eight = 0;
  std::memcpy(&eight, terms.data() + first, sizeof eight);
  return static_cast<int>(eight * 0x0101'0101'0101'0101U >> 56U);
}

int sum_of_all(const Places& terms) {
  int sum = 0;
  for (std::size_t i = 0; i < kPlaces; i += 8) sum += sum_of_eight(terms, i);
  return sum;
}

/// Of the terms of a stretch and its check digit, which no term doubles.
int sum_with_check(const Places& terms, const Stretch& stretch) {
  int sum = sum_of_eight(terms, stretch.first);
  for (std::size_t i = stretch.first + 8; i <= stretch.check(); ++i) sum += terms[i];
  return sum;
}

}  // namespace

bool Base::fCalcularDV10_GeralArrecadacao(std::string& sCodigoBarra) const {
  // kept: a multiple of 10 gives 10, which no digit equals
  if (const auto digits = digits_of<kBarcodeLength>(sCodigoBarra)) {
    const Places terms = modulus10_terms(*digits, kCollectionDoubled);
    const int expected = (*digits)[kCollectionLeft.check()];
    sCodigoBarra.erase(kCollectionLeft.check(), 1);
    return 10 - (sum_of_all(terms) - expected) % 10 == expected;
  }
  if (text::length(sCodigoBarra) != kBarcodeLength) return false;
  const std::string expected = cut_out(sCodigoBarra, 4);
  const int result = 10 - modulus10_sum(sCodigoBarra) % 10;
  return result == digit(expected);
}

bool Base::fCalcularDV11_Cobranca(std::string& sCodigoBarra) const {
  const auto result_of = [](int sum) {
    const int result = 11 - sum % 11;
    return result == 10 || result == 11 ? 1 : result;
  };
  if (const auto digits = digits_of<kBarcodeLength>(sCodigoBarra)) {
    sCodigoBarra.erase(kBillingCheck, 1);
    return result_of(weighed_sum(*digits, kBillingWeights)) == (*digits)[kBillingCheck];
  }
  if (text::length(sCodigoBarra) != kBarcodeLength) return false;
  const std::string expected = cut_out(sCodigoBarra, 5);
  return result_of(modulus11_sum(sCodigoBarra)) == digit(expected);
}

bool Base::fCalcularDV10_Cobranca(std::string_view sCodigoBarra) const {
  const auto result_of = [](int sum) { return (10 - sum % 10) % 10; };
  if (const auto digits = digits_of<kTypedLineLength>(sCodigoBarra)) {
    const Places terms = modulus10_terms(*digits, kTypedLineDoubled);
    return std::ranges::all_of(kTypedLine, [&](const Stretch& field) {
      return sum_with_check(terms, field) % 10 == 0;  // as below: the digit makes it so
    });
  }
  if (text::length(sCodigoBarra) != kTypedLineLength) return false;
  const auto part = [&](std::size_t first, std::size_t length) {
    return text::mid(sCodigoBarra, static_cast<std::int64_t>(first + 1),
                     static_cast<std::int64_t>(length));
  };
  for (const Stretch& field : kTypedLine) {
    const int result = result_of(modulus10_sum(part(field.first, field.length)));
    const std::string expected = part(field.check(), 1);
    if (result != digit(expected)) return false;
  }
  return true;  // kept: what follows the third field is not looked at
}

}  // namespace pelm
