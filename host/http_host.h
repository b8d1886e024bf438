/// The HTTP host: a folder of pages and static files on a port.
///
///     HttpHost host(options, hooks);
///     host.application().Value("dataconn_Database", std::int32_t{1});
///     host.start();
///     … host.port() …
///     host.stop();
///
/// Two kinds of threads: many that serve connections, static files and slow clients, and a few that
/// run pages, each with a script engine and the component's shared objects of its own. A connection
/// that idles holds no page thread.
#pragma once

#include <memory>

#include "host/host_options.h"
#include "host/log.h"
#include "host/page_hooks.h"
#include "platform/page/application.h"

namespace pelm::host {

class HttpHost {
 public:
  explicit HttpHost(HostOptions options, PageHooks hooks = {}, Log log = log_to_stderr);
  HttpHost(const HttpHost&) = delete;
  HttpHost& operator=(const HttpHost&) = delete;
  ~HttpHost();  ///< stops

  /// The variables that all pages share.
  page::Application& application();

  /// Returns when requests are served. Throws std::runtime_error that says what to do: a root that
  /// is no folder, a port that is taken or forbidden. May be called once.
  void start();
  /// The port it listens on.
  int port() const;

  /// Takes no new request, finishes those under way and returns. Safe to call again.
  void stop();

 private:
  class Part;
  std::unique_ptr<Part> part_;
};

}  // namespace pelm::host
