/// A page being served, without a host: what it asks and what is written to it.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/page/application.h"
#include "platform/page/object_context.h"
#include "platform/page/request.h"
#include "platform/page/response.h"
#include "platform/page/server.h"

namespace pelm::test {

inline std::shared_ptr<page::ScriptingContext> page_asked_for(std::string_view query_string = {}) {
  auto context = std::make_shared<page::ScriptingContext>();
  context->Application = std::make_shared<page::Application>();
  context->Request = std::make_shared<page::Request>();
  context->Request->QueryString = page::parse_url_encoded(query_string);
  context->Response = std::make_shared<page::Response>();
  return context;
}

}  // namespace pelm::test
