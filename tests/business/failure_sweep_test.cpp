// Every call of the database that an operation of Base makes fails once: the error leaves with the
// operation's source, its scratch record set is gone, and just the rows stored before it stay.
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "business/base_test.h"
#include "platform/ado/session_pool.h"
#include "support/faulty_provider.h"

namespace pelm {
namespace {

using test::of_base;
using test::raised;
using test::Raised;
using test::RaisedNothing;

struct Operation {
  std::string_view label;  ///< of the test, where an operation has several
  std::string_view name;
  std::string_view world;  ///< statements that make the rows it meets
  std::function<void(Base&)> act;
  /// Row counts, and what `probe` gives where there is one, before the first write and after each.
  std::vector<std::string> stages;
  std::string_view probe = {};
  bool retries_storing = false;  ///< a failure to store does not leave it
};

constexpr std::string_view kItem = "insert into item (OID, CID, NOME) values (8, 20, 'Velha')";
constexpr std::string_view kParameter =
    "insert into categoria (OID, NOMEINTERNO) values (201, 'INICIO');"
    "insert into dadoadicional (OID, RTIPO) values (301, 201);"
    "insert into aditivo (OID, RITEM, RDEFINICAO, SVALOR) values (401, 1, 301, '5')";
constexpr std::string_view kOpenSession =
    "insert into sessaodeuso (OID, INICIO, SITUACAO) values (800, '2008-03-05 08:00:00', 1);"
    "insert into sessaoaplicativo (OID, RSESSAODEUSO, RAPLICATIVO, ESTACAO) values (900, 800, 30, "
    "'CAIXA01')";

// In the order of the header.
const std::vector<Operation>& operations() {
  static const std::vector<Operation> kOperations = {
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

class FailureSweep : public test::BaseTest {
 protected:
  /// Empty tables, then the rows that the operation meets; nothing pooled, no range of OIDs.
  void make(const Operation& operation) {
    run("delete from item; delete from excluido; delete from aditivo; delete from agrupamento; "
        "delete from classificacao; delete from categoria; delete from chaveunica; delete from "
        "pessoa; delete from pessoafisica; delete from endereco; delete from comunicacao; delete "
        "from sessaodeuso; delete from sessaoaplicativo; delete from dadoadicional; delete from "
        "cargo");
    if (!operation.world.empty()) run(operation.world);
    thread().conn().CloseConn();
    ado::empty_session_pool();
    thread().reopen();
    thread().forget_oids();
  }
  std::string state(const Operation& operation) {
    if (operation.probe.empty()) return row_counts();
    return row_counts() + ": " + row(operation.probe);
  }
  void sweep(const Operation& operation);
};
PELM_ON_EVERY_ENGINE(FailureSweep);

void FailureSweep::sweep(const Operation& operation) {
  constexpr std::size_t kManyCalls = 100;
  test::FaultyProvider faulty(GetParam().provider);
  std::size_t stage = 0;
  for (std::size_t n = 1; n < kManyCalls; ++n) {
    SCOPED_TRACE(std::string(operation.label) + ", call " + std::to_string(n));
    make(operation);
    const auto number = static_cast<std::int32_t>(50000 + n);
    const std::string description = "falha " + std::to_string(n);
    faulty.fail_at(n, Error(number, "Test provider", description));
    const std::optional<Error> error = raised([&] { operation.act(base()); });
    const bool failed = faulty.failed();
    faulty.stop();

    EXPECT_TRUE(is_idle());
    const std::string left = state(operation);
    if (left != operation.stages[stage]) {
      ASSERT_LT(++stage, operation.stages.size()) << left;
      ASSERT_EQ(left, operation.stages[stage]);
    }
    if (!failed || (operation.retries_storing && !error)) {
      EXPECT_THAT(error, RaisedNothing());
      EXPECT_EQ(stage + 1, operation.stages.size());
      if (failed) continue;
      EXPECT_GT(n, 1U);
      return;
    }
    EXPECT_THAT(error, Raised(number, of_base(operation.name), description));
  }
  ADD_FAILURE() << operation.label << " never ends without a fault";
}

TEST_P(FailureSweep, EveryCallOfEveryOperation) {
  for (const Operation& operation : operations()) {
    sweep(operation);
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace pelm
