// The life of a page: its context in force, its script run, its objects ended.
#include "host/page_runner.h"

#include <exception>
#include <utility>

#include "pelm/error.h"
#include "platform/page/application.h"
#include "platform/page/response.h"
#include "platform/page/server.h"

namespace pelm::host {

PageRunner::PageRunner(page::SiteRoot root, PageHooks hooks, ScriptLimits limits,
                       std::shared_ptr<Watchdog> watchdog)
    : root_(std::move(root)),
      hooks_(std::move(hooks)),
      watchdog_(std::move(watchdog)),
      engine_(hooks_, limits, *watchdog_),
      pages_(engine_, root_) {}

std::vector<PageFailure> PageRunner::run(const std::string& page_path,
                                         const std::shared_ptr<page::ScriptingContext>& context) {
  context->Server =
      std::make_shared<page::Server>(root_, page_path, [this](std::string_view identifier) {
        ObjectRef object = hooks_.create_object(identifier);
        if (object) created_.push_back(object);
        return object;
      });
  const page::ScopedObjectContext serving(context);
  std::vector<PageFailure> failures;
  run_script(page_path, *context, failures);
  end_objects(page_path, failures);
  if (context->Application) context->Application->unlock_all();
  context->Server.reset();
  return failures;
}

void PageRunner::run_script(const std::string& page_path, const page::ScriptingContext& context,
                            std::vector<PageFailure>& failures) {
  try {
    const auto script = pages_.get(page_path);
    if (auto failure = engine_.run(*script, context)) failures.push_back(*std::move(failure));
  } catch (const PageSyntaxError& error) {
    failures.push_back({kScriptSyntaxError, kScriptSource, error.what(), error.place()});
  }
}

void PageRunner::end_objects(const std::string& page_path,
                             std::vector<PageFailure>& failures) noexcept {
  const SourcePlace page_end{page_path, 0};
  while (!created_.empty()) {
    const ObjectRef object = std::move(created_.back());
    created_.pop_back();
    try {
      hooks_.end_object(*object);
    } catch (const Error& error) {
      failures.push_back({error.number(), error.source(), error.description(), page_end});
    } catch (const page::PageEnded&) {
      // The page is ending already.
    } catch (const std::exception& error) {
      failures.push_back({error_number::kInternal, "Host", error.what(), page_end});
    }
  }
}

}  // namespace pelm::host
