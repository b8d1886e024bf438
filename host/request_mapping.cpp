// Server variables from the request line and the headers; forms from bodies.
#include "host/request_mapping.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/value/text.h"

namespace pelm::host {
namespace {

constexpr std::string_view kUrlEncoded = "application/x-www-form-urlencoded";

bool is_media_type(const std::string& header, std::string_view type) {
  return text::equal_case_blind(text::trim(std::string_view(header).substr(0, header.find(';'))),
                                type);
}

/// Appends and counts; false when there is more than may come.
class BoundedText {
 public:
  explicit BoundedText(std::size_t most) : left_(most) {}
  bool append(std::string& to, const char* data, std::size_t size) {
    exceeded_ = exceeded_ || size > left_;
    if (exceeded_) return false;
    left_ -= size;
    to.append(data, size);
    return true;
  }
  BodyOutcome outcome(bool read) const {
    if (exceeded_) return BodyOutcome::TooLarge;
    return read ? BodyOutcome::Read : BodyOutcome::Broken;
  }

 private:
  std::size_t left_;
  bool exceeded_ = false;
};

BodyOutcome read_multipart(const httplib::ContentReader& reader, BoundedText& bound,
                           page::NamedValues& form) {
  struct Part {
    std::string name;
    std::string value;
    bool is_file;
  };
  std::vector<Part> parts;
  const bool read = reader(
      [&](const httplib::MultipartFormData& head) {
        parts.push_back({head.name, std::string(), !head.filename.empty()});
        return true;
      },
      [&](const char* data, std::size_t size) {
        return !parts.empty() && bound.append(parts.back().value, data, size);
      });
  for (Part& part : parts) {
    if (!part.is_file) form.add(std::move(part.name), std::move(part.value));
  }
  return bound.outcome(read);
}

/// "HTTP_USER_AGENT" for "User-Agent".
std::string variable_of(std::string_view header) {
  std::string name = "HTTP_";
  for (const char c : header) {
    name += c == '-' ? '_' : static_cast<char>(c >= 'a' && c <= 'z' ? c - ('a' - 'A') : c);
  }
  return name;
}

/// Without its port, and without the brackets of a numeric address.
std::string server_name(const httplib::Request& request) {
  const std::string host = request.get_header_value("Host");
  if (host.starts_with('[')) return host.substr(1, host.find(']') - 1);
  return host.substr(0, host.find(':'));
}

}  // namespace

BodyOutcome read_form(const httplib::Request& request, const httplib::ContentReader& reader,
                      std::size_t most_bytes, page::NamedValues& form) {
  BoundedText bound(most_bytes);
  if (request.is_multipart_form_data()) return read_multipart(reader, bound, form);
  std::string body;
  const bool read =
      reader([&](const char* data, std::size_t size) { return bound.append(body, data, size); });
  if (read && is_media_type(request.get_header_value("Content-Type"), kUrlEncoded)) {
    const auto fields = page::parse_url_encoded(body);
    for (const auto& name : fields->Names()) {
      for (auto& value : fields->Values(name)) form.add(name, std::move(value));
    }
  }
  return bound.outcome(read);
}

std::shared_ptr<page::Request> page_request(const httplib::Request& request,
                                            const RequestTarget& target,
                                            const std::string& page_path) {
  auto made = std::make_shared<page::Request>();
  made->QueryString = page::parse_url_encoded(target.query);
  made->Cookies = page::parse_cookies(request.get_header_value("Cookie"));
  page::NamedValues& variables = *made->ServerVariables;
  variables.add("REQUEST_METHOD", request.method);
  variables.add("QUERY_STRING", target.query);
  variables.add("SCRIPT_NAME", page_path);
  variables.add("PATH_INFO", page_path);
  variables.add("URL", page_path);
  variables.add("SERVER_NAME", server_name(request));
  variables.add("SERVER_PORT", std::to_string(request.local_port));
  variables.add("SERVER_PROTOCOL", request.version);
  variables.add("REMOTE_ADDR", request.remote_addr);
  variables.add("REMOTE_HOST", request.remote_addr);
  variables.add("CONTENT_TYPE", request.get_header_value("Content-Type"));
  variables.add("CONTENT_LENGTH", request.get_header_value("Content-Length"));
  for (const auto& [name, value] : request.headers) {
    // The library puts its own variables among the headers; and a name with "_" could pass for
    // another one.
    if (name.find('_') == std::string::npos) variables.add(variable_of(name), value);
  }
  return made;
}

}  // namespace pelm::host
