// The server's services to a page.
#include "platform/page/server.h"

#include <utility>

#include "pelm/error.h"

namespace pelm::page {
namespace {

constexpr std::string_view kSource = "Server";

std::string_view character_reference(char c) noexcept {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return {};
  }
}

bool stays_in_url(char c) noexcept {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' ||
         c == '_' || c == '.';
}

}  // namespace

Server::Server(SiteRoot root, std::string page_path, Creator creator)
    : root_(std::move(root)), page_path_(std::move(page_path)), creator_(std::move(creator)) {}

ObjectRef Server::CreateObject(std::string_view programmatic_identifier) const {
  ObjectRef object = creator_ ? creator_(programmatic_identifier) : nullptr;
  if (!object) {
    raise_error(error_number::kCannotCreateObject, kSource,
                "\"" + std::string(programmatic_identifier) + "\"");
  }
  return object;
}

std::string Server::HTMLEncode(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text) {
    const std::string_view reference = character_reference(c);
    if (reference.empty()) {
      out += c;
    } else {
      out += reference;
    }
  }
  return out;
}

std::string Server::URLEncode(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string out;
  out.reserve(text.size());
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (stays_in_url(c)) {
      out += c;
    } else if (c == ' ') {
      out += '+';
    } else {
      out += '%';
      out += kDigits[byte >> 4U];
      out += kDigits[byte & 0xFU];
    }
  }
  return out;
}

std::string Server::MapPath(std::string_view path) const {
  const auto file = resolve_in_site(root_, folder_of(page_path_), path);
  if (!file) {
    raise_error(error_number::kInvalidCall, kSource,
                "MapPath(\"" + std::string(path.substr(0, path.find('\0'))) +
                    "\"): o caminho sai da raiz do site.");
  }
  return file->string();
}

void Server::ScriptTimeout(std::int32_t seconds) {
  if (seconds < 0) {
    raise_error(error_number::kInvalidCall, kSource,
                "ScriptTimeout = " + std::to_string(seconds) + ": esperado 0 ou mais segundos.");
  }
  script_timeout_ = seconds;
}

}  // namespace pelm::page
