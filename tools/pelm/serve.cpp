// `pelm serve`: the pages of a site over HTTP, until somebody asks to stop.
#include <arpa/inet.h>

#include <chrono>
#include <csignal>
#include <initializer_list>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "host/http_host.h"
#include "tools/pelm/commands.h"
#include "tools/pelm/site_options.h"

namespace pelm::tool {
namespace {

constexpr const char* kAbout =
    "Serves the pages of a site, and prints the address. Without options: the sample CRM, on this\n"
    "machine alone. Ctrl+C or SIGTERM ends it when the pages under way are finished; a second one\n"
    "ends it at once.\n\n"
    "Options may stand in a file instead, one NAME=VALUE a line below [serve]; those of the "
    "command\n"
    "line win:\n\n"
    "  pelm serve --config /etc/pelm.ini";

struct ServeOptions {
  SiteOptions site;
  host::HostOptions host;
  int script_timeout = 90;          // seconds
  std::optional<bool> show_errors;  ///< unset: on an address of this machine alone
};

/// The signals that ask to stop: held back from every thread that starts after it, waited for in
/// `wait`, and deadly as usual from then on.
class StopSignals {
 public:
  StopSignals() {
    sigemptyset(&signals_);
    for (const int signal : {SIGINT, SIGTERM}) sigaddset(&signals_, signal);
    pthread_sigmask(SIG_BLOCK, &signals_, &previous_);
  }
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;
  ~StopSignals() { release(); }

  void wait() const {
    int signal = 0;
    while (sigwait(&signals_, &signal) != 0) {
    }
    release();
  }

 private:
  void release() const { pthread_sigmask(SIG_SETMASK, &previous_, nullptr); }

  sigset_t signals_{};
  sigset_t previous_{};
};

/// Whether only this machine can reach it.
bool is_loopback(const std::string& address) {
  in_addr ipv4 = {};
  if (inet_pton(AF_INET, address.c_str(), &ipv4) == 1) return ntohl(ipv4.s_addr) >> 24U == 127;
  in6_addr ipv6 = {};
  if (inet_pton(AF_INET6, address.c_str(), &ipv6) == 1) return IN6_IS_ADDR_LOOPBACK(&ipv6) != 0;
  return address == "localhost";
}

std::string url_of(const std::string& address, int port) {
  const bool is_ipv6 = address.find(':') != std::string::npos;
  return "http://" + (is_ipv6 ? "[" + address + "]" : address) + ":" + std::to_string(port) + "/";
}

void start(host::HttpHost& host, const host::HostOptions& options) {
  try {
    host.start();
  } catch (const std::exception& failure) {
    throw UserError("cannot serve on " + options.address + ", port " +
                    std::to_string(options.port) + ": " + failure.what() +
                    " (--bind and --port name others)");
  }
}

void serve(const ServeOptions& options) {
  const Site site = prepare_site(options.site, chosen_root(options.site));
  host::HostOptions host_options = options.host;
  host_options.root = site.root;
  host_options.script.time = std::chrono::seconds(options.script_timeout);
  host_options.error_details = options.show_errors.value_or(is_loopback(host_options.address));

  const StopSignals stop;
  host::HttpHost host(host_options);
  set_application_variables(host.application(), options.site, site);
  host.application().Value("pelm_ShowErrors", host_options.error_details);
  start(host, host_options);
  std::cout << "pelm serves " << site.root.string() << " at "
            << url_of(host_options.address, host.port()) << " (database: " << site.database_shown
            << ")" << std::endl;  // whoever waits for the address reads a pipe
  stop.wait();
  host.stop();
}

}  // namespace

void add_serve(CLI::App& program, int& status) {
  CLI::App* command = program.add_subcommand("serve", "Serve a site's pages over HTTP");
  auto options = std::make_shared<ServeOptions>();
  command->footer(kAbout);
  command->add_option("--port", options->host.port, "Port; 0 takes any that is free")
      ->type_name("N")
      ->capture_default_str()
      ->check(CLI::Range(0, 65535).description(""));
  command->add_option("--bind", options->host.address, "Address to listen on")
      ->type_name("ADDR")
      ->capture_default_str();
  add_site_options(*command, options->site);
  command->add_option("--threads", options->host.page_threads, "Pages that run at once")
      ->type_name("N")
      ->capture_default_str()
      ->check(CLI::Range(1, 1024).description(""));
  command->add_option("--script-timeout", options->script_timeout, "Seconds a page may run")
      ->type_name("N")
      ->capture_default_str()
      ->check(CLI::Range(1, 86400).description(""));
  command->add_flag("--access-log", options->host.access_log,
                    "A line to standard error for each answer");
  command->add_flag_function(
      "--show-errors,!--hide-errors",
      [options](std::int64_t times) { options->show_errors = times > 0; },
      "Visitors see number, file and line of a failed page. Without either: on an\n"
      "address of this machine alone");
  command->add_flag("--secure-cookies", options->host.secure_cookies,
                    "Session cookies over HTTPS alone, for a site behind a TLS proxy");
  command->fallthrough();  // --config belongs to the program
  command->callback([options, &status] {
    serve(*options);
    status = kDone;
  });
}

}  // namespace pelm::tool
