// The buffer and the head of an answer.
#include "platform/page/response.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "pelm/error.h"
#include "platform/value/text.h"

namespace pelm::page {
namespace {

constexpr std::string_view kSource = "Response";

/// They tell where an answer ends, which the page does not know.
constexpr std::array<std::string_view, 5> kServerHeaders = {"Content-Length", "Transfer-Encoding",
                                                            "Connection", "Keep-Alive", "Trailer"};

/// Bytes that a page may write before the buffer grows.
constexpr std::size_t kUsualPage = std::size_t{16} << 10U;

[[noreturn]] void refuse(std::string_view detail) {
  raise_error(error_number::kInvalidCall, kSource, detail);
}

bool is_control(char c) noexcept {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7f;
}

/// A name as HTTP allows one: no control, no blank, no separator, nothing beyond ASCII.
bool is_token(std::string_view s) noexcept {
  static constexpr std::string_view kSeparators = "()<>@,;:\\\"/[]?={} \t";
  return !s.empty() && std::none_of(s.begin(), s.end(), [](char c) {
    return is_control(c) || static_cast<unsigned char>(c) >= 0x80 ||
           kSeparators.find(c) != std::string_view::npos;
  });
}

void check_value(std::string_view what, std::string_view value) {
  if (std::any_of(value.begin(), value.end(), is_control)) {
    refuse(std::string(what) + ": quebra de linha ou caractere de controle no valor.");
  }
}

/// The number that a status text begins with; 0 when there is none.
int leading_number(std::string_view status) noexcept {
  int number = 0;
  const auto [end, error] = std::from_chars(status.data(), status.data() + status.size(), number);
  const bool ends_there = end == status.data() + status.size() || *end == ' ';
  return error == std::errc() && ends_there ? number : 0;
}

}  // namespace

Response::Response(Sink sink) : sink_(std::move(sink)) { body_.reserve(kUsualPage); }

void Response::refuse_after_headers() const {
  if (headers_sent_) refuse("O cabeçalho da resposta já foi enviado.");
}

void Response::Write(std::string_view text) {
  if (text.size() > buffer_limit_ - std::min(body_.size(), buffer_limit_)) {
    raise_error(error_number::kOutOfMemory, kSource,
                "A resposta passa do limite de " + std::to_string(buffer_limit_) +
                    " bytes do buffer; use Response.Flush.");
  }
  if (!buffered_ && sink_ && body_.empty()) {  // straight out, without a stay in the buffer
    headers_sent_ = true;
    sink_(*this, text);
    return;
  }
  body_ += text;
  if (!buffered_) Flush();
}

void Response::Status(std::string_view status) {
  refuse_after_headers();
  check_value("Status", status);
  const int number = leading_number(status);
  if (number < 200 || number > 599) {
    refuse("Status \"" + std::string(status) + "\": esperado um número de 200 a 599.");
  }
  status_ = status;
}

void Response::ContentType(std::string_view type) {
  refuse_after_headers();
  check_value("ContentType", type);
  content_type_ = type;
}

void Response::Charset(std::string_view charset) {
  refuse_after_headers();
  check_value("Charset", charset);
  charset_ = charset;
}

void Response::AddHeader(std::string_view name, std::string_view value) {
  refuse_after_headers();
  if (!is_token(name)) refuse("Nome de cabeçalho inválido: \"" + std::string(name) + "\".");
  check_value(name, value);
  const auto is_name = [name](std::string_view other) {
    return text::equal_case_blind(name, other);
  };
  if (std::any_of(kServerHeaders.begin(), kServerHeaders.end(), is_name)) {
    refuse("O cabeçalho \"" + std::string(name) + "\" é do servidor.");
  }
  if (is_name("Content-Type")) {
    content_type_ = value;
    charset_.clear();
    return;
  }
  headers_.emplace_back(name, value);
}

void Response::SetCookie(ResponseCookie cookie) {
  refuse_after_headers();
  if (!is_token(cookie.name)) refuse("Nome de cookie inválido: \"" + cookie.name + "\".");
  for (const std::string* attribute : {&cookie.path, &cookie.domain}) {
    check_value(cookie.name, *attribute);
    if (attribute->find(';') != std::string::npos) {
      refuse(cookie.name + ": \";\" no caminho ou no domínio do cookie.");
    }
  }
  // The last value of a name holds, as the browser would have it.
  std::erase_if(cookies_, [&](const ResponseCookie& other) {
    return other.name == cookie.name && other.path == cookie.path && other.domain == cookie.domain;
  });
  cookies_.push_back(std::move(cookie));
}

void Response::Buffer(bool buffered) {
  refuse_after_headers();
  buffered_ = buffered;
}

void Response::Flush() {
  if (!sink_) return;
  // Before the call: were the sink to fail half-way, the head may have gone.
  headers_sent_ = true;
  const std::string piece = std::move(body_);
  body_.clear();
  sink_(*this, piece);
}

void Response::Clear() {
  if (!buffered_) refuse("Clear exige Buffer ligado.");
  body_.clear();
}

void Response::End() { throw PageEnded(); }

void Response::Redirect(std::string_view location) {
  refuse_after_headers();
  check_value("Redirect", location);
  status_ = "302 Found";
  body_.clear();
  std::erase_if(headers_, [](const auto& header) { return header.first == "Location"; });
  headers_.emplace_back("Location", location);
  throw PageEnded();
}

int Response::status_code() const { return leading_number(status_); }

std::string Response::content_type_header() const {
  return charset_.empty() ? content_type_ : content_type_ + "; charset=" + charset_;
}

}  // namespace pelm::page
