// The rows that operations meet, and the rows that they leave, step by step.
#include "business/swept_operations.h"

#include "pelm/date.h"

namespace pelm::test {
namespace {

constexpr std::string_view kItem = "insert into item (OID, CID, NOME) values (8, 20, 'Velha')";
constexpr std::string_view kParameter =
    "insert into categoria (OID, NOMEINTERNO) values (201, 'INICIO');"
    "insert into dadoadicional (OID, RTIPO) values (301, 201);"
    "insert into aditivo (OID, RITEM, RDEFINICAO, SVALOR) values (401, 1, 301, '5')";
constexpr std::string_view kOpenSession =
    "insert into sessaodeuso (OID, INICIO, SITUACAO) values (800, '2008-03-05 08:00:00', 1);"
    "insert into sessaoaplicativo (OID, RSESSAODEUSO, RAPLICATIVO, ESTACAO) values (900, 800, 30, "
    "'CAIXA01')";

}  // namespace

// In the order of the header.
const std::vector<SweptOperation>& swept_operations() {
  static const std::vector<SweptOperation> kOperations = {
      {"cadastrar_item",
       "cadastrar_item",
       "",
       [](Base& b) { b.cadastrar_item(1, "Pasta", 20); },
       {"", "item 1"}},
      {"alterar_item",
       "alterar_item",
       kItem,
       [](Base& b) { b.alterar_item(8, 1, "Nova"); },
       {"item 1: Velha", "item 1: Nova"},
       "select NOME from item"},
      {"excluir_item",
       "excluir_item",
       "",
       [](Base& b) { b.excluir_item("Pasta", "", 1, Date(), 1, 20, 8, false); },
       {"", "excluido 1", ""}},
      {"cadastrar_aditivo",
       "cadastrar_aditivo",
       "insert into dadoadicional (OID, RTIPO) values (101, 1013)",
       [](Base& b) { b.cadastrar_aditivo(8, 101, "x"); },
       {"", "aditivo 1"}},
      {"alterar_aditivo_changing",
       "alterar_aditivo",
       "insert into dadoadicional (OID, RTIPO) values (101, 1013);"
       "insert into aditivo (OID, RITEM, RDEFINICAO, SVALOR) values (400, 8, 101, 'velho')",
       [](Base& b) { b.alterar_aditivo(8, 101, "novo"); },
       {"aditivo 1: velho", "aditivo 1: novo"},
       "select SVALOR from aditivo"},
      {"alterar_aditivo_adding",
       "alterar_aditivo",
       "insert into dadoadicional (OID, RTIPO) values (101, 1013)",
       [](Base& b) { b.alterar_aditivo(8, 101, "novo"); },
       {"", "aditivo 1"}},
      {"fObterValorParametro",
       "fObterValorParametro",
       kParameter,
       [](Base& b) { b.fObterValorParametro("INICIO", 57); },
       {"aditivo 1, categoria 1"}},
      {"fObterRotuloCpo", "fObterRotuloCpo", "", [](Base& b) { b.fObterRotuloCpo(30); }, {""}},
      {"fObterNomeItem", "fObterNomeItem", kItem, [](Base& b) { b.fObterNomeItem(8); }, {"item 1"}},
      {"cadastrar_agrupamento",
       "cadastrar_agrupamento",
       "",
       [](Base& b) { b.cadastrar_agrupamento(1, 2, 3); },
       {"", "agrupamento 1"}},
      {"cadastrar_classificacao",
       "cadastrar_classificacao",
       "",
       [](Base& b) { b.cadastrar_classificacao(1, 2); },
       {"", "classificacao 1"}},
      {"cadastrar_categoria",
       "cadastrar_categoria",
       "",
       [](Base& b) { b.cadastrar_categoria(7); },
       {"", "categoria 1"}},
      {"fObterNovoNumOrd",
       "fObterNovoNumOrd",
       kParameter,
       [](Base& b) { b.fObterNovoNumOrd("PED", "INICIO"); },
       {"aditivo 1, categoria 1", "aditivo 1, categoria 1, chaveunica 1"},
       "",
       true},
      {"cadastrar_contato",
       "cadastrar_contato",
       "",
       [](Base& b) { b.cadastrar_contato("Ana", 701, 500); },
       {"", "item 1", "item 1, pessoa 1", "item 1, pessoa 1, pessoafisica 1",
        "item 1, classificacao 1, pessoa 1, pessoafisica 1",
        "item 1, agrupamento 1, classificacao 1, pessoa 1, pessoafisica 1"}},
      {"alterar_contato",
       "alterar_contato",
       "insert into item (OID, CID, NOME) values (8, 45, 'Velha'), (701, 46, 'Gerente');"
       "insert into cargo (OID) values (701);"
       "insert into agrupamento (OID, RPAPEL, RGRUPO, RITEM) values (600, 701, 500, 8)",
       [](Base& b) { b.alterar_contato("8", "Nova", 701, 500); },
       {"item 2, agrupamento 1: Velha", "item 2, agrupamento 1: Nova", "item 2: Nova",
        "item 2, agrupamento 1: Nova"},
       "select NOME from item where OID = 8"},
      {"cadastrar_endereco",
       "cadastrar_endereco",
       "",
       [](Base& b) { b.cadastrar_endereco(8, 60, "", "", "", "10", "Rua A"); },
       {"", "item 1", "item 1, endereco 1", "item 1, classificacao 1, endereco 1"}},
      {"alterar_endereco",
       "alterar_endereco",
       "insert into item (OID, CID, NOME) values (8, 26, 'Velha');"
       "insert into endereco (OID, RUA) values (8, 'Velha')",
       [](Base& b) { b.alterar_endereco(8, 9, 60, "", "", "", "", "Nova"); },
       {"item 1, endereco 1: Velha|Velha", "item 1, endereco 1: Nova  |Velha",
        "item 1, endereco 1: Nova  |Nova"},
       "select NOME, RUA from item, endereco"},
      {"cadastrar_comunicacao",
       "cadastrar_comunicacao",
       "",
       [](Base& b) { b.cadastrar_comunicacao(8, 20, 30, "x"); },
       {"", "comunicacao 1"}},
      {"alterar_comunicacao",
       "alterar_comunicacao",
       "insert into comunicacao (OID, VALOR) values (300, 'velha')",
       [](Base& b) { b.alterar_comunicacao(300, 8, 20, 30, "nova"); },
       {"comunicacao 1: velha", "comunicacao 1: nova"},
       "select VALOR from comunicacao"},
      {"fBuscarContaAssociada",
       "fBuscarContaAssociada",
       "",
       [](Base& b) { b.fBuscarContaAssociada(40, 80, 20, 30); },
       {""}},
      {"fBuscarContaAnalitica",
       "fBuscarContaAnalitica",
       "",
       [](Base& b) { b.fBuscarContaAnalitica(80, 506); },
       {""}},
      {"fObterCodContaContabil",
       "fObterCodContaContabil",
       "",
       [](Base& b) { b.fObterCodContaContabil(503); },
       {""}},
      {"Iniciar_Sessao_Uso_opening",
       "Iniciar_Sessao_Uso",
       "",
       [](Base& b) { b.Iniciar_Sessao_Uso(9, "CAIXA01", 30); },
       {"", "sessaodeuso 1", "sessaodeuso 1, sessaoaplicativo 1"}},
      {"Iniciar_Sessao_Uso_joining",
       "Iniciar_Sessao_Uso",
       kOpenSession,
       [](Base& b) { b.Iniciar_Sessao_Uso(9, "CAIXA01", 31); },
       {"sessaodeuso 1, sessaoaplicativo 1"}},
      {"Finalizar_Sessao_Uso",
       "Finalizar_Sessao_Uso",
       kOpenSession,
       [](Base& b) { b.Finalizar_Sessao_Uso(900); },
       {"sessaodeuso 1, sessaoaplicativo 1: 1|1", "sessaodeuso 1, sessaoaplicativo 1: 0|1",
        "sessaodeuso 1, sessaoaplicativo 1: 0|2"},
       "select (select count(*) from sessaoaplicativo where TERMINO is null) abertas, SITUACAO "
       "from sessaodeuso"},
  };
  return kOperations;
}

std::string_view emptied_world() {
  return "delete from item; delete from excluido; delete from aditivo; delete from agrupamento; "
         "delete from classificacao; delete from categoria; delete from chaveunica; delete from "
         "pessoa; delete from pessoafisica; delete from endereco; delete from comunicacao; delete "
         "from sessaodeuso; delete from sessaoaplicativo; delete from dadoadicional; delete from "
         "cargo";
}

}  // namespace pelm::test
