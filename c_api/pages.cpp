// Pages whose application variables and response are the caller's callbacks.
#include "c_api/pages.h"

#include <string>
#include <utility>

#include "c_api/handles.h"
#include "c_api/values.h"
#include "pelm/error.h"

namespace pelm::c_api {
namespace {

thread_local std::shared_ptr<CallbackPage> innermost;

PageScope::Variables variables_of(const pelm_page_callbacks& callbacks) {
  return [callbacks](std::string_view name) {
    pelm_value value = PELM_EMPTY_VALUE;
    const bool found =
        callbacks.application_value != nullptr &&
        callbacks.application_value(callbacks.user, std::string(name).c_str(), &value) != 0;
    return found ? from_c(value).value_or(Variant()) : Variant();
  };
}

PageScope::Output output_of(const pelm_page_callbacks& callbacks) {
  return [callbacks](std::string_view text) {
    if (callbacks.write != nullptr) callbacks.write(callbacks.user, text.data(), text.size());
  };
}

}  // namespace

CallbackPage::CallbackPage(const pelm_page_callbacks& callbacks)
    : scope_(std::in_place, variables_of(callbacks), output_of(callbacks),
             callbacks.query_string != nullptr ? callbacks.query_string : "") {}

std::uint64_t CallbackPage::begin(const pelm_page_callbacks& callbacks) {
  const auto page = std::make_shared<CallbackPage>(callbacks);
  const std::uint64_t handle = Handles::instance().add(page);
  page->outer_ = std::move(innermost);
  innermost = page;
  return handle;
}

void CallbackPage::end() {
  if (innermost.get() != this) {
    raise_error(error_number::kInvalidCall, kProjectSource,
                "(só a página mais interna da thread pode terminar)");
  }
  scope_.reset();
  innermost = std::move(outer_);
}

}  // namespace pelm::c_api
