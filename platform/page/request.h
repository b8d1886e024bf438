/// What the browser sent.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pelm/object.h"

namespace pelm::page {

/// Named texts in the order they came; a name may have several values. Names without case.
class NamedValues : public Object {
 public:
  NamedValues() = default;
  explicit NamedValues(std::vector<std::pair<std::string, std::string>> pairs);

  /// The values of `name` joined by ", "; absent when the name was not sent.
  std::optional<std::string> Item(std::string_view name) const;
  std::vector<std::string> Values(std::string_view name) const;
  /// Each name once, in order of first appearance.
  std::vector<std::string> Names() const;
  bool empty() const { return pairs_.empty(); }

  void add(std::string name, std::string value);

 private:
  std::vector<std::pair<std::string, std::string>> pairs_;
};

/// Reads "a=1&b=x+y%20z": "+" is a blank, %XX a byte; a broken escape stays as it stands.
std::shared_ptr<NamedValues> parse_url_encoded(std::string_view text);
/// Reads a Cookie header: "a=1; b=2".
std::shared_ptr<NamedValues> parse_cookies(std::string_view header);

class Request : public Object {
 public:
  std::shared_ptr<NamedValues> QueryString = std::make_shared<NamedValues>();
  std::shared_ptr<NamedValues> Form = std::make_shared<NamedValues>();
  std::shared_ptr<NamedValues> Cookies = std::make_shared<NamedValues>();
  /// REQUEST_METHOD, QUERY_STRING, SCRIPT_NAME, PATH_INFO, SERVER_NAME, SERVER_PORT, REMOTE_ADDR,
  /// CONTENT_TYPE, CONTENT_LENGTH and HTTP_ and the name of each header.
  std::shared_ptr<NamedValues> ServerVariables = std::make_shared<NamedValues>();

  /// Query string, then form, then cookies, then server variables; absent when nowhere.
  std::optional<std::string> Item(std::string_view name) const;
};

}  // namespace pelm::page
