// Runs pages as the host does, without HTTP, and shows what they wrote and how they failed.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/page_runner.h"
#include "platform/page/application.h"
#include "platform/page/request.h"
#include "platform/page/response.h"
#include "platform/page/session.h"
#include "tests/host/probe.h"
#include "tests/host/temporary_site.h"

namespace pelm::host::testing {

class ScriptFixture : public ::testing::Test {
 protected:
  explicit ScriptFixture(ScriptLimits limits = {})
      : runner_(site_.root(), probe_hooks(ended_), limits, std::make_shared<Watchdog>()) {}

  /// What the last page failed with, for messages.
  std::string failures() const {
    std::string text;
    for (const PageFailure& failure : failures_) {
      text += failure.source + " (" + std::to_string(failure.number) + "): " + failure.description +
              ", " + failure.place.file + ":" + std::to_string(failure.place.line) + "\n";
    }
    return text;
  }

  /// Runs `text` as a page and gives its output; its failures are in `failures_`.
  std::string run(std::string_view text) {
    site_.write("p.page", text);
    return run_page("/p.page");
  }

  std::string run_page(const std::string& page_path) {
    auto context = std::make_shared<page::ScriptingContext>();
    context->Application = application_;
    context->Session = session_;
    context->Request = request_;
    context->Response = response_ = std::make_shared<page::Response>();
    ended_.clear();
    failures_ = runner_.run(page_path, context);
    return response_->body();
  }

  /// The output of an expression.
  std::string value_of(std::string_view expression) {
    const std::string body =
        run("<% const p = Server.CreateObject('Teste.Probe'); %><%= " + std::string(expression) +
            " %>");
    if (!failures_.empty()) return "falha: " + failures_[0].description;
    return body;
  }

  /// The only failure of a page that must fail.
  PageFailure failure_of(std::string_view text) {
    run(text);
    EXPECT_EQ(failures_.size(), 1U) << text;
    return failures_.empty() ? PageFailure() : failures_[0];
  }

  TemporarySite site_;
  std::string ended_;
  std::vector<PageFailure> failures_;
  std::shared_ptr<page::Application> application_ = std::make_shared<page::Application>();
  std::shared_ptr<page::Session> session_ = std::make_shared<page::Session>("id");
  std::shared_ptr<page::Request> request_ = std::make_shared<page::Request>();
  std::shared_ptr<page::Response> response_;
  PageRunner runner_;
};

}  // namespace pelm::host::testing
