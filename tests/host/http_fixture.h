// A host on a free port of this machine, over a folder of the test.
#pragma once

#include <gtest/gtest.h>
#include <httplib.h>

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "host/http_host.h"
#include "tests/host/probe.h"
#include "tests/host/temporary_site.h"

namespace pelm::host::testing {

class HttpFixture : public ::testing::Test {
 protected:
  HttpFixture() {
    options_.root = site_.root();
    options_.port = 0;
    options_.page_threads = 2;
    options_.connections = 16;
    options_.error_details = true;
  }

  /// After the test has set the options it wants.
  void start() {
    host_ =
        std::make_unique<HttpHost>(options_, probe_hooks(ended_), [this](std::string_view line) {
          const std::lock_guard guard(log_mutex_);
          log_ += std::string(line) + "\n";
        });
    host_->start();
  }

  httplib::Client client() const {
    httplib::Client made("127.0.0.1", host_->port());
    made.set_keep_alive(true);
    made.set_read_timeout(60);
    return made;
  }

  /// One request; the test fails when there is no answer.
  httplib::Response get(const std::string& path, const httplib::Headers& headers = {}) const {
    return checked(client().Get(path, headers));
  }
  httplib::Response post_form(const std::string& path, const std::string& body) const {
    return checked(client().Post(path, body, "application/x-www-form-urlencoded"));
  }
  static httplib::Response checked(httplib::Result result) {
    EXPECT_TRUE(result) << to_string(result.error());
    return result ? std::move(result.value()) : httplib::Response();
  }

  std::string log() const {
    const std::lock_guard guard(log_mutex_);
    return log_;
  }

  TemporarySite site_;
  HostOptions options_;
  std::string ended_;
  mutable std::mutex log_mutex_;
  std::string log_;
  std::unique_ptr<HttpHost> host_;
};

}  // namespace pelm::host::testing
