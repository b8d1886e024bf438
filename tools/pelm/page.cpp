// `pelm page`: runs one page without a server and prints what it answers.
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "host/page_answer.h"
#include "host/page_runner.h"
#include "platform/page/application.h"
#include "platform/page/request.h"
#include "platform/page/response.h"
#include "platform/page/server.h"
#include "platform/page/session.h"
#include "tools/pelm/commands.h"
#include "tools/pelm/sample_crm.h"
#include "tools/pelm/site_options.h"

namespace pelm::tool {
namespace {

namespace fs = std::filesystem;

constexpr const char* kAbout =
    "Runs one page without a server and prints its answer.\n\n"
    "NAME=VALUE are what the address would carry behind its \"?\". The site's root is the folder "
    "of\n"
    "FILE, or the sample CRM's when FILE is one of its pages; --root names another. When the page\n"
    "fails, the reason goes to standard error and the exit status is 1.\n\n"
    "  pelm page examples/crm/site/itens/default.page busca=pasta";

struct PageOptions {
  SiteOptions site;
  std::string file;
  std::vector<std::string> values;
  bool headers = false;
};

/// Whether `file` stands in `folder` or below it.
bool is_below(const fs::path& file, const fs::path& folder) {
  const std::string way = file.lexically_relative(folder).generic_string();
  return !way.empty() && way != ".." && !way.starts_with("../");
}

fs::path root_of(const PageOptions& options, const fs::path& file) {
  if (!options.site.root.empty()) return fs::weakly_canonical(options.site.root);
  try {
    fs::path sample = fs::weakly_canonical(find_sample_crm().site);
    if (is_below(file, sample)) return sample;
  } catch (const UserError&) {
    // No sample is installed here, so it is no page of it.
  }
  return file.parent_path();
}

std::shared_ptr<page::Request> make_request(const PageOptions& options,
                                            const std::string& page_path) {
  auto request = std::make_shared<page::Request>();
  std::string query;
  for (const std::string& pair : options.values) {
    const std::size_t equals = pair.find('=');
    if (equals == 0 || equals == std::string::npos) {
      throw UserError("page: \"" + pair + "\" is not of the form NAME=VALUE", kRefused);
    }
    const std::string name = pair.substr(0, equals);
    const std::string value = pair.substr(equals + 1);
    request->QueryString->add(name, value);
    query += (query.empty() ? "" : "&") + page::Server::URLEncode(name) + "=" +
             page::Server::URLEncode(value);
  }
  request->ServerVariables->add("REQUEST_METHOD", "GET");
  request->ServerVariables->add("SCRIPT_NAME", page_path);
  request->ServerVariables->add("QUERY_STRING", query);
  return request;
}

void print_headers(const page::Response& response) {
  const host::ResponseHead head = host::head_of(response);
  std::cout << "HTTP/1.1 " << response.Status() << "\nContent-Type: " << head.content_type << '\n';
  for (const auto& [name, value] : head.headers) std::cout << name << ": " << value << '\n';
  std::cout << '\n';
}

int run_page(const PageOptions& options) {
  const fs::path file = fs::weakly_canonical(options.file);
  const Site site = prepare_site(options.site, root_of(options, file));
  if (!is_below(file, site.root)) {
    throw UserError("page: " + file.string() + " is not below the root " + site.root.string());
  }
  const std::string page_path = "/" + file.lexically_relative(site.root).generic_string();

  auto context = std::make_shared<page::ScriptingContext>();
  context->Application = std::make_shared<page::Application>();
  context->Session = std::make_shared<page::Session>("page");
  context->Request = make_request(options, page_path);
  context->Response = std::make_shared<page::Response>();
  set_application_variables(*context->Application, options.site, site);
  context->Application->Value("pelm_ShowErrors", true);  // whoever runs it sees the errors anyway

  host::PageRunner runner(site.root, {}, {}, std::make_shared<host::Watchdog>());
  const std::vector<host::PageFailure> failures = runner.run(page_path, context);
  if (options.headers) print_headers(*context->Response);
  std::cout << context->Response->body() << std::flush;
  for (const host::PageFailure& failure : failures) {
    std::cerr << failure.place.file << ':' << failure.place.line << ": " << failure.source << ": "
              << failure.description << " (" << failure.number << ")\n";
  }
  return failures.empty() ? kDone : kFailed;
}

}  // namespace

void add_page(CLI::App& program, int& status) {
  CLI::App* command = program.add_subcommand("page", "Run one page and print its answer");
  auto options = std::make_shared<PageOptions>();
  command->footer(kAbout);
  command->add_option("FILE", options->file, "The page")->required();
  command->add_option("NAME=VALUE", options->values, "What the address would carry");
  command->add_flag("--headers", options->headers, "Print the status and the headers too");
  add_site_options(*command, options->site);
  command->callback([options, &status] { status = run_page(*options); });
}

}  // namespace pelm::tool
