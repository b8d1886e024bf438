// The context stack of a thread is the C++ stack: each scope remembers the one before it.
#include "platform/page/object_context.h"

#include <array>
#include <string>
#include <utility>

#include "pelm/error.h"
#include "platform/page/application.h"
#include "platform/page/request.h"
#include "platform/page/response.h"
#include "platform/page/server.h"
#include "platform/page/session.h"
#include "platform/value/text.h"

namespace pelm::page {
namespace {

std::shared_ptr<ScriptingContext>& current() noexcept {
  thread_local std::shared_ptr<ScriptingContext> context;
  return context;
}

}  // namespace

ObjectRef ScriptingContext::Item(std::string_view name) const {
  const std::array<std::pair<std::string_view, ObjectRef>, 5> items = {{
      {"Application", Application},
      {"Request", Request},
      {"Response", Response},
      {"Server", Server},
      {"Session", Session},
  }};
  for (const auto& [item, object] : items) {
    if (text::equal_case_blind(item, name)) return object;
  }
  raise_error(error_number::kInvalidCall, "ObjectContext", "\"" + std::string(name) + "\"");
}

const std::shared_ptr<ScriptingContext>& GetObjectContext() noexcept { return current(); }

ScopedObjectContext::ScopedObjectContext(std::shared_ptr<ScriptingContext> context)
    : previous_(std::exchange(current(), std::move(context))) {}

ScopedObjectContext::~ScopedObjectContext() { current() = std::move(previous_); }

}  // namespace pelm::page
