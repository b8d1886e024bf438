// `pelm barcode`: the check digits of payment slips.
#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "pelm/base.h"
#include "tools/pelm/commands.h"

namespace pelm::tool {
namespace {

constexpr const char* kAbout =
    "Verifies the check digits of payment slips: barcodes of 44 digits, and typed lines of 47.\n"
    "Blanks, dots and hyphens between the digits do not count. Of 44 digits, those that begin\n"
    "with 8 are collection slips (utilities and taxes), all others are bank slips.\n\n"
    "Exit status 0: every code is right; 1: a check digit is wrong; 2: a code cannot be "
    "checked.\n\n"
    "  pelm barcode 00190.50095 40144.816069 06809.350314 3 37370000000100";

constexpr std::size_t kBarcodeLength = 44;
constexpr std::size_t kTypedLineLength = 47;

struct Verdict {
  ExitStatus status;
  std::string text;
};

std::string digits_of(const std::string& code) {
  std::string digits;
  std::ranges::copy_if(code, std::back_inserter(digits),
                       [](char c) { return c != ' ' && c != '.' && c != '-'; });
  return digits;
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

Verdict judged(bool is_right, const std::string& kind, const std::string& wrong) {
  return is_right ? Verdict{kDone, "right, " + kind}
                  : Verdict{kFailed, "WRONG, " + kind + ": " + wrong};
}

struct Field {
  std::size_t first;
  std::size_t size;  // its check digit included
};

constexpr Field kTypedLineFields[] = {{0, 10}, {10, 11}, {21, 11}};

/// Which fields of a typed line are wrong: each is tried alone in a line that is otherwise zeros,
/// whose fields are right.
std::string wrong_fields(const Base& base, const std::string& line) {
  std::string wrong;
  int number = 0;
  for (const Field& field : kTypedLineFields) {
    ++number;
    std::string alone(kTypedLineLength, '0');
    alone.replace(field.first, field.size, line, field.first, field.size);
    if (base.fCalcularDV10_Cobranca(alone)) continue;
    wrong += (wrong.empty() ? "" : ", ") + std::to_string(number) + " (check digit at position " +
             std::to_string(field.first + field.size) + ")";
  }
  return wrong;
}

Verdict check_typed_line(const Base& base, const std::string& line) {
  return judged(base.fCalcularDV10_Cobranca(line), "typed line of a bank slip",
                "modulus 10 of field " + wrong_fields(base, line));
}

Verdict check_barcode(const Base& base, std::string code) {
  if (code.front() == '8') {
    return judged(base.fCalcularDV10_GeralArrecadacao(code), "barcode of a collection slip",
                  "modulus 10, check digit at position 4");
  }
  return judged(base.fCalcularDV11_Cobranca(code), "barcode of a bank slip",
                "modulus 11, check digit at position 5");
}

Verdict check(const Base& base, const std::string& code) {
  const std::string digits = digits_of(code);
  const auto other = std::ranges::find_if_not(digits, is_digit);
  if (other != digits.end()) {
    return {kRefused, "not checked: it has more than digits, blanks, dots and hyphens"};
  }
  if (digits.size() == kTypedLineLength) return check_typed_line(base, digits);
  if (digits.size() == kBarcodeLength) return check_barcode(base, digits);
  return {kRefused, "not checked: it has " + std::to_string(digits.size()) +
                        " digits; a barcode has 44, a bank slip's typed line 47"};
}

int check_all(const std::vector<std::string>& codes) {
  const Base base;
  int status = kDone;
  for (const std::string& code : codes) {
    const Verdict verdict = check(base, code);
    std::cout << code << ": " << verdict.text << '\n';
    status = std::max<int>(status, verdict.status);
  }
  return status;
}

}  // namespace

void add_barcode(CLI::App& program, int& status) {
  CLI::App* command = program.add_subcommand("barcode", "Verify the check digits of payment slips");
  auto codes = std::make_shared<std::vector<std::string>>();
  command->footer(kAbout);
  command->add_option("CODE", *codes, "Barcode or typed line; quote one that has blanks")
      ->required();
  command->callback([codes, &status] { status = check_all(*codes); });
}

}  // namespace pelm::tool
