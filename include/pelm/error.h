/// The one error type of the system, its numbers and their texts.
///
/// Contents: `Error`, `Diagnostics`, `error_number`, `raise_error`.
///
///     try {
///       base.cadastrar_item(1, "Pasta", 20);
///     } catch (const pelm::Error& e) {
///       log(e.number(), e.source(), e.description());
///     }
///
/// Not for expected refusals: operations that may be refused say so in their result.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pelm {

/// The numbers a page sees. Runtime numbers are positive; those of a database provider are the
/// negative 32-bit codes of the old platform.
namespace error_number {
// Basic runtime.
inline constexpr std::int32_t kInvalidCall = 5;
inline constexpr std::int32_t kOverflow = 6;
inline constexpr std::int32_t kOutOfMemory = 7;
inline constexpr std::int32_t kSubscriptOutOfRange = 9;
inline constexpr std::int32_t kDivisionByZero = 11;
inline constexpr std::int32_t kTypeMismatch = 13;
inline constexpr std::int32_t kOutOfStackSpace = 28;
inline constexpr std::int32_t kInternal = 51;
inline constexpr std::int32_t kFileNotFound = 53;
inline constexpr std::int32_t kPathNotFound = 76;
inline constexpr std::int32_t kObjectNotSet = 91;
inline constexpr std::int32_t kInvalidUseOfNull = 94;
inline constexpr std::int32_t kObjectRequired = 424;
inline constexpr std::int32_t kCannotCreateObject = 429;
inline constexpr std::int32_t kMemberNotFound = 438;
inline constexpr std::int32_t kNamedArgumentNotFound = 448;
inline constexpr std::int32_t kArgumentNotOptional = 449;
inline constexpr std::int32_t kWrongArgumentCount = 450;
// The component's own.
inline constexpr std::int32_t kComponent = 1001;
// Database objects (control facility: shown as their low word).
inline constexpr std::int32_t kWrongArguments = 3001;
inline constexpr std::int32_t kNoCurrentRecord = 3021;
inline constexpr std::int32_t kNotAllowedInContext = 3219;
inline constexpr std::int32_t kInTransaction = 3246;
inline constexpr std::int32_t kProviderCannot = 3251;
inline constexpr std::int32_t kItemNotFound = 3265;
inline constexpr std::int32_t kWrongValueType = 3421;
inline constexpr std::int32_t kObjectClosed = 3704;
inline constexpr std::int32_t kObjectOpen = 3705;
inline constexpr std::int32_t kProviderNotFound = 3706;
inline constexpr std::int32_t kInvalidConnection = 3709;
// Database providers (full 32-bit codes).
inline constexpr std::int32_t kProviderFailure = -2147467259;
inline constexpr std::int32_t kCantConvertValue = -2147217913;
inline constexpr std::int32_t kPermissionDenied = -2147217911;
inline constexpr std::int32_t kErrorsInCommand = -2147217900;
inline constexpr std::int32_t kErrorsOccurred = -2147217887;
inline constexpr std::int32_t kDeletedRow = -2147217885;
inline constexpr std::int32_t kIntegrityViolation = -2147217873;
inline constexpr std::int32_t kTimeout = -2147217871;
inline constexpr std::int32_t kNoTable = -2147217865;
inline constexpr std::int32_t kConcurrencyViolation = -2147217864;
inline constexpr std::int32_t kLoginFailed = -2147217843;
inline constexpr std::int32_t kDataOverflow = -2147217833;
}  // namespace error_number

/// The source of a runtime error raised by the component outside any trap.
inline constexpr std::string_view kProjectSource = "PelmComum2008";

/// One diagnostic of a database driver, in its own words.
struct DiagnosticRecord {
  std::string sqlstate;  ///< Five characters, or empty where the engine has none.
  std::int32_t native_code = 0;
  std::string message;
};

/// What a provider knows beyond number, source and description. Never changes those three.
struct Diagnostics {
  std::string provider;
  std::string sql;  ///< The statement that failed, as the provider ran it; empty when none.
  std::vector<DiagnosticRecord> records;
};

/// A failure as a page sees it: number, source, description.
class Error : public std::exception {
 public:
  Error(std::int32_t number, std::string source, std::string description,
        std::shared_ptr<const Diagnostics> diagnostics = nullptr);
  // Copies share the state and never throw; there is no move, so no Error is ever hollow.
  Error(const Error&) noexcept = default;
  Error& operator=(const Error&) noexcept = default;
  ~Error() override;

  std::int32_t number() const noexcept { return state_->number; }
  const std::string& source() const noexcept { return state_->source; }
  const std::string& description() const noexcept { return state_->description; }
  /// Null when the error does not come from a database provider.
  const Diagnostics* diagnostics() const noexcept { return state_->diagnostics.get(); }

  /// The same failure reported from another place.
  Error with_source(std::string source) const;

  /// "source: description (number)"; without "source: " when that is empty.
  const char* what() const noexcept override { return state_->what.c_str(); }

 private:
  struct State {
    std::int32_t number;
    std::string source;
    std::string description;
    std::shared_ptr<const Diagnostics> diagnostics;
    std::string what;
  };
  std::shared_ptr<const State> state_;
};

enum class MessageLanguage { Portuguese, English };

/// The language of the platform's own error texts, for the whole process. Default: Portuguese.
void set_message_language(MessageLanguage language) noexcept;
MessageLanguage message_language() noexcept;

/// The platform's text for `number` in the current language; the text of an application-defined
/// error when the platform has none of that number.
std::string_view error_text(std::int32_t number) noexcept;

/// Raises `number` with the platform's own text.
[[noreturn]] void raise_error(std::int32_t number, std::string_view source = kProjectSource);

/// Raises `number` with the platform's own text followed by a blank and `detail`.
[[noreturn]] void raise_error(std::int32_t number, std::string_view source,
                              std::string_view detail);

}  // namespace pelm
