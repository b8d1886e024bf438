// Pages whose application variables and response are the caller's callbacks.
#include "c_api/pages.h"

#include <string>
#include <utility>

#include "c_api/handles.h"
#include "c_api/values.h"
#include "pelm/error.h"
#include "platform/page/application.h"
#include "platform/page/request.h"
#include "platform/page/response.h"

namespace pelm::c_api {
namespace {

thread_local std::shared_ptr<CallbackPage> innermost;

std::shared_ptr<page::Application> application_of(const pelm_page_callbacks& callbacks) {
  return std::make_shared<page::Application>([callbacks](std::string_view name) {
    pelm_value value = PELM_EMPTY_VALUE;
    const bool found =
        callbacks.application_value != nullptr &&
        callbacks.application_value(callbacks.user, std::string(name).c_str(), &value) != 0;
    return found ? from_c(value).value_or(Variant()) : Variant();
  });
}

std::shared_ptr<page::Response> response_of(const pelm_page_callbacks& callbacks) {
  auto response =
      std::make_shared<page::Response>([callbacks](const page::Response&, std::string_view body) {
        if (callbacks.write != nullptr) callbacks.write(callbacks.user, body.data(), body.size());
      });
  response->Buffer(false);
  return response;
}

}  // namespace

CallbackPage::CallbackPage(const pelm_page_callbacks& callbacks)
    : context_(std::make_shared<page::ScriptingContext>()) {
  context_->Application = application_of(callbacks);
  context_->Response = response_of(callbacks);
  context_->Request = std::make_shared<page::Request>();
}

std::uint64_t CallbackPage::begin(const pelm_page_callbacks& callbacks) {
  const auto page = std::make_shared<CallbackPage>(callbacks);
  const std::uint64_t handle = Handles::instance().add(page);
  page->outer_ = std::move(innermost);
  page->serving_ = std::make_unique<page::ScopedObjectContext>(page->context_);
  innermost = page;
  return handle;
}

void CallbackPage::end() {
  if (innermost.get() != this) {
    raise_error(error_number::kInvalidCall, kProjectSource,
                "(só a página mais interna da thread pode terminar)");
  }
  serving_.reset();
  innermost = std::move(outer_);
}

}  // namespace pelm::c_api
