// Check digits of payment slips.
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

struct Field {
  std::int64_t first;
  std::int64_t length;
};

constexpr Field kTypedLineFields[] = {{1, 9}, {11, 10}, {22, 10}};  // each followed by its digit

}  // namespace

bool Base::fCalcularDV10_GeralArrecadacao(std::string& sCodigoBarra) const {
  if (text::length(sCodigoBarra) != kBarcodeLength) return false;
  const std::string expected = cut_out(sCodigoBarra, 4);
  // kept: a multiple of 10 gives 10, which no digit equals
  const int result = 10 - modulus10_sum(sCodigoBarra) % 10;
  return result == digit(expected);
}

bool Base::fCalcularDV11_Cobranca(std::string& sCodigoBarra) const {
  if (text::length(sCodigoBarra) != kBarcodeLength) return false;
  const std::string expected = cut_out(sCodigoBarra, 5);
  int result = 11 - modulus11_sum(sCodigoBarra) % 11;
  if (result == 10 || result == 11) result = 1;
  return result == digit(expected);
}

bool Base::fCalcularDV10_Cobranca(std::string_view sCodigoBarra) const {
  if (text::length(sCodigoBarra) != kTypedLineLength) return false;
  for (const Field& field : kTypedLineFields) {
    int result = 10 - modulus10_sum(text::mid(sCodigoBarra, field.first, field.length)) % 10;
    if (result == 10) result = 0;
    const std::string expected = text::mid(sCodigoBarra, field.first + field.length, 1);
    if (result != digit(expected)) return false;
  }
  return true;  // kept: what follows the third field is not looked at
}

}  // namespace pelm
