// Page objects over a program's own functions.
#include "pelm/page_scope.h"

#include <utility>

#include "frame/thread_slots.h"
#include "platform/page/application.h"
#include "platform/page/object_context.h"
#include "platform/page/request.h"
#include "platform/page/response.h"

namespace pelm {

struct PageScope::Functions {
  Variables variables;
  Output output;
};

namespace {

/// The component keeps page objects until a CMain ends. Those of a page that has ended are of no
/// use to the next one, as each brings its own.
void forget(const page::ScriptingContext& context) {
  frame::ThreadSlots& slots = frame::thread_slots();
  if (slots.application == context.Application) slots.application.reset();
  if (slots.response == context.Response) slots.response.reset();
}

}  // namespace

PageScope::PageScope(Variables variables, Output output, std::string_view query_string)
    : functions_(std::make_shared<Functions>(Functions{std::move(variables), std::move(output)})),
      context_(std::make_shared<page::ScriptingContext>()) {
  context_->Application =
      std::make_shared<page::Application>([functions = functions_](std::string_view name) {
        return functions->variables ? functions->variables(name) : Variant();
      });
  context_->Response = std::make_shared<page::Response>(
      [functions = functions_](const page::Response&, std::string_view text) {
        if (functions->output) functions->output(text);
      });
  context_->Response->Buffer(false);
  context_->Request = std::make_shared<page::Request>();
  context_->Request->QueryString = page::parse_url_encoded(query_string);
  serving_ = std::make_unique<page::ScopedObjectContext>(context_);
}

PageScope::~PageScope() {
  serving_.reset();
  *functions_ = {};
  forget(*context_);
}

}  // namespace pelm
