// Check digits of payment slips: what is accepted, what is refused, what becomes of the text.
#include <gtest/gtest.h>

#include <array>
#include <span>
#include <string>
#include <string_view>

#include "automation/dispatch.h"
#include "pelm/base.h"
#include "platform/value/expect_error.h"

namespace pelm {
namespace {

constexpr std::string_view kCollectionBarcode = "83682000000045001234567890123456789012345678";
constexpr std::string_view kBankBarcode = "00193373700000001000500940144816060680935031";
constexpr std::string_view kTypedLine = "00190500954014481606906809350314337370000000100";

using BarcodeCheck = bool (Base::*)(std::string&) const;

/// A barcode, what the check answers, and what the caller's text holds afterwards.
struct Barcode {
  std::string_view given;
  bool right;
  std::string_view left_over;
};

void expect_all(BarcodeCheck check, std::span<const Barcode> cases) {
  const Base base;
  for (const Barcode& c : cases) {
    SCOPED_TRACE(c.given);
    std::string text(c.given);
    EXPECT_EQ((base.*check)(text), c.right);
    EXPECT_EQ(text, c.left_over);
  }
}

std::string with_digit(std::string_view text, std::size_t position, char digit) {
  std::string changed(text);
  changed[position - 1] = digit;
  return changed;
}

char another(char digit) { return digit == '9' ? '0' : static_cast<char>(digit + 1); }

std::string with_check_digit(std::string_view body, std::size_t position, char digit) {
  std::string barcode(body);
  barcode.insert(position - 1, 1, digit);
  return barcode;
}

/// The check digits, out of ten, that the operation accepts at `position` of a body.
std::string accepted_digits(BarcodeCheck check, std::string_view body, std::size_t position) {
  const Base base;
  std::string accepted;
  for (char digit = '0'; digit <= '9'; ++digit) {
    std::string barcode = with_check_digit(body, position, digit);
    if ((base.*check)(barcode)) accepted += digit;
    EXPECT_EQ(barcode, body);
  }
  return accepted;
}

TEST(FCalcularDV10GeralArrecadacao, AcceptsOrRefusesAndLeavesTheBody) {
  constexpr Barcode kCases[] = {
      {kCollectionBarcode, true, "8362000000045001234567890123456789012345678"},
      {"83692000000045001234567890123456789012345678", false,
       "8362000000045001234567890123456789012345678"},
      {"83672000000045001234567890123456789012345004", true,
       "8362000000045001234567890123456789012345004"},
      {"83612000000045001234567890123456789012345002", true,
       "8362000000045001234567890123456789012345002"},
  };
  expect_all(&Base::fCalcularDV10_GeralArrecadacao, kCases);
}

TEST(FCalcularDV10GeralArrecadacao, AMultipleOfTenIsAlwaysRefused) {
  std::string barcode = "83602000000045001234567890123456789012345677";
  EXPECT_FALSE(Base().fCalcularDV10_GeralArrecadacao(barcode));
  EXPECT_EQ(barcode, "8362000000045001234567890123456789012345677");
  EXPECT_EQ(accepted_digits(&Base::fCalcularDV10_GeralArrecadacao, barcode, 4), "");
}

TEST(FCalcularDV10GeralArrecadacao, EveryOtherSumHasOneCheckDigit) {
  struct Body {
    std::string_view digits;
    std::string_view accepted;
  };
  // Weighted sums 141, 142 and so on up to 149, modulo 10.
  constexpr Body kBodies[] = {
      {"8362000000045001234567890123456789012345003", "9"},
      {"8362000000045001234567890123456789012345008", "8"},
      {"8362000000045001234567890123456789012345004", "7"},
      {"8362000000045001234567890123456789012345009", "6"},
      {"8362000000045001234567890123456789012345000", "5"},
      {"8362000000045001234567890123456789012345005", "4"},
      {"8362000000045001234567890123456789012345001", "3"},
      {"8362000000045001234567890123456789012345006", "2"},
      {"8362000000045001234567890123456789012345002", "1"},
  };
  for (const Body& body : kBodies) {
    EXPECT_EQ(accepted_digits(&Base::fCalcularDV10_GeralArrecadacao, body.digits, 4), body.accepted)
        << body.digits;
  }
}

TEST(FCalcularDV11Cobranca, AcceptsOrRefusesAndLeavesTheBody) {
  constexpr Barcode kCases[] = {
      {kBankBarcode, true, "0019373700000001000500940144816060680935031"},
      {"00194373700000001000500940144816060680935031", false,
       "0019373700000001000500940144816060680935031"},
      {"00199373700000001000500940144816060680935008", true,
       "0019373700000001000500940144816060680935008"},
  };
  expect_all(&Base::fCalcularDV11_Cobranca, kCases);
}

TEST(FCalcularDV11Cobranca, RemaindersZeroOneAndTenWantTheDigitOne) {
  struct Body {
    std::string_view digits;
    std::string_view accepted;
  };
  constexpr Body kBodies[] = {
      {"0019373700000001000500940144816060680935007", "1"},  // sum 715, remainder 0: 11
      {"0019373700000001000500940144816060680935002", "1"},  // sum 705, remainder 1: 10
      {"0019373700000001000500940144816060680935001", "1"},  // sum 703, remainder 10: 1
      {"0019373700000001000500940144816060680935008", "9"},  // remainder 2
      {"0019373700000001000500940144816060680935003", "8"},
      {"0019373700000001000500940144816060680935009", "7"},
      {"0019373700000001000500940144816060680935004", "6"},
      {"0019373700000001000500940144816060680935013", "5"},
      {"0019373700000001000500940144816060680935005", "4"},
      {"0019373700000001000500940144816060680935000", "3"},
      {"0019373700000001000500940144816060680935006", "2"},  // remainder 9
  };
  for (const Body& body : kBodies) {
    EXPECT_EQ(accepted_digits(&Base::fCalcularDV11_Cobranca, body.digits, 5), body.accepted)
        << body.digits;
  }
}

class BarcodeChecks : public testing::TestWithParam<BarcodeCheck> {};

TEST_P(BarcodeChecks, AWrongLengthIsRefusedAndLeftAlone) {
  for (std::size_t length = 0; length <= 100; ++length) {
    if (length == 44) continue;
    std::string text(length, '1');
    EXPECT_FALSE((Base().*GetParam())(text)) << length;
    EXPECT_EQ(text, std::string(length, '1'));
  }
}

TEST_P(BarcodeChecks, ASecondCheckMeetsTheShortenedTextAndRefusesIt) {
  std::string text(GetParam() == &Base::fCalcularDV11_Cobranca ? kBankBarcode : kCollectionBarcode);
  EXPECT_TRUE((Base().*GetParam())(text));
  const std::string body = text;
  EXPECT_FALSE((Base().*GetParam())(text));
  EXPECT_EQ(text, body);
}

TEST_P(BarcodeChecks, LettersOfAWrongLengthRaiseNothing) {
  std::string text(43, 'x');
  EXPECT_FALSE((Base().*GetParam())(text));
  EXPECT_EQ(text, std::string(43, 'x'));
}

TEST_P(BarcodeChecks, WhatIsNotADigitRaises13AfterTheTextIsShortened) {
  for (std::size_t position = 1; position <= 44; ++position) {
    for (const std::string_view character : {"x", " ", "-", "/", ":", "²", "é", "٣"}) {
      std::string text(44, '1');
      text.replace(position - 1, 1, character);
      EXPECT_ERROR(error_number::kTypeMismatch, (Base().*GetParam())(text))
          << position << character;
      const bool was_cut_out = position == (GetParam() == &Base::fCalcularDV11_Cobranca ? 5U : 4U);
      EXPECT_EQ(text.size(), was_cut_out ? 43U : 42U + character.size());
    }
  }
}

TEST_P(BarcodeChecks, TheLengthCountsCharacters) {
  std::string text(42, '1');
  text += "é";  // 43 characters, 44 bytes
  const std::string given = text;
  EXPECT_FALSE((Base().*GetParam())(text));
  EXPECT_EQ(text, given);
}

INSTANTIATE_TEST_SUITE_P(Barcode, BarcodeChecks,
                         testing::Values(&Base::fCalcularDV10_GeralArrecadacao,
                                         &Base::fCalcularDV11_Cobranca),
                         [](const auto& check) {
                           return check.index == 0 ? "GeralArrecadacao" : "Cobranca";
                         });

TEST(FCalcularDV10Cobranca, AcceptsATypedLine) {
  EXPECT_TRUE(Base().fCalcularDV10_Cobranca(kTypedLine));
}

TEST(FCalcularDV10Cobranca, AnyOtherDigitInTheThreeFieldsIsRefused) {
  for (std::size_t position = 1; position <= 32; ++position) {
    const std::string line = with_digit(kTypedLine, position, another(kTypedLine[position - 1]));
    EXPECT_FALSE(Base().fCalcularDV10_Cobranca(line)) << position;
  }
}

TEST(FCalcularDV10Cobranca, WhatFollowsTheFieldsIsNotLookedAt) {
  for (std::size_t position = 33; position <= 47; ++position) {
    EXPECT_TRUE(Base().fCalcularDV10_Cobranca(
        with_digit(kTypedLine, position, another(kTypedLine[position - 1]))))
        << position;
    EXPECT_TRUE(Base().fCalcularDV10_Cobranca(with_digit(kTypedLine, position, 'x'))) << position;
  }
}

TEST(FCalcularDV10Cobranca, AMultipleOfTenWantsTheDigitZero) {
  // 001905002 weighs 20.
  const std::string line = "0019050020" + std::string(kTypedLine.substr(10));
  EXPECT_TRUE(Base().fCalcularDV10_Cobranca(line));
  EXPECT_FALSE(Base().fCalcularDV10_Cobranca(with_digit(line, 10, '1')));
}

TEST(FCalcularDV10Cobranca, AWrongLengthIsRefused) {
  for (std::size_t length = 0; length <= 100; ++length) {
    if (length == 47) continue;
    EXPECT_FALSE(Base().fCalcularDV10_Cobranca(std::string(length, '1'))) << length;
    EXPECT_FALSE(Base().fCalcularDV10_Cobranca(std::string(length, 'x'))) << length;
  }
}

TEST(FCalcularDV10Cobranca, WhatIsNotADigitRaises13WhereItIsRead) {
  for (std::size_t position = 1; position <= 32; ++position) {
    EXPECT_ERROR(error_number::kTypeMismatch,
                 Base().fCalcularDV10_Cobranca(with_digit(kTypedLine, position, 'x')))
        << position;
  }
}

TEST(FCalcularDV10Cobranca, LaterFieldsAreNotReadAfterAMismatch) {
  const std::string wrong_first = with_digit(kTypedLine, 10, another(kTypedLine[9]));
  EXPECT_FALSE(Base().fCalcularDV10_Cobranca(with_digit(wrong_first, 11, 'x')));
  const std::string wrong_second = with_digit(kTypedLine, 21, another(kTypedLine[20]));
  EXPECT_FALSE(Base().fCalcularDV10_Cobranca(with_digit(wrong_second, 32, 'x')));
}

struct LateBound {
  std::string_view member;
  std::string_view given;
  std::string_view left_over;
};

TEST(CheckDigitsByName, ChangeTheCallersTextAsTheOperationsDo) {
  constexpr LateBound kCases[] = {
      {"fCalcularDV10_GeralArrecadacao", kCollectionBarcode,
       "8362000000045001234567890123456789012345678"},
      {"fCalcularDV11_Cobranca", kBankBarcode, "0019373700000001000500940144816060680935031"},
      {"fCalcularDV10_Cobranca", kTypedLine, kTypedLine},
  };
  const ObjectRef base = automation::CreateObject("PelmComum2008.Base");
  for (const LateBound& c : kCases) {
    std::array<OptionalArg, 1> arguments{Variant(c.given)};
    EXPECT_EQ(automation::call(*base, c.member, arguments), Variant(true)) << c.member;
    EXPECT_EQ(arguments[0], Variant(c.left_over)) << c.member;
  }
}

TEST(CheckDigitsByName, AFailureLeavesTheCallersTextShortened) {
  const ObjectRef base = automation::CreateObject("PelmComum2008.Base");
  std::array<OptionalArg, 1> arguments{Variant(std::string(44, 'x'))};
  EXPECT_ERROR(error_number::kTypeMismatch,
               automation::call(*base, "fCalcularDV11_Cobranca", arguments));
  EXPECT_EQ(arguments[0], Variant(std::string(43, 'x')));
}

}  // namespace
}  // namespace pelm
