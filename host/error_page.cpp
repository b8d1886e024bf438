// Portuguese texts, one small style sheet.
#include "host/error_page.h"

#include <algorithm>
#include <array>

#include "platform/page/server.h"

namespace pelm::host {
namespace {

using page::Server;

struct StatusText {
  int status;
  std::string_view title;
  std::string_view advice;
};

constexpr std::array<StatusText, 12> kStatusTexts = {{
    {400, "Pedido inválido", "O endereço ou o pedido não pôde ser entendido."},
    {403, "Acesso negado", "Este endereço não é servido."},
    {404, "Página não encontrada", "Confira o endereço ou volte à página inicial."},
    {405, "Método não permitido", "Este endereço não aceita este tipo de pedido."},
    {408, "Tempo esgotado", "O pedido demorou a chegar. Tente de novo."},
    {413, "Pedido grande demais", "O que foi enviado passa do tamanho aceito."},
    {414, "Endereço longo demais", "Use um endereço mais curto."},
    {415, "Formato não aceito", "O formato do que foi enviado não é aceito."},
    {416, "Trecho inexistente", "O trecho pedido do arquivo não existe."},
    {417, "Expectativa não atendida", "O servidor não atende ao que o pedido espera."},
    {500, "Erro interno", "A página falhou. Tente de novo daqui a pouco."},
    {503, "Indisponível", "O servidor está parando. Tente de novo daqui a pouco."},
}};

const StatusText& text_of(int status) {
  static constexpr StatusText kOther = {0, "Erro", "O pedido não pôde ser atendido."};
  const auto* const found =
      std::find_if(kStatusTexts.begin(), kStatusTexts.end(),
                   [status](const StatusText& text) { return text.status == status; });
  return found == kStatusTexts.end() ? kOther : *found;
}

std::string whole_page(std::string_view title, std::string_view body) {
  std::string html =
      "<!DOCTYPE html>\n<html lang=\"pt-BR\"><head><meta charset=\"utf-8\">"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"><title>";
  html.append(title).append(
      "</title><style>body{font-family:sans-serif;max-width:42rem;margin:3rem auto;padding:0 1rem;"
      "line-height:1.5}dt{font-weight:bold}dd{margin:0 0 .5rem;overflow-wrap:anywhere}</style>"
      "</head><body><h1>");
  html.append(title).append("</h1>").append(body).append("</body></html>\n");
  return html;
}

std::string place_text(const SourcePlace& place) {
  return place.line > 0 ? place.file + " linha " + std::to_string(place.line) : place.file;
}

std::string details_list(const PageFailure& failure) {
  const std::array<std::pair<std::string_view, std::string>, 4> rows = {{
      {"Número", std::to_string(failure.number)},
      {"Origem", failure.source},
      {"Descrição", failure.description},
      {"Local", place_text(failure.place)},
  }};
  std::string html = "<dl>";
  for (const auto& [name, value] : rows) {
    html.append("<dt>").append(name).append("</dt><dd>").append(Server::HTMLEncode(value));
    html.append("</dd>");
  }
  return html + "</dl>";
}

std::string paragraph(std::string_view text) { return "<p>" + Server::HTMLEncode(text) + "</p>"; }

}  // namespace

std::string error_page(int status, std::string_view path) {
  const StatusText& text = text_of(status);
  std::string body = paragraph(text.advice);
  if (!path.empty()) body += "<p><code>" + Server::HTMLEncode(path) + "</code></p>";
  return whole_page(std::to_string(status) + " " + std::string(text.title), body);
}

std::string failure_page(const PageFailure& failure, bool details) {
  const StatusText& text = text_of(500);
  return whole_page(
      "500 " + std::string(text.title),
      details ? "<p>A página falhou.</p>" + details_list(failure) : paragraph(text.advice));
}

std::string failure_block(const PageFailure& failure, bool details) {
  return "\n<hr><p><strong>A página falhou antes do fim.</strong></p>" +
         (details ? details_list(failure) : std::string()) + "\n";
}

std::string failure_line(const PageFailure& failure) {
  return failure.source + " (" + std::to_string(failure.number) + "): " + failure.description +
         ", " + failure.place.file + ":" + std::to_string(failure.place.line);
}

}  // namespace pelm::host
