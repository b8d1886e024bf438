// The business tables of the embedded engine: what they refuse, what they accept, how they are
// read.
#include <gmock/gmock.h>

#include <string>
#include <string_view>
#include <vector>

#include "pelm/error.h"
#include "support/base_probe.h"
#include "support/component_fixture.h"
#include "support/raised.h"

namespace pelm {
namespace {

using test::number_raised;
using testing::ElementsAre;

class BusinessTables : public test::ComponentFixture {
 protected:
  void SetUp() override {
    ComponentFixture::SetUp();
    if (GetParam().name != "SQLite") GTEST_SKIP() << "their own engines check these types";
  }
  std::int32_t insert(std::string_view table, std::string_view columns, std::string_view values) {
    return number_raised([&] {
      run("insert into " + std::string(table) + " (" + std::string(columns) + ") values (" +
          std::string(values) + ")");
    });
  }
};
PELM_ON_EVERY_ENGINE(BusinessTables);

constexpr std::string_view kKeyedByOid[] = {
    "item",          "dadoadicional", "aditivo",        "categoria",   "agrupamento",
    "classificacao", "pessoa",        "pessoafisica",   "cargo",       "endereco",
    "comunicacao",   "contacontabil", "contaassociada", "sessaodeuso", "sessaoaplicativo"};

TEST_P(BusinessTables, AnOidIsThereOnceAndNeverMadeUp) {
  for (const std::string_view table : kKeyedByOid) {
    SCOPED_TRACE(table);
    const bool is_item = table == "item";
    const std::string columns = is_item ? "OID, CID" : "OID";
    const std::string more = is_item ? ", 1" : "";
    EXPECT_EQ(insert(table, columns, "8" + more), 0);
    EXPECT_EQ(insert(table, columns, "8" + more), error_number::kIntegrityViolation);
    EXPECT_EQ(insert(table, columns, "null" + more), error_number::kIntegrityViolation);
    EXPECT_EQ(insert(table, columns, "-2147483648" + more), 0);
    EXPECT_EQ(insert(table, columns, "2147483648" + more), error_number::kIntegrityViolation);
    EXPECT_EQ(insert(table, columns, "1.5" + more), error_number::kIntegrityViolation);
  }
}

TEST_P(BusinessTables, ARepeatedOidIsAllowedWhereTheComponentRepeatsIt) {
  EXPECT_EQ(insert("excluido", "OID", "8"), 0);
  EXPECT_EQ(insert("excluido", "OID", "8"), 0);
  EXPECT_EQ(insert("chaveunica", "OID, DESCRICAO", "8, '##A##1'"), 0);
  EXPECT_EQ(insert("chaveunica", "OID, DESCRICAO", "8, '##A##2'"), 0);
}

TEST_P(BusinessTables, ANumberOfASequenceIsRecordedOnce) {
  EXPECT_EQ(insert("chaveunica", "OID, DESCRICAO", "8, '##PED##1'"), 0);
  EXPECT_EQ(insert("chaveunica", "OID, DESCRICAO", "9, '##PED##1'"),
            error_number::kIntegrityViolation);
  EXPECT_EQ(insert("chaveunica", "OID, DESCRICAO", "9, '##ped##1'"),
            error_number::kIntegrityViolation);
  EXPECT_EQ(insert("chaveunica", "OID, DESCRICAO", "9, null"), error_number::kIntegrityViolation);
}

struct Refused {
  std::string_view table, column;
  std::vector<std::string_view> values;
};

TEST_P(BusinessTables, AValueOfAnotherTypeIsRefused) {
  const std::vector<std::string_view> not_long = {"'abc'", "1.5", "2147483648", "-2147483649"};
  const std::vector<std::string_view> not_date = {"'ontem'", "39512.5", "20080305", "'30/2/x'"};
  const std::vector<Refused> cases = {
      {"dadoadicional", "RTIPO", not_long},
      {"aditivo", "RITEM", not_long},
      {"aditivo", "RDEFINICAO", not_long},
      {"aditivo", "NVALOR", {"'abc'", "'12:30'"}},
      {"aditivo", "DTVALOR", not_date},
      {"categoria", "RSUPER", not_long},
      {"agrupamento", "RPAPEL", not_long},
      {"agrupamento", "RGRUPO", not_long},
      {"agrupamento", "RITEM", not_long},
      {"classificacao", "RITEM", not_long},
      {"classificacao", "RCATEGORIA", not_long},
      {"endereco", "RITEM", not_long},
      {"endereco", "RCIDADE", not_long},
      {"comunicacao", "RITEM", not_long},
      {"comunicacao", "RTIPO", not_long},
      {"comunicacao", "RENDERECO", not_long},
      {"contaassociada", "RCONTACONTABIL", not_long},
      {"contaassociada", "RPLANODECONTAS", not_long},
      {"contaassociada", "RITEM", not_long},
      {"contaassociada", "RFONTEDOVALOR", not_long},
      {"contaassociada", "RCATEGORIA", not_long},
      {"sessaodeuso", "INICIO", not_date},
      {"sessaodeuso", "TERMINO", not_date},
      {"sessaodeuso", "SITUACAO", {"'abc'", "1.5", "32768", "-32769"}},
      {"sessaoaplicativo", "RSESSAODEUSO", not_long},
      {"sessaoaplicativo", "RAPLICATIVO", not_long},
      {"sessaoaplicativo", "RUSUARIO", not_long},
      {"sessaoaplicativo", "INICIO", not_date},
      {"sessaoaplicativo", "TERMINO", not_date},
  };
  for (const Refused& c : cases) {
    for (const std::string_view value : c.values) {
      SCOPED_TRACE(std::string(c.table) + "." + std::string(c.column) + " " + std::string(value));
      const std::string columns = "OID, " + std::string(c.column);
      EXPECT_NE(insert(c.table, columns, "8, " + std::string(value)), 0);
      EXPECT_EQ(insert(c.table, columns, "8, null"), 0);
      run("delete from " + std::string(c.table));
    }
  }
  EXPECT_NE(insert("rotulo", "RAPLICATIVO", "'abc'"), 0);
}

struct Text {
  std::string_view table, column;
  std::size_t size;
};

TEST_P(BusinessTables, ATextHasItsLargestLengthInCharacters) {
  constexpr Text kCases[] = {
      {"aditivo", "SVALOR", 255},
      {"categoria", "NOMEINTERNO", 100},
      {"pessoa", "RAZAOSOCIAL", 255},
      {"pessoa", "IDENTIFICADOR", 50},
      {"endereco", "CEP", 20},
      {"endereco", "BAIRRO", 100},
      {"endereco", "COMPLEMENTO", 100},
      {"endereco", "NUMERO", 20},
      {"endereco", "RUA", 255},
      {"endereco", "REFERENCIA", 255},
      {"comunicacao", "VALOR", 255},
      {"contacontabil", "HIERARQUIANUMERO", 50},
      {"sessaoaplicativo", "ESTACAO", 100},
  };
  for (const Text& c : kCases) {
    SCOPED_TRACE(c.column);
    std::string text;
    for (std::size_t i = 0; i < c.size; ++i) text += "é";
    const std::string columns = "OID, " + std::string(c.column);
    EXPECT_EQ(insert(c.table, columns, "8, '" + text + "'"), 0);
    EXPECT_NE(insert(c.table, columns, "9, '" + text + "x'"), 0);
    run("delete from " + std::string(c.table));
  }
}

TEST_P(BusinessTables, ALongTextHasNone) {
  EXPECT_EQ(insert("aditivo", "OID, LSVALOR", "8, '" + std::string(100000, 'x') + "'"), 0);
  EXPECT_EQ(row("select LEN(LSVALOR) from aditivo"), "100000");
}

TEST_P(BusinessTables, TheViewsShowTheRowsWhoseItemIsThere) {
  run("insert into item (OID, CID, RESCOPO) values (8, 1, 506), (9, 1, 7)");
  run("insert into cargo (OID) values (8), (99)");
  run("insert into contacontabil (OID, HIERARQUIANUMERO) values (9, '1.1'), (99, '1.2')");
  run("insert into contaassociada (OID, RITEM) values (8, 80), (99, 81)");
  EXPECT_THAT(rows("select oid from item_r order by oid"), ElementsAre("8", "9"));
  EXPECT_THAT(rows("select oid from cargo_r"), ElementsAre("8"));
  EXPECT_THAT(rows("select OID, HIERARQUIANUMERO from CONTACONTABIL_R"), ElementsAre("9|1.1"));
  EXPECT_THAT(rows("select OID, RITEM, RESCOPO from CONTAASSOCIADA_R"), ElementsAre("8|80|506"));
}

/// An operation, for the SQL text that it builds last; the rows that it needs to come so far are
/// item 8 and the definition 101.
using Operation = void (*)(Base&);
constexpr Operation kOperations[] = {
    [](Base& b) { b.alterar_item(8, 1); },
    [](Base& b) { b.excluir_item("", "", 1, Date(), 1, 20, 8, false); },
    [](Base& b) { b.cadastrar_aditivo(8, 101, "x"); },
    [](Base& b) { b.alterar_aditivo(8, 101, "x"); },
    [](Base& b) { b.fObterValorParametro("COR"); },
    [](Base& b) { b.fObterRotuloCpo(30); },
    [](Base& b) { b.fObterNomeItem(8); },
    [](Base& b) { b.fObterNovoNumOrd("PED"); },
    [](Base& b) { b.alterar_endereco(8, 9, 60, "", "", "", "", ""); },
    [](Base& b) { b.alterar_comunicacao(8, 9, 20, 30, ""); },
    [](Base& b) { b.fBuscarContaAssociada(40, 80, 20, 30); },
    [](Base& b) { b.fBuscarContaAnalitica(80, 506); },
    [](Base& b) { b.fObterCodContaContabil(501); },
    [](Base& b) { b.Iniciar_Sessao_Uso(9, "CAIXA01", 30); },
    [](Base& b) { b.Finalizar_Sessao_Uso(900); },
};

TEST_P(BusinessTables, TheComponentsStatementsSearchByAnIndex) {
  run("insert into item (OID, CID) values (8, 20)");
  run("insert into dadoadicional (OID, RTIPO) values (101, 1013)");
  for (const Operation operation : kOperations) {
    number_raised([&] { operation(base()); });  // a row that is missing, after its statement
    const std::string& statement = BaseProbe(base()).sSQL();
    for (const std::string& step : rows("EXPLAIN QUERY PLAN " + statement)) {
      EXPECT_THAT(step, testing::Not(testing::HasSubstr("SCAN"))) << statement;
    }
  }
}

}  // namespace
}  // namespace pelm
