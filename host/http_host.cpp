// From a request to an answer: which page or file serves it, and who runs it.
#include "host/http_host.h"

#include <httplib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "host/connection_server.h"
#include "host/error_page.h"
#include "host/page_answer.h"
#include "host/page_pool.h"
#include "host/request_mapping.h"
#include "host/request_target.h"
#include "host/session_store.h"
#include "host/static_files.h"
#include "pelm/error.h"
#include "platform/page/request.h"
#include "platform/page/response.h"
#include "platform/page/session.h"
#include "platform/page/site_path.h"
#include "platform/value/text.h"

namespace pelm::host {
namespace fs = std::filesystem;
namespace {

constexpr std::string_view kSessionCookie = "pelm_session";
constexpr const char* kHtml = "text/html; charset=utf-8";
constexpr const char* kAllowed = "GET, HEAD, POST";

/// What the host's own texts need: their style sheet, and nothing else.
constexpr const char* kPolicyHeader = "Content-Security-Policy";
constexpr const char* kOwnTextsPolicy =
    "default-src 'none'; style-src 'unsafe-inline'; base-uri 'none'; form-action 'none'; "
    "frame-ancestors 'self'";

/// With every answer; a page's own header takes the place of the one here.
const httplib::Headers kEveryAnswer = {{"X-Content-Type-Options", "nosniff"},
                                       {"X-Frame-Options", "SAMEORIGIN"},
                                       {"Referrer-Policy", "same-origin"},
                                       {"Accept-Ranges", "none"}};

ConnectionLimits connection_limits(const HostOptions& options) {
  ConnectionLimits limits;
  limits.threads = options.connections;
  limits.body_bytes = options.request_body_bytes;
  limits.requests = options.keep_alive_requests;
  limits.read = options.read_timeout;
  limits.write = options.write_timeout;
  limits.keep_alive = options.keep_alive;
  return limits;
}

std::size_t announced_length(const httplib::Request& request) {
  const std::string text = request.get_header_value("Content-Length");
  std::size_t length = 0;
  const std::errc error = std::from_chars(text.data(), text.data() + text.size(), length).ec;
  return error == std::errc::result_out_of_range ? SIZE_MAX : length;
}

bool announces_body(const httplib::Request& request) {
  return announced_length(request) > 0 || request.has_header("Transfer-Encoding");
}

bool is_whole_number(std::string_view text) {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// A body whose end two readers could see differently is the way to smuggle a request past a
/// proxy.
bool is_ambiguous(const httplib::Request& request) {
  const auto lengths = request.get_header_value_count("Content-Length");
  const auto encodings = request.get_header_value_count("Transfer-Encoding");
  if (lengths + encodings > 1) return true;
  const std::string length = request.get_header_value("Content-Length");
  if (lengths == 1 && !is_whole_number(length)) return true;
  return encodings == 1 &&
         !text::equal_case_blind(request.get_header_value("Transfer-Encoding"), "chunked");
}

/// A client waits for no body behind these.
bool has_body(int status) { return status != 204 && status != 304; }

}  // namespace

class HttpHost::Part {
 public:
  Part(HostOptions options, PageHooks hooks, Log log);

  void start();
  void stop();

  page::Application& application() { return *application_; }
  int port() const { return port_; }

 private:
  void set_routes();
  int refusal(const httplib::Request& request) const;
  void answer(const httplib::Request& request, httplib::Response& response,
              const httplib::ContentReader* body);
  void answer_page(const std::string& page_path, const RequestTarget& target,
                   const httplib::Request& request, httplib::Response& response,
                   const httplib::ContentReader* body);
  void answer_file(const StaticFile& file, const httplib::Request& request,
                   httplib::Response& response) const;
  void refuse(httplib::Response& response, int status, std::string_view path = {}) const;

  std::shared_ptr<page::Session> session_of(const page::Request& request,
                                            const std::shared_ptr<page::Response>& response);
  void run_page(PageRunner& runner, const std::string& page_path,
                const std::shared_ptr<page::ScriptingContext>& context, PageAnswer& answer);
  void finish_failed(const page::Response& response, const PageFailure& failure,
                     PageAnswer& answer) const;
  static void send_head(const ResponseHead& head, httplib::Response& response);
  static void stream(const std::shared_ptr<PageAnswer>& answer,
                     const std::shared_ptr<page::Response>& page_response,
                     httplib::Response& response);
  bool is_page(const std::string& path) const;
  bool is_folder(const std::string& path) const;

  HostOptions options_;
  page::SiteRoot root_;
  PageHooks hooks_;
  Log log_;
  std::shared_ptr<page::Application> application_ = std::make_shared<page::Application>();
  SessionStore sessions_;
  StaticFiles files_;
  ConnectionServer server_;
  std::unique_ptr<PagePool> pages_;
  std::thread listener_;
  int port_ = 0;
};

HttpHost::Part::Part(HostOptions options, PageHooks hooks, Log log)
    : options_(std::move(options)),
      root_(options_.root),
      hooks_(std::move(hooks)),
      log_(std::move(log)),
      sessions_(options_.sessions),
      files_(root_, options_.media_types),
      server_(connection_limits(options_)) {
  set_routes();
}

void HttpHost::Part::start() {
  std::error_code ignored;
  if (!fs::is_directory(options_.root, ignored)) {
    throw std::runtime_error("the root " + options_.root.string() + " is no folder");
  }
  pages_ = std::make_unique<PagePool>(
      options_.page_threads, [this, watchdog = std::make_shared<Watchdog>()] {
        return std::make_unique<PageRunner>(root_, hooks_, options_.script, watchdog);
      });
  port_ = server_.bind(options_.address, options_.port);
  listener_ = std::thread([this] { server_.listen_after_bind(); });
  while (!server_.is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

void HttpHost::Part::stop() {
  if (!listener_.joinable()) return;
  server_.drain();
  server_.stop();
  listener_.join();
  pages_.reset();
}

void HttpHost::Part::set_routes() {
  server_.set_default_headers(kEveryAnswer);
  server_.set_expect_100_continue_handler(
      [this](const httplib::Request& request, httplib::Response& response) {
        const int status = refusal(request);
        if (status == 0) return 100;
        ConnectionServer::close_after_answer(response);
        refuse(response, status);
        return status;
      });
  server_.set_pre_routing_handler(
      [this](const httplib::Request& request, httplib::Response& response) {
        const int status = refusal(request);
        if (status == 0) return httplib::Server::HandlerResponse::Unhandled;
        if (status == 405) response.set_header("Allow", kAllowed);
        ConnectionServer::close_after_answer(response);
        refuse(response, status);
        return httplib::Server::HandlerResponse::Handled;
      });
  server_.Get(kEveryPath, [this](const httplib::Request& request, httplib::Response& response) {
    if (announces_body(request)) ConnectionServer::close_after_answer(response);
    answer(request, response, nullptr);
  });
  server_.Post(kEveryPath, [this](const httplib::Request& request, httplib::Response& response,
                                  const httplib::ContentReader& reader) {
    answer(request, response, &reader);
  });
  // What the library refuses by itself comes without a text.
  using Handler = httplib::Server::HandlerWithResponse;
  server_.set_error_handler(Handler([this](const httplib::Request&, httplib::Response& response) {
    if (!response.body.empty() || response.has_header("Content-Type")) {
      return httplib::Server::HandlerResponse::Unhandled;
    }
    ConnectionServer::close_after_answer(response);  // where the next request begins is unsure
    refuse(response, response.status);
    return httplib::Server::HandlerResponse::Handled;
  }));
  server_.set_exception_handler([this](const httplib::Request& request, httplib::Response& response,
                                       const std::exception_ptr&) {
    log_("internal error while serving " + request.method + " " + request.target);
    refuse(response, 500);
  });
  if (options_.access_log) {
    server_.set_logger([this](const httplib::Request& request, const httplib::Response& response) {
      log_(request.remote_addr + " " + request.method + " " + request.target + " " +
           std::to_string(response.status));
    });
  }
}

/// The status for a request that is not looked at any further; 0 for all others.
int HttpHost::Part::refusal(const httplib::Request& request) const {
  if (request.method != "GET" && request.method != "HEAD" && request.method != "POST") return 405;
  if (is_ambiguous(request)) return 400;
  if (announced_length(request) > options_.request_body_bytes) return 413;
  return 0;
}

void HttpHost::Part::refuse(httplib::Response& response, int status, std::string_view path) const {
  response.status = status;
  response.set_header(kPolicyHeader, kOwnTextsPolicy);
  response.set_content(error_page(status, path), kHtml);
}

bool HttpHost::Part::is_page(const std::string& path) const {
  if (!path.ends_with(options_.page_suffix)) return false;
  const auto file = page::resolve_in_site(root_, "/", path);
  std::error_code ignored;
  return file && fs::is_regular_file(*file, ignored);
}

bool HttpHost::Part::is_folder(const std::string& path) const {
  const auto folder = page::resolve_in_site(root_, "/", path);
  std::error_code ignored;
  return folder && fs::is_directory(*folder, ignored);
}

void HttpHost::Part::answer(const httplib::Request& request, httplib::Response& response,
                            const httplib::ContentReader* body) {
  const auto target = parse_target(request.target);
  const auto close_unread = [&] {
    if (body && announces_body(request)) ConnectionServer::close_after_answer(response);
  };
  if (!target) {
    close_unread();
    return refuse(response, 400);
  }
  const bool names_folder = target->path.ends_with('/');
  const std::string path = names_folder ? target->path + options_.default_document : target->path;
  if (has_hidden_part(path)) {
    close_unread();
    return refuse(response, 404, target->path);
  }
  if (is_page(path)) return answer_page(path, *target, request, response, body);
  close_unread();
  if (const auto file = files_.find(path)) {
    if (!body) return answer_file(*file, request, response);
    response.set_header("Allow", "GET, HEAD");
    return refuse(response, 405, target->path);
  }
  if (!names_folder && !body && is_folder(path)) {
    response.set_header(
        "Location", encode_path(path) + "/" + (target->query.empty() ? "" : "?" + target->query));
    response.status = 301;
    return;
  }
  refuse(response, 404, target->path);
}

void HttpHost::Part::answer_file(const StaticFile& file, const httplib::Request& request,
                                 httplib::Response& response) const {
  response.set_header("ETag", file.etag);
  response.set_header("Last-Modified", file.last_modified);
  if (file.is_known_to(request.get_header_value("If-None-Match"),
                       request.get_header_value("If-Modified-Since"))) {
    response.status = 304;
    return;
  }
  auto stream = std::make_shared<std::ifstream>(file.path, std::ios::binary);
  if (!*stream) return refuse(response, 404);
  response.status = 200;
  if (file.size == 0) return response.set_content("", file.media_type);
  ConnectionServer::send_head_with_body();
  response.set_content_provider(
      file.size, file.media_type,
      [stream](std::size_t, std::size_t length, httplib::DataSink& sink) {
        std::array<char, 65536> piece = {};
        stream->read(piece.data(), static_cast<std::streamsize>(std::min(length, piece.size())));
        const auto count = static_cast<std::size_t>(stream->gcount());
        return count > 0 && sink.write(piece.data(), count);  // false: the file became shorter
      });
}

std::shared_ptr<page::Session> HttpHost::Part::session_of(
    const page::Request& request, const std::shared_ptr<page::Response>& response) {
  for (const std::string& id : request.Cookies->Values(kSessionCookie)) {
    if (auto known = sessions_.find(id)) return known;
  }
  const bool secure = options_.secure_cookies;
  return sessions_.fresh([weak = std::weak_ptr(response), secure](const std::string& id) {
    const auto head = weak.lock();
    if (!head) raise_error(error_number::kInvalidCall, "Session", "A página já terminou.");
    page::ResponseCookie cookie;
    cookie.name = kSessionCookie;
    cookie.value = id;
    cookie.secure = secure;
    head->SetCookie(std::move(cookie));
  });
}

void HttpHost::Part::answer_page(const std::string& page_path, const RequestTarget& target,
                                 const httplib::Request& request, httplib::Response& response,
                                 const httplib::ContentReader* body) {
  auto context = std::make_shared<page::ScriptingContext>();
  context->Application = application_;
  context->Request = page_request(request, target, page_path);
  if (body && announces_body(request)) {
    const BodyOutcome outcome =
        read_form(request, *body, options_.request_body_bytes, *context->Request->Form);
    if (outcome != BodyOutcome::Read) {
      ConnectionServer::close_after_answer(response);
      return refuse(response, outcome == BodyOutcome::TooLarge ? 413 : 400);
    }
  }
  auto answer = std::make_shared<PageAnswer>();
  page::Response::Sink send_piece = [answer](const page::Response& head, std::string_view piece) {
    answer->send(head, piece);
  };
  if (request.version == "HTTP/1.0") send_piece = nullptr;  // it knows no answer in pieces
  context->Response = std::make_shared<page::Response>(std::move(send_piece));
  context->Response->buffer_limit(options_.response_buffer_bytes);
  context->Session = session_of(*context->Request, context->Response);

  pages_->submit([this, page_path, context, answer](PageRunner& runner) {
    run_page(runner, page_path, context, *answer);
  });
  const PageAnswer::Kind kind = answer->wait([&] {
    if (ConnectionServer::client_has_gone()) context->Response->client_connected(false);
  });
  send_head(answer->head(), response);
  if (kind == PageAnswer::Kind::Pieces) {
    stream(answer, context->Response, response);
  } else if (has_body(answer->head().status)) {
    response.body = answer->next().value_or(std::string());  // moved, unlike by `set_content`
    response.set_header("Content-Type", answer->head().content_type);
    ConnectionServer::send_head_with_body();
  }
}

void HttpHost::Part::send_head(const ResponseHead& head, httplib::Response& response) {
  response.status = head.status;
  for (const auto& header : head.headers) {
    if (kEveryAnswer.count(header.first) > 0) response.headers.erase(header.first);
  }
  for (const auto& [name, value] : head.headers) response.headers.emplace(name, value);
  // As pages were always answered: for this visitor, and asked for again.
  if (!response.has_header("Cache-Control")) {
    response.set_header("Cache-Control", "private, no-cache");
  }
}

void HttpHost::Part::stream(const std::shared_ptr<PageAnswer>& answer,
                            const std::shared_ptr<page::Response>& page_response,
                            httplib::Response& response) {
  response.set_chunked_content_provider(
      answer->head().content_type,
      [answer](std::size_t, httplib::DataSink& sink) {
        const auto piece = answer->next();
        if (piece) return sink.write(piece->data(), piece->size());
        sink.done();
        return true;
      },
      // Also after HEAD, which sends no body: the page must not wait for anyone to take it.
      [answer, page_response](bool sent) {
        if (!sent) page_response->client_connected(false);
        answer->abandon();
      });
}

void HttpHost::Part::run_page(PageRunner& runner, const std::string& page_path,
                              const std::shared_ptr<page::ScriptingContext>& context,
                              PageAnswer& answer) {
  const auto response = context->Response;
  const auto session = context->Session;
  std::vector<PageFailure> failures;
  try {
    failures = runner.run(page_path, context);
  } catch (const std::exception& error) {
    failures.push_back({error_number::kInternal, "Host", error.what(), {page_path, 0}});
  }
  sessions_.page_ended(*session);
  for (const PageFailure& failure : failures) {
    log_(context->Request->ServerVariables->Item("REQUEST_METHOD").value_or("") + " " + page_path +
         ": " + failure_line(failure));
  }
  if (failures.empty()) {
    answer.finish(head_of(*response), response->take_body());
  } else {
    finish_failed(*response, failures.front(), answer);
  }
}

void HttpHost::Part::finish_failed(const page::Response& response, const PageFailure& failure,
                                   PageAnswer& answer) const {
  if (response.headers_sent()) {
    answer.finish({}, response.body() + failure_block(failure, options_.error_details));
    return;
  }
  ResponseHead head;
  head.status = 500;
  head.content_type = kHtml;
  head.headers.emplace_back(kPolicyHeader, kOwnTextsPolicy);
  for (auto& header : head_of(response).headers) {
    if (header.first == "Set-Cookie") head.headers.push_back(std::move(header));
  }
  answer.finish(std::move(head), failure_page(failure, options_.error_details));
}

HttpHost::HttpHost(HostOptions options, PageHooks hooks, Log log)
    : part_(std::make_unique<Part>(std::move(options), std::move(hooks), std::move(log))) {}

HttpHost::~HttpHost() { stop(); }

page::Application& HttpHost::application() { return part_->application(); }

void HttpHost::start() { part_->start(); }

int HttpHost::port() const { return part_->port(); }

void HttpHost::stop() { part_->stop(); }

}  // namespace pelm::host
