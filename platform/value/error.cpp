// The error type and the language of its texts.
#include "pelm/error.h"

#include <atomic>
#include <type_traits>
#include <utility>

#include "platform/value/error_table.h"

namespace pelm {
namespace {

static_assert(std::is_nothrow_copy_constructible_v<Error> &&
              std::is_nothrow_copy_assignable_v<Error>);

std::atomic<MessageLanguage> g_language{MessageLanguage::Portuguese};

std::string shown_text(std::int32_t number, const std::string& source,
                       const std::string& description) {
  std::string what = source.empty() ? description : source + ": " + description;
  return what + " (" + std::to_string(number) + ")";
}

}  // namespace

Error::Error(std::int32_t number, std::string source, std::string description,
             std::shared_ptr<const Diagnostics> diagnostics) {
  std::string what = shown_text(number, source, description);
  state_ = std::make_shared<const State>(State{number, std::move(source), std::move(description),
                                               std::move(diagnostics), std::move(what)});
}

Error::~Error() = default;

Error Error::with_source(std::string source) const {
  return {state_->number, std::move(source), state_->description, state_->diagnostics};
}

void set_message_language(MessageLanguage language) noexcept { g_language = language; }

MessageLanguage message_language() noexcept { return g_language; }

std::string_view error_text(std::int32_t number) noexcept {
  const ErrorText* found = find_error_text(number);
  const ErrorText& text = found ? *found : application_defined_text();
  return message_language() == MessageLanguage::English ? text.english : text.portuguese;
}

void raise_error(std::int32_t number, std::string_view source) {
  throw Error(number, std::string(source), std::string(error_text(number)));
}

void raise_error(std::int32_t number, std::string_view source, std::string_view detail) {
  std::string description(error_text(number));
  description += ' ';
  description += detail;
  throw Error(number, std::string(source), std::move(description));
}

}  // namespace pelm
