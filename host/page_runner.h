/// Runs pages on one thread, from their files to their last object; knows no HTTP.
///
///     PageRunner runner(root, hooks, limits, std::make_shared<Watchdog>());
///     auto context = std::make_shared<page::ScriptingContext>();
///     context->Response = std::make_shared<page::Response>();   // … and what else the page needs
///     const auto failures = runner.run("/agenda.page", context);
///
/// Created, used and destroyed on one thread.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/page_cache.h"
#include "host/page_failure.h"
#include "host/page_hooks.h"
#include "host/script_engine.h"
#include "host/watchdog.h"
#include "platform/page/object_context.h"
#include "platform/page/site_path.h"

namespace pelm::host {

class PageRunner {
 public:
  PageRunner(page::SiteRoot root, PageHooks hooks, ScriptLimits limits,
             std::shared_ptr<Watchdog> watchdog);
  PageRunner(const PageRunner&) = delete;
  PageRunner& operator=(const PageRunner&) = delete;

  /// Runs the page at `page_path` ("/folder/name.page") with `context`, whose `Response` must be
  /// there; its `Server` is set here. When the page has ended, however it did, every object that it
  /// created is ended, last created first, and the application is unlocked.
  /// Empty when all went well. The first failure is the page's own where it has one; those after it
  /// come from the objects' ends.
  std::vector<PageFailure> run(const std::string& page_path,
                               const std::shared_ptr<page::ScriptingContext>& context);

 private:
  void run_script(const std::string& page_path, const page::ScriptingContext& context,
                  std::vector<PageFailure>& failures);
  void end_objects(const std::string& page_path, std::vector<PageFailure>& failures) noexcept;

  page::SiteRoot root_;
  PageHooks hooks_;
  std::shared_ptr<Watchdog> watchdog_;
  ScriptEngine engine_;
  PageCache pages_;
  std::vector<ObjectRef> created_;  ///< by the page that runs, in order
};

}  // namespace pelm::host
