// Check digits of payment slips.
#include <algorithm>
#include <array>
#include <string>

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

/// True when every character is a digit: the sums then need no look at each of them.
bool all_digits(std::string_view text) {
  unsigned wrong = 0;
  for (const char c : text) wrong |= static_cast<unsigned>(static_cast<unsigned char>(c - '0') > 9);
  return wrong == 0;
}

/// What each position of a barcode counts, 0 at its check digit's.
using Weights = std::array<int, kBarcodeLength>;

/// As modulus11_sum weighs what is left when the character at `check` is cut out.
constexpr Weights modulus11_weights(std::size_t check) {
  Weights weights{};
  int weight = 2;
  for (std::size_t i = kBarcodeLength; i-- > 0;) {
    if (i == check) continue;
    weights[i] = weight;
    weight = weight == 9 ? 2 : weight + 1;
  }
  return weights;
}

constexpr Weights kBillingWeights = modulus11_weights(4);

int weighed_sum(std::string_view digits, const Weights& weights) {
  int sum = 0;
  for (std::size_t i = 0; i < kBarcodeLength; ++i) sum += (digits[i] - '0') * weights[i];
  return sum;
}

/// What modulus10_sum takes for a digit of weight 2.
constexpr std::array<int, 10> kDoubled = {0, 2, 4, 6, 8, 1, 3, 5, 7, 9};

/// As modulus10_sum, of digits alone.
int doubling_sum(std::string_view digits) {
  int sum = 0;
  bool doubled = true;
  for (auto c = digits.rbegin(); c != digits.rend(); ++c, doubled = !doubled) {
    const int value = *c - '0';
    sum += doubled ? kDoubled[static_cast<std::size_t>(value)] : value;
  }
  return sum;
}

/// Takes the character at a 0-based place out of a text of one-byte characters.
char taken_out(std::string& digits, std::size_t place) {
  const char taken = digits[place];
  digits.erase(place, 1);
  return taken;
}

struct Field {
  std::int64_t first;
  std::int64_t length;
};

constexpr Field kTypedLineFields[] = {{1, 9}, {11, 10}, {22, 10}};  // each followed by its digit

}  // namespace

bool Base::fCalcularDV10_GeralArrecadacao(std::string& sCodigoBarra) const {
  // kept: a multiple of 10 gives 10, which no digit equals
  if (sCodigoBarra.size() == kBarcodeLength && all_digits(sCodigoBarra)) {
    const int expected = taken_out(sCodigoBarra, 3) - '0';
    return 10 - doubling_sum(sCodigoBarra) % 10 == expected;
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
  if (sCodigoBarra.size() == kBarcodeLength && all_digits(sCodigoBarra)) {
    const int result = result_of(weighed_sum(sCodigoBarra, kBillingWeights));
    return result == taken_out(sCodigoBarra, 4) - '0';
  }
  if (text::length(sCodigoBarra) != kBarcodeLength) return false;
  const std::string expected = cut_out(sCodigoBarra, 5);
  return result_of(modulus11_sum(sCodigoBarra)) == digit(expected);
}

bool Base::fCalcularDV10_Cobranca(std::string_view sCodigoBarra) const {
  const auto result_of = [](int sum) { return (10 - sum % 10) % 10; };
  if (sCodigoBarra.size() == kTypedLineLength && all_digits(sCodigoBarra)) {
    return std::ranges::all_of(kTypedLineFields, [&](const Field& field) {
      const auto first = static_cast<std::size_t>(field.first - 1);
      const auto length = static_cast<std::size_t>(field.length);
      const int result = result_of(doubling_sum(sCodigoBarra.substr(first, length)));
      return result == sCodigoBarra[first + length] - '0';
    });
  }
  if (text::length(sCodigoBarra) != kTypedLineLength) return false;
  for (const Field& field : kTypedLineFields) {
    const int result = result_of(modulus10_sum(text::mid(sCodigoBarra, field.first, field.length)));
    const std::string expected = text::mid(sCodigoBarra, field.first + field.length, 1);
    if (result != digit(expected)) return false;
  }
  return true;  // kept: what follows the third field is not looked at
}

}  // namespace pelm
