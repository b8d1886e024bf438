// The page objects that a widget holds from the start of a page to its end.
#include "pelm/page_widget.h"

#include "pelm/error.h"
#include "platform/page/object_context.h"
#include "platform/page/request.h"
#include "platform/page/response.h"
#include "platform/page/server.h"

namespace pelm {

void PageWidget::OnStartPage(const std::shared_ptr<page::ScriptingContext>& ASPScriptingContext) {
  context_ = ASPScriptingContext;
  if (!context_) raise_error(error_number::kObjectNotSet);
  response_ = context_->Response;
  request_ = context_->Request;
  server_ = context_->Server;
}

void PageWidget::OnEndPage() {
  response_.reset();
  request_.reset();
  server_.reset();
  context_.reset();
}

page::Response& PageWidget::response() const {
  if (!response_) raise_error(error_number::kObjectNotSet);
  return *response_;
}

page::Request& PageWidget::request() const {
  if (!request_) raise_error(error_number::kObjectNotSet);
  return *request_;
}

}  // namespace pelm
