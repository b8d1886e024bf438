// Errors: what they carry, how they copy, and the texts of their numbers.
#include "pelm/error.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <type_traits>

#include "platform/value/error_table.h"

namespace pelm {
namespace {

class InEnglish {
 public:
  InEnglish() { set_message_language(MessageLanguage::English); }
  InEnglish(const InEnglish&) = delete;
  InEnglish& operator=(const InEnglish&) = delete;
  ~InEnglish() { set_message_language(MessageLanguage::Portuguese); }
};

Error raised(auto raise) {
  try {
    raise();
  } catch (const Error& e) {
    return e;
  }
  throw std::logic_error("nothing was raised");
}

TEST(Error, CarriesNumberSourceAndDescription) {
  const Error e(1001, "Base.cadastrar_item", "Nome repetido");
  EXPECT_EQ(e.number(), 1001);
  EXPECT_EQ(e.source(), "Base.cadastrar_item");
  EXPECT_EQ(e.description(), "Nome repetido");
  EXPECT_EQ(e.diagnostics(), nullptr);
  EXPECT_STREQ(e.what(), "Base.cadastrar_item: Nome repetido (1001)");
}

TEST(Error, WhatLeavesOutAnEmptySource) {
  EXPECT_STREQ(Error(13, "", "Tipos incompatíveis").what(), "Tipos incompatíveis (13)");
}

TEST(Error, CopiesWithoutThrowingAndShareTheirTexts) {
  static_assert(std::is_nothrow_copy_constructible_v<Error>);
  static_assert(std::is_nothrow_copy_assignable_v<Error>);
  const Error e(6, "Base", "Estouro");
  const Error copy = e;  // NOLINT(performance-unnecessary-copy-initialization): the copy is tested
  EXPECT_EQ(&copy.description(), &e.description());
}

TEST(Error, StaysWholeAfterAMove) {
  Error e(6, "Base", "Estouro");
  const Error moved = std::move(e);  // NOLINT(performance-move-const-arg): what a caller may write
  EXPECT_EQ(moved.number(), 6);
  EXPECT_EQ(e.number(), 6);  // NOLINT(bugprone-use-after-move): that is the promise
}

TEST(Error, WithSourceKeepsEverythingElse) {
  const auto diagnostics = std::make_shared<const Diagnostics>(
      Diagnostics{"SQLite", "select 1", {{"HY000", 1, "no such table"}}});
  const Error e(-2147217865, "Provider", "no such table", diagnostics);
  const Error other = e.with_source("Base.listar");
  EXPECT_EQ(other.number(), e.number());
  EXPECT_EQ(other.source(), "Base.listar");
  EXPECT_EQ(other.description(), e.description());
  EXPECT_EQ(other.diagnostics(), diagnostics.get());
  EXPECT_STREQ(other.what(), "Base.listar: no such table (-2147217865)");
  EXPECT_EQ(e.source(), "Provider");
}

TEST(RaiseError, SaysThePlatformsTextUnderTheProjectsName) {
  const Error e = raised([] { raise_error(error_number::kTypeMismatch); });
  EXPECT_EQ(e.number(), 13);
  EXPECT_EQ(e.source(), "PelmComum2008");
  EXPECT_EQ(e.description(), "Tipos incompatíveis");
}

TEST(RaiseError, PutsTheDetailAfterTheText) {
  const Error e =
      raised([] { raise_error(error_number::kObjectClosed, "ADODB.Recordset", "(rs)"); });
  EXPECT_EQ(e.source(), "ADODB.Recordset");
  EXPECT_EQ(e.description(), "Operação não permitida quando o objeto está fechado. (rs)");
}

TEST(ErrorText, IsPortugueseUntilEnglishIsSet) {
  EXPECT_EQ(message_language(), MessageLanguage::Portuguese);
  EXPECT_EQ(error_text(6), "Estouro");
  {
    const InEnglish english;
    EXPECT_EQ(error_text(6), "Overflow");
    EXPECT_EQ(raised([] { raise_error(94); }).description(), "Invalid use of Null");
  }
  EXPECT_EQ(error_text(94), "Uso inválido de Null");
}

struct KnownText {
  std::int32_t number;
  const char* english;
  const char* portuguese;
};

class ErrorTexts : public testing::TestWithParam<KnownText> {};

TEST_P(ErrorTexts, AreThePlatforms) {
  EXPECT_EQ(error_text(GetParam().number), GetParam().portuguese);
  const InEnglish english;
  EXPECT_EQ(error_text(GetParam().number), GetParam().english);
}

INSTANTIATE_TEST_SUITE_P(
    Known, ErrorTexts,
    testing::Values(
        KnownText{5, "Invalid procedure call or argument",
                  "Chamada de procedimento ou argumento inválido"},
        KnownText{9, "Subscript out of range", "Subscrito fora do intervalo"},
        KnownText{11, "Division by zero", "Divisão por zero"},
        KnownText{91, "Object variable or With block variable not set",
                  "A variável do objeto ou a variável do bloco 'With' não foi definida"},
        KnownText{424, "Object required", "O objeto é obrigatório"},
        KnownText{429, "ActiveX component can't create object",
                  "O componente ActiveX não pode criar o objeto"},
        KnownText{438, "Object doesn't support this property or method",
                  "O objeto não aceita esta propriedade ou método"},
        KnownText{449, "Argument not optional", "Argumento não opcional"},
        KnownText{3265,
                  "Item cannot be found in the collection corresponding to the requested name or "
                  "ordinal.",
                  "O item não pode ser encontrado na coleção correspondente ao nome ou ao ordinal "
                  "solicitado."},
        KnownText{3705, "Operation is not allowed when the object is open.",
                  "Operação não permitida quando o objeto está aberto."},
        KnownText{-2147217864,
                  "Row cannot be located for updating. Some values may have been changed since it "
                  "was last read.",
                  "A linha não pode ser localizada para atualização. Alguns valores podem ter sido "
                  "alterados desde a última leitura."},
        // No text of the platform's own: whoever raises these brings a description.
        KnownText{1001, "Application-defined or object-defined error",
                  "Erro definido pelo aplicativo ou pelo objeto"},
        KnownText{0, "Application-defined or object-defined error",
                  "Erro definido pelo aplicativo ou pelo objeto"}),
    [](const auto& named) {
      const auto n = named.param.number;
      return n < 0 ? "Minus" + std::to_string(-static_cast<std::int64_t>(n)) : std::to_string(n);
    });

TEST(ErrorTable, HoldsEveryNumberInBothLanguages) {
  using namespace error_number;
  for (const std::int32_t number : {kInvalidCall,
                                    kOverflow,
                                    kOutOfMemory,
                                    kSubscriptOutOfRange,
                                    kDivisionByZero,
                                    kTypeMismatch,
                                    kOutOfStackSpace,
                                    kInternal,
                                    kFileNotFound,
                                    kPathNotFound,
                                    kObjectNotSet,
                                    kInvalidUseOfNull,
                                    kObjectRequired,
                                    kCannotCreateObject,
                                    kMemberNotFound,
                                    kNamedArgumentNotFound,
                                    kArgumentNotOptional,
                                    kWrongArgumentCount,
                                    kWrongArguments,
                                    kNoCurrentRecord,
                                    kNotAllowedInContext,
                                    kInTransaction,
                                    kProviderCannot,
                                    kItemNotFound,
                                    kWrongValueType,
                                    kObjectClosed,
                                    kObjectOpen,
                                    kProviderNotFound,
                                    kInvalidConnection,
                                    kProviderFailure,
                                    kCantConvertValue,
                                    kPermissionDenied,
                                    kErrorsInCommand,
                                    kErrorsOccurred,
                                    kDeletedRow,
                                    kIntegrityViolation,
                                    kTimeout,
                                    kNoTable,
                                    kConcurrencyViolation,
                                    kLoginFailed,
                                    kDataOverflow}) {
    const ErrorText* text = find_error_text(number);
    ASSERT_NE(text, nullptr) << number;
    EXPECT_FALSE(text->english.empty()) << number;
    EXPECT_FALSE(text->portuguese.empty()) << number;
    EXPECT_NE(text->english, text->portuguese) << number;
  }
  EXPECT_EQ(find_error_text(kComponent), nullptr);
}

TEST(ErrorNumber, ProviderCodesAreTheOldPlatforms) {
  const auto code = [](std::uint32_t hresult) { return static_cast<std::int32_t>(hresult); };
  using namespace error_number;
  EXPECT_EQ(kProviderFailure, code(0x80004005));
  EXPECT_EQ(kCantConvertValue, code(0x80040E07));
  EXPECT_EQ(kPermissionDenied, code(0x80040E09));
  EXPECT_EQ(kErrorsInCommand, code(0x80040E14));
  EXPECT_EQ(kErrorsOccurred, code(0x80040E21));
  EXPECT_EQ(kDeletedRow, code(0x80040E23));
  EXPECT_EQ(kIntegrityViolation, code(0x80040E2F));
  EXPECT_EQ(kTimeout, code(0x80040E31));
  EXPECT_EQ(kNoTable, code(0x80040E37));
  EXPECT_EQ(kConcurrencyViolation, code(0x80040E38));
  EXPECT_EQ(kLoginFailed, code(0x80040E4D));
  EXPECT_EQ(kDataOverflow, code(0x80040E57));
}

}  // namespace
}  // namespace pelm
