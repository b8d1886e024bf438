// What the component needs of a database, and how a database stands against it.
#include "schema/requirements.h"

#include <algorithm>
#include <memory>

#include "pelm/ado/command.h"
#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "pelm/conversions.h"
#include "pelm/error.h"

namespace pelm {
namespace {

using enum ValueNeeded;

const std::vector<RequiredTable>& tables() {
  static const std::vector<RequiredTable> all = {
      {"item",
       {{"OID"},
        {"CID"},
        {"NOME", Text},
        {"CODIGO", Text},
        {"RESCOPO"},
        {"CRIADOPOR"},
        {"CRIADOEM", DateTime},
        {"ATUALIZADOPOR"},
        {"ATUALIZADOEM", DateTime},
        {"OBSERVACAO", Text},
        {"EXCLUIDO"}}},
      {"excluido",
       {{"OID"},
        {"CID"},
        {"NOME", Text},
        {"CODIGO", Text},
        {"EXCLUIDOPOR"},
        {"EXCLUIDOEM", DateTime},
        {"RAPLICATIVO"}}},
      {"controlaoid", {{"Delta"}}},
      {"dadoadicional", {{"oid"}, {"rtipo"}}},
      {"aditivo",
       {{"OID"},
        {"RITEM"},
        {"RDEFINICAO"},
        {"SVALOR", Text},
        {"NVALOR", Number},
        {"DTVALOR", DateTime},
        {"LSVALOR", Text}}},
      {"categoria", {{"OID"}, {"RSUPER"}, {"NOMEINTERNO", Text}}},
      {"agrupamento", {{"OID"}, {"RPAPEL"}, {"RGRUPO"}, {"RITEM"}}},
      {"classificacao", {{"OID"}, {"RITEM"}, {"RCATEGORIA"}}},
      {"rotulo", {{"controle", Text}, {"valor", Text}, {"raplicativo"}}},
      {"chaveunica", {{"OID"}, {"DESCRICAO", Text}}},
      {"pessoa", {{"OID"}, {"RAZAOSOCIAL", Text}, {"IDENTIFICADOR", Text}}},
      {"pessoafisica", {{"OID"}}},
      {"cargo_r", {{"oid"}}},
      {"item_r", {{"oid"}}},
      {"endereco",
       {{"RITEM"},
        {"RCIDADE"},
        {"CEP", Text},
        {"BAIRRO", Text},
        {"COMPLEMENTO", Text},
        {"NUMERO", Text},
        {"RUA", Text},
        {"OID"},
        {"REFERENCIA", Text}}},
      {"comunicacao", {{"OID"}, {"RITEM"}, {"RTIPO"}, {"RENDERECO"}, {"VALOR", Text}}},
      {"contaassociada",
       {{"RCONTACONTABIL"}, {"RPLANODECONTAS"}, {"RITEM"}, {"RFONTEDOVALOR"}, {"RCATEGORIA"}}},
      {"contaassociada_r", {{"RCONTACONTABIL"}, {"RITEM"}, {"RESCOPO"}, {"RCATEGORIA"}}},
      {"contacontabil", {{"oid"}, {"hierarquianumero", Text}}},
      {"contacontabil_r", {{"OID"}}},
      {"sessaodeuso", {{"OID"}, {"INICIO", DateTime}, {"TERMINO", DateTime}, {"SITUACAO"}}},
      {"sessaoaplicativo",
       {{"OID"},
        {"RSESSAODEUSO"},
        {"RAPLICATIVO"},
        {"RUSUARIO"},
        {"ESTACAO", Text},
        {"INICIO", DateTime},
        {"TERMINO", DateTime}}},
      {"Pelm_Menu",
       {{"id"}, {"Nome", Text}, {"Link", Text}, {"rEscopo"}, {"rListadeObjetos"}, {"Ordem"}}},
      {"usuario", {{"oid"}}},
      {"permissao", {{"rusuario"}, {"rescopo"}, {"Acesso"}}},
      {"listadeobjetos_r", {{"oid"}, {"rdominio"}}},
  };
  return all;
}

struct TypeName {
  ado::DataTypeEnum type;
  std::string_view name;
};

constexpr TypeName kTypeNames[] = {
    {ado::adSmallInt, "16-bit integer"},
    {ado::adInteger, "32-bit integer"},
    {ado::adBigInt, "64-bit integer"},
    {ado::adDouble, "number"},
    {ado::adDate, "date and time"},
    {ado::adBoolean, "truth value"},
    {ado::adBinary, "bytes"},
    {ado::adVarChar, "text"},
    {ado::adLongVarChar, "long text"},
    {ado::adVarWChar, "text"},
    {ado::adLongVarWChar, "long text"},
};

std::string type_text(ado::DataTypeEnum type) {
  const auto* found = std::ranges::find(kTypeNames, type, &TypeName::type);
  return found == std::end(kTypeNames) ? "type " + std::to_string(type) : std::string(found->name);
}

bool holds(ado::DataTypeEnum type, ValueNeeded needed) {
  if (type == ado::adVariant) return true;  // an expression of a view: any value
  switch (needed) {
    case Whole:
    case Number:
      return type == ado::adSmallInt || type == ado::adInteger || type == ado::adBigInt ||
             type == ado::adDouble;
    case Text:
      return type == ado::adVarChar || type == ado::adLongVarChar || type == ado::adVarWChar ||
             type == ado::adLongVarWChar;
    case DateTime:
      return type == ado::adDate;
  }
  return false;
}

std::string_view needed_text(ValueNeeded needed) {
  switch (needed) {
    case Whole:
      return "a 32-bit integer";
    case Number:
      return "a number";
    case Text:
      return "text";
    case DateTime:
      return "a date and time";
  }
  return {};
}

ColumnFinding examine(ado::Recordset& rows, const RequiredColumn& column) {
  using Verdict = ColumnFinding::Verdict;
  try {
    const ado::DataTypeEnum type = rows.Fields(column.name).Type();
    if (holds(type, column.value)) return {column.name, Verdict::Good, {}};
    return {column.name, Verdict::WrongType,
            "is " + type_text(type) + ", needs " + std::string(needed_text(column.value))};
  } catch (const Error& e) {
    if (e.number() != error_number::kItemNotFound) throw;
    return {column.name, Verdict::Missing, "needs " + std::string(needed_text(column.value))};
  }
}

std::shared_ptr<ado::Connection> reference_to(ado::Connection& connection) {
  return std::static_pointer_cast<ado::Connection>(connection.shared_from_this());
}

/// A transaction that leaves nothing behind.
class RolledBack {
 public:
  explicit RolledBack(ado::Connection& connection) : connection_(connection) {
    connection_.BeginTrans();
  }
  RolledBack(const RolledBack&) = delete;
  RolledBack& operator=(const RolledBack&) = delete;
  ~RolledBack() {
    try {
      connection_.RollbackTrans();
    } catch (const Error&) {
      // A lost connection has rolled back by itself.
    }
  }

 private:
  ado::Connection& connection_;
};

Trial try_range(ado::Connection& connection) {
  Trial trial{"procedure atualoid", false, {}};
  const RolledBack transaction(connection);
  try {
    ado::Command command;
    command.ActiveConnection(reference_to(connection));
    command.CommandType(ado::adCmdStoredProc);
    command.CommandText("atualoid");
    command.Append(command.CreateParameter("@novooid", ado::adInteger, ado::adParamOutput));
    command.Execute();
    const std::int32_t last = to_long(command.Parameters("@novooid").Value);
    trial.good = last > 0;
    if (!trial.good) trial.detail = "gives " + std::to_string(last) + ", which is no OID";
  } catch (const Error& e) {
    trial.detail = e.description();
  }
  return trial;
}

Trial try_range_size(ado::Connection& connection) {
  Trial trial{"a range size in controlaoid", false, {}};
  try {
    const auto rows = connection.Execute("Select Delta from controlaoid");
    if (rows->Eof()) {
      trial.detail = "has no row";
    } else {
      const std::int16_t size = to_integer(rows->Fields("Delta").Value());
      trial.good = size > 0;
      if (!trial.good) trial.detail = "is " + std::to_string(size);
    }
    rows->Close();
  } catch (const Error& e) {
    trial.detail = e.description();
  }
  return trial;
}

void record_number(ado::Connection& connection, std::int32_t oid) {
  ado::Recordset row;
  row.Open("chaveunica", reference_to(connection), ado::adOpenKeyset, ado::adLockOptimistic,
           ado::adCmdTable);
  row.AddNew();
  row.Fields("OID") = oid;
  row.Fields("DESCRICAO") = "##pelm check##1";
  row.Update();
  row.Close();
}

Trial try_unique_numbers(ado::Connection& connection) {
  Trial trial{"unique key on chaveunica.DESCRICAO", false, {}};
  const RolledBack transaction(connection);
  try {
    record_number(connection, -2147483647);
  } catch (const Error& e) {
    trial.detail = e.description();
    return trial;
  }
  try {
    record_number(connection, -2147483646);
    trial.detail = "the same text was stored twice: two callers could get one number";
  } catch (const Error& e) {
    trial.good = e.number() == error_number::kIntegrityViolation;
    if (!trial.good) trial.detail = e.description();
  }
  return trial;
}

}  // namespace

std::span<const RequiredTable> required_tables() { return tables(); }

bool TableFinding::good() const {
  return found && std::ranges::all_of(columns, [](const ColumnFinding& c) {
           return c.verdict == ColumnFinding::Verdict::Good;
         });
}

TableFinding examine(ado::Connection& connection, const RequiredTable& table) {
  TableFinding finding{table.name, true, {}, {}};
  ado::Recordset rows;
  try {
    rows.Open(table.name, reference_to(connection), ado::adOpenKeyset, ado::adLockReadOnly,
              ado::adCmdTable);
  } catch (const Error& e) {
    if (e.number() != error_number::kNoTable) throw;
    return {table.name, false, e.description(), {}};
  }
  for (const RequiredColumn& column : table.columns) {
    finding.columns.push_back(examine(rows, column));
  }
  rows.Close();
  return finding;
}

std::vector<Trial> try_out(ado::Connection& connection) {
  return {try_range_size(connection), try_range(connection), try_unique_numbers(connection)};
}

}  // namespace pelm
