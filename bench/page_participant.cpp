// Pages of one loop, run as the host runs them but without HTTP.
#include "bench/page_participant.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "frame/mod_principal.h"
#include "host/page_runner.h"
#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/page/application.h"
#include "platform/page/response.h"

namespace pelm::bench {
namespace {

struct Call {
  std::string_view operation;
  std::string_view script;  // for the number n
};
constexpr Call kCalls[] = {
    {"cadastrar_item", "base.cadastrar_item(1, nome(n), 20, 10000000 + n)"},
    {"alterar_item", "base.alterar_item(existente(n), 1, nome(n))"},
    {"fObterNomeItem", "base.fObterNomeItem(existente(n))"},
    {"cadastrar_contato", "base.cadastrar_contato(nome(n), 30, 40)"},
    {"Gerar_Oid", "base.Gerar_Oid()"},
};
static_assert(kItems == 100'000 && CrmDatabase::kFirstItem == 1'000'001 && kPosition == 30 &&
              kCompany == 40);

std::string page_of(const Call& call) {
  return "<%\n"
         "const main = Server.CreateObject('PelmComum2008.CMain');\n"
         "const conn = main.CConn, base = main.CBase;\n"
         "conn.Conex = null;\n"
         "conn.ConfigureConn(false, Application('banco'));\n"
         "conn.OpenConn();\n"
         "const nome = n => 'Contrato número ' + n, existente = n => 1000001 + n % 100000;\n"
         "const fim = Application('fim');\n"
         "let ultimo;\n"
         "for (let n = Application('primeiro'); n < fim; n++) ultimo = " +
         std::string(call.script) +
         ";\n"
         "conn.CloseConn();\n"
         "%><%= ultimo %>";
}

class Pages {
 public:
  explicit Pages(const CrmDatabase& database)
      : runner_(database.path().parent_path(), {}, {}, std::make_shared<host::Watchdog>()) {
    for (const Call& call : kCalls) {
      std::ofstream(database.path().parent_path() / (std::string(call.operation) + ".page"))
          << page_of(call);
    }
    frame::Main();  // no range of OIDs is left from another database
    application_->Value("banco", database.connection_string());
  }

  /// What the last call answered.
  std::string run(std::string_view operation, int first, int count) {
    application_->Value("primeiro", first);
    application_->Value("fim", first + count);
    const auto context = std::make_shared<page::ScriptingContext>();
    context->Application = application_;
    context->Response = std::make_shared<page::Response>();
    const auto failures = runner_.run("/" + std::string(operation) + ".page", context);
    if (failures.empty()) return context->Response->body();
    raise_error(failures[0].number, failures[0].source, failures[0].description);
  }

 private:
  std::shared_ptr<page::Application> application_ = std::make_shared<page::Application>();
  host::PageRunner runner_;
};

}  // namespace

Operations page_operations(const CrmDatabase& database) {
  const auto pages = std::make_shared<Pages>(database);
  return {[pages](int n) { pages->run("cadastrar_item", n, 1); },
          [pages](int n) { pages->run("alterar_item", n, 1); },
          [pages](int n) { return pages->run("fObterNomeItem", n, 1); },
          [pages](int n) { pages->run("cadastrar_contato", n, 1); },
          [pages](int n) { return to_long(Variant(pages->run("Gerar_Oid", n, 1))); },
          [pages](std::string_view operation, int first, int count) {
            pages->run(operation, first, count);
          }};
}

}  // namespace pelm::bench
