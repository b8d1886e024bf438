/// What the widgets of a page have in common: the page starts them, and they write to it.
#pragma once

#include <memory>

#include "pelm/object.h"

namespace pelm {

namespace page {
class Request;
class Response;
class ScriptingContext;
class Server;
}  // namespace page

class PageWidget : public Object {
 public:
  /// Takes the page objects from the page; the host calls it on what a page creates. Raises 91
  /// for nothing.
  void OnStartPage(const std::shared_ptr<page::ScriptingContext>& ASPScriptingContext);
  /// Lets them go.
  void OnEndPage();

 protected:
  /// Those of the page. Raise 91 outside it.
  page::Response& response() const;
  page::Request& request() const;

 private:
  std::shared_ptr<page::ScriptingContext> context_;
  std::shared_ptr<page::Response> response_;
  std::shared_ptr<page::Request> request_;
  std::shared_ptr<page::Server> server_;
};

}  // namespace pelm
