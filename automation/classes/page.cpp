// The type library's tables of the page objects.
#include <optional>

#include "automation/binding.h"
#include "automation/class_list.h"
#include "platform/page/application.h"
#include "platform/page/object_context.h"
#include "platform/page/request.h"
#include "platform/page/response.h"
#include "platform/page/server.h"
#include "platform/page/session.h"

namespace pelm::automation {
namespace {

using page::Application;
using page::NamedValues;
using page::Request;
using page::Response;
using page::Server;
using page::Session;

/// What a page sends out: nothing for a value that is not there.
std::string shown(const OptionalArg& value) {
  return !value || value->is_null() ? std::string() : to_text(*value);
}

Variant text_or_empty(const std::optional<std::string>& value) {
  return value ? Variant(*value) : Variant();
}

Variant text_array(const std::vector<std::string>& texts) {
  return Variant(Variant::Elements(texts.begin(), texts.end()));
}

/// The members that both stores of named variables have.
template <class Store>
std::vector<MemberInfo> variable_members() {
  return {
      default_member(
          writable<[](Store& s, const Variant& v, std::string_view name) { s.Value(name, v); }>(
              computed<[](Store& s, std::string_view name) { return s.Value(name); }>(
                  "Value", "A variable; empty when there is none of that name.", {"Name"}))),
      method<&Store::Remove>("Remove", "Forgets a variable.", {"Name"}),
      method<&Store::RemoveAll>("RemoveAll", "Forgets every variable."),
      computed<[](Store& s) { return text_array(s.Names()); }>("Names",
                                                               "The names of the variables."),
  };
}

std::vector<MemberInfo> joined(std::vector<MemberInfo> members, std::vector<MemberInfo> more) {
  members.insert(members.end(), std::make_move_iterator(more.begin()),
                 std::make_move_iterator(more.end()));
  return members;
}

}  // namespace

ClassEntry application_table() {
  return class_table<Application>(
      kClassName<Application>, "", "The variables that all pages share.",
      joined(variable_members<Application>(),
             {
                 method<&Application::Lock>("Lock", "Keeps other pages out until Unlock."),
                 method<&Application::Unlock>("Unlock", "Lets other pages in again."),
             }));
}

ClassEntry session_table() {
  return class_table<Session>(
      kClassName<Session>, "", "The variables of one visitor.",
      joined(variable_members<Session>(),
             {
                 property("SessionID", "The visitor's identifier.", &Session::SessionID),
                 property("Timeout", "Minutes without a page before it is forgotten.",
                          &Session::Timeout, &Session::Timeout),
                 method<&Session::Abandon>("Abandon", "Forgets the visitor after this page."),
             }));
}

ClassEntry request_table() {
  return class_table<Request>(
      kClassName<Request>, "", "What the browser sent.",
      {
          default_member(computed<[](Request& r, std::string_view name) {
            return text_or_empty(r.Item(name));
          }>("Item", "A value from the address, the form, the cookies or the server.", {"Name"})),
          computed<[](Request& r) { return r.QueryString; }>("QueryString",
                                                             "Values from the address."),
          computed<[](Request& r) { return r.Form; }>("Form", "Values from the form."),
          computed<[](Request& r) { return r.Cookies; }>("Cookies", "The browser's cookies."),
          computed<[](Request& r) { return r.ServerVariables; }>(
              "ServerVariables", "What the server knows of the request."),
      });
}

ClassEntry named_values_table() {
  using N = NamedValues;
  return class_table<N>(
      kClassName<N>, "", "Texts by name, as the browser sent them.",
      {
          default_member(
              computed<[](N& n, std::string_view name) { return text_or_empty(n.Item(name)); }>(
                  "Item", "The text of that name, several joined by \", \"; empty when none.",
                  {"Name"})),
          computed<[](N& n, std::string_view name) { return text_array(n.Values(name)); }>(
              "Values", "Each text of that name.", {"Name"}),
          computed<[](N& n) { return text_array(n.Names()); }>("Names", "Each name once."),
          computed<[](N& n) { return static_cast<std::int32_t>(n.Names().size()); }>(
              "Count", "How many names there are."),
      });
}

ClassEntry response_table() {
  using R = Response;
  return class_table<R>(
      kClassName<R>, "", "What the page answers.",
      {
          method<[](R& r, const OptionalArg& value) {
            if (value && value->is_text()) return r.Write(value->text());
            r.Write(shown(value));
          }>("Write", "Adds text to the page.", {"Value"}),
          property("Status", "\"200 OK\" and the like.", &R::Status, &R::Status),
          property("ContentType", "The media type.", &R::ContentType, &R::ContentType),
          property("Charset", "The character set.", &R::Charset, &R::Charset),
          property("Buffer", "True holds the page back until it is whole.", &R::Buffer, &R::Buffer),
          property("IsClientConnected", "False once the browser has gone.", &R::IsClientConnected),
          method<&R::AddHeader>("AddHeader", "Adds a header.", {"Name", "Value"}),
          writable<[](R& r, const Variant& value, std::string_view name) {
            page::ResponseCookie cookie;
            cookie.name = std::string(name);
            cookie.value = shown(value);
            r.SetCookie(std::move(cookie));
          }>(computed<[](R& r, std::string_view name) {
            for (const page::ResponseCookie& cookie : r.cookies()) {
              if (cookie.name == name) return Variant(cookie.value);
            }
            return Variant();
          }>("Cookies", "A cookie to set, for as long as the browser is open.", {"Name"})),
          method<[](R& r, std::string_view name, std::string_view value, const OptionalArg& expires,
                    std::string_view path, bool secure, bool http_only) {
            page::ResponseCookie cookie;
            cookie.name = std::string(name);
            cookie.value = std::string(value);
            if (expires) cookie.expires = to_date(*expires);
            cookie.path = std::string(path);
            cookie.secure = secure;
            cookie.http_only = http_only;
            r.SetCookie(std::move(cookie));
          }>("SetCookie", "Sets a cookie with all it may have.",
             {"Name", "Value", "Expires", {"Path", "/"}, {"Secure", false}, {"HttpOnly", true}}),
          method<[](R& r) { r.Flush(); }>("Flush", "Sends what is held back."),
          method<[](R& r) { r.Clear(); }>("Clear", "Drops what is held back."),
          method<[](R& r) { r.End(); }>("End", "Ends the page here."),
          method<[](R& r, std::string_view location) { r.Redirect(location); }>(
              "Redirect", "Sends the browser elsewhere and ends the page.", {"Location"}),
      });
}

ClassEntry server_table() {
  using S = Server;
  return class_table<S>(
      kClassName<S>, "", "What the web server does for a page.",
      {
          method<&S::CreateObject>("CreateObject", "An object by its programmatic identifier.",
                                   {"ProgID"}),
          method<[](S&, const OptionalArg& text) { return S::HTMLEncode(shown(text)); }>(
              "HTMLEncode", "Text safe inside HTML.", {"Text"}),
          method<[](S&, const OptionalArg& text) { return S::URLEncode(shown(text)); }>(
              "URLEncode", "Text safe inside an address.", {"Text"}),
          method<&S::MapPath>("MapPath", "The file of a path of the site.", {"Path"}),
          property("ScriptTimeout", "Seconds that the page may run.", &S::ScriptTimeout,
                   &S::ScriptTimeout),
      });
}

ClassEntry scripting_context_table() {
  using C = page::ScriptingContext;
  return class_table<C>(
      kClassName<C>, "", "The page objects that a page hands to the objects it starts.",
      {
          computed<[](C& c) { return c.Request; }>("Request", "What the browser sent."),
          computed<[](C& c) { return c.Response; }>("Response", "What the page answers."),
          computed<[](C& c) { return c.Server; }>("Server", "What the web server does for a page."),
          computed<[](C& c) { return c.Session; }>("Session", "The variables of one visitor."),
          computed<[](C& c) { return c.Application; }>("Application",
                                                       "The variables that all pages share."),
      });
}

}  // namespace pelm::automation
