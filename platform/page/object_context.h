/// The page objects of the request that a thread is serving.
///
///     const pelm::page::ScopedObjectContext serving(scripting_context);
///     GetObjectContext()->Item("Response");
#pragma once

#include <memory>
#include <string_view>

#include "pelm/object.h"

namespace pelm::page {

class Application;
class Request;
class Response;
class Server;
class Session;

/// What a page hands to the objects it starts. Any of them may be null outside a web server.
class ScriptingContext : public Object {
 public:
  std::shared_ptr<page::Application> Application;
  std::shared_ptr<page::Request> Request;
  std::shared_ptr<page::Response> Response;
  std::shared_ptr<page::Server> Server;
  std::shared_ptr<page::Session> Session;

  /// By name without case; raises invalid call (5) for an unknown name.
  ObjectRef Item(std::string_view name) const;
};

/// The innermost context of this thread; null outside a page.
const std::shared_ptr<ScriptingContext>& GetObjectContext() noexcept;

/// Makes a context this thread's own for its lifetime; nests.
class ScopedObjectContext {
 public:
  explicit ScopedObjectContext(std::shared_ptr<ScriptingContext> context);
  ScopedObjectContext(const ScopedObjectContext&) = delete;
  ScopedObjectContext& operator=(const ScopedObjectContext&) = delete;
  ~ScopedObjectContext();

 private:
  std::shared_ptr<ScriptingContext> previous_;
};

}  // namespace pelm::page
