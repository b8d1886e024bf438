/// The script engine of one thread: compiles pages and runs them within limits of time and memory.
/// Nothing of a page reaches the next: it finds its globals and the language as if it were the
/// first, and what it declares is its own.
///
///     ScriptEngine engine(hooks, limits, watchdog);
///     const auto script = engine.compile(read_page(files, "/x.page"));
///     if (const auto failure = engine.run(*script, context)) log(*failure);
///
/// Everything, creation and destruction too, happens on the thread that made it. Knows no files
/// and no HTTP.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>

#include "host/page_failure.h"
#include "host/page_hooks.h"
#include "host/page_source.h"
#include "platform/page/object_context.h"

namespace pelm::host {

class Watchdog;

struct ScriptLimits {
  std::chrono::milliseconds time{90'000};  ///< `Server.ScriptTimeout` takes its place when set
  std::size_t heap_bytes = std::size_t{64} << 20U;
};

/// A page as the engine runs it; good for the engine that compiled it, and only while that lives.
class CompiledScript;

class ScriptEngine {
 public:
  /// `hooks` and `watchdog` must outlive it. Throws std::runtime_error when the engine cannot
  /// start.
  ScriptEngine(const PageHooks& hooks, ScriptLimits limits, Watchdog& watchdog);
  ScriptEngine(const ScriptEngine&) = delete;
  ScriptEngine& operator=(const ScriptEngine&) = delete;
  ~ScriptEngine();

  /// Raises PageSyntaxError.
  std::shared_ptr<const CompiledScript> compile(PageSource source);

  /// Nothing when the page came to its end or ended itself. Whatever happens, no object of the
  /// component is held by the script afterwards.
  std::optional<PageFailure> run(const CompiledScript& script,
                                 const page::ScriptingContext& context);

  /// How many worlds were made for pages to share; a page that leaves its world as it found it
  /// makes none necessary.
  std::size_t worlds_made() const noexcept;

 private:
  struct Part;
  std::unique_ptr<Part> part_;
};

}  // namespace pelm::host
