// Fetching page objects from the ambient object context.
#include "frame/page_context.h"

#include <memory>

#include "frame/thread_slots.h"
#include "pelm/error.h"
#include "platform/page/application.h"
#include "platform/page/object_context.h"
#include "platform/page/response.h"

namespace pelm::frame {
namespace {

template <class PageObject>
void fetch(std::shared_ptr<PageObject>& slot, std::string_view name) {
  if (slot) return;
  const std::shared_ptr<page::ScriptingContext>& context = page::GetObjectContext();
  if (!context) raise_error(error_number::kObjectNotSet);
  slot = std::dynamic_pointer_cast<PageObject>(context->Item(name));
  if (!slot) raise_error(error_number::kObjectNotSet);
}

}  // namespace

void fetch_application() { fetch(thread_slots().application, "Application"); }

void fetch_response() { fetch(thread_slots().response, "Response"); }

Variant application_variable(std::string_view name) {
  fetch_application();
  return thread_slots().application->Value(name);
}

}  // namespace pelm::frame
