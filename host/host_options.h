/// What a host can be told, with its defaults.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "host/script_engine.h"

namespace pelm::host {

struct HostOptions {
  std::filesystem::path root;  ///< the folder of the site; must exist
  std::string address = "127.0.0.1";
  int port = 8080;  ///< 0 takes any that is free

  /// Threads that run pages; each keeps its own set of the component's shared objects.
  std::size_t page_threads = 8;
  /// Connections served at once; a waiting one takes the place of one that is idle.
  std::size_t connections = 64;
  ScriptLimits script;
  std::size_t response_buffer_bytes = std::size_t{64} << 20U;  ///< that a page may hold back
  std::size_t request_body_bytes = std::size_t{4} << 20U;
  std::size_t sessions = 10'000;  ///< beyond them the one unused for longest is forgotten

  std::chrono::seconds read_timeout{10};   ///< for a request's head, and between bytes of its body
  std::chrono::seconds write_timeout{30};  ///< for a client that does not take its answer
  std::chrono::seconds keep_alive{15};     ///< 0 closes after each answer
  std::size_t keep_alive_requests = 1'000;

  std::string page_suffix = ".page";
  std::string default_document = "default.page";
  /// Suffixes and media types of static files beyond the built-in ones.
  std::vector<std::pair<std::string, std::string>> media_types;

  /// Whether an error answer shows number, source, file and line. For visitors whom one trusts.
  bool error_details = false;
  bool access_log = false;      ///< one line for each answer
  bool secure_cookies = false;  ///< session cookies over HTTPS only, for a host behind a proxy
};

}  // namespace pelm::host
