// Additional data: typed values that hang off an item.
#include <string>

#include "business/scratch_recordset.h"
#include "frame/error_trap.h"
#include "frame/mensagem_erro.h"
#include "frame/thread_slots.h"
#include "pelm/base.h"
#include "pelm/conn.h"
#include "pelm/conversions.h"

namespace pelm {

using business::ScratchRecordset;
using frame::error_trap;
using frame::raise_own_error;
using frame::shared_conn;

namespace {

struct TypeColumn {
  std::int32_t type;
  std::string_view column;
};

/// OIDs of the type categories that are not kept as short text.
constexpr TypeColumn kTypeColumns[] = {
    {1013, "SVALOR"},  {1014, "NVALOR"}, {1015, "DTVALOR"},
    {1016, "LSVALOR"}, {1130, "NVALOR"}, {27460, "NVALOR"},
};
constexpr std::string_view kOtherTypesColumn = "SVALOR";

}  // namespace

std::string Base::tipo_aditivo(std::int32_t TIPO) const {
  for (const TypeColumn& row : kTypeColumns) {
    if (row.type == TIPO) return std::string(row.column);
  }
  return std::string(kOtherTypesColumn);
}

std::string Base::value_column(Oid definition) {
  sSQL = "SELECT rtipo FROM dadoadicional WHERE oid = " + std::to_string(definition);
  const ScratchRecordset types(rsBase, shared_conn().RunSQL(sSQL));
  if (types->Eof()) raise_own_error("Aditivo inexistente.");
  std::string column = tipo_aditivo(to_long(types->Fields("rtipo").Value()));
  types->Close();
  return column;
}

bool Base::cadastrar_aditivo(Oid RITEM, Oid RDEFINICAO, const Variant& DADO) {
  return error_trap("Base", "cadastrar_aditivo", [&] {
    const Oid oid = Gerar_Oid();  // kept: used up even when the definition does not exist
    const std::string column = value_column(RDEFINICAO);

    const ScratchRecordset aditivo(rsBase, shared_conn().OpenTable("aditivo"));
    aditivo->AddNew();
    aditivo->Fields("RITEM") = RITEM;
    aditivo->Fields("RDEFINICAO") = RDEFINICAO;
    aditivo->Fields("SVALOR") = Null{};
    aditivo->Fields("NVALOR") = Null{};
    aditivo->Fields("DTVALOR") = Null{};
    aditivo->Fields("LSVALOR") = Null{};
    aditivo->Fields(column) = DADO;
    aditivo->Fields("OID") = oid;
    aditivo->Update();
    aditivo->Close();
    return true;
  });
}

bool Base::alterar_aditivo(Oid RITEM, Oid RDEFINICAO, const Variant& DADO,
                           bool CRIAR_SE_NAO_HOUVER) {
  return error_trap("Base", "alterar_aditivo", [&] {
    const std::string column = value_column(RDEFINICAO);

    sSQL = "SELECT * FROM aditivo WHERE ritem = " + std::to_string(RITEM) +
           " AND rdefinicao = " + std::to_string(RDEFINICAO);
    const ScratchRecordset aditivo(
        rsBase, shared_conn().RunSQL(sSQL, ado::adOpenDynamic, ado::adLockOptimistic));
    if (aditivo->Eof()) {
      if (!CRIAR_SE_NAO_HOUVER) {
        // kept: the spelling of "parêmetro"
        raise_own_error(
            "O parêmetro CRIAR_SE_NAO_HOUVER foi configurado como FALSO e não foi encontrado o "
            "aditivo para edição.");
      }
      aditivo->AddNew();
      aditivo->Fields("oid") = Gerar_Oid();
    }
    aditivo->Fields("LSVALOR") = Null{};
    aditivo->Fields("svalor") = Null{};
    aditivo->Fields("DTVALOR") = Null{};
    aditivo->Fields("NVALOR") = Null{};
    aditivo->Fields("ritem") = RITEM;
    aditivo->Fields("rdefinicao") = RDEFINICAO;
    aditivo->Fields(column) = DADO;
    aditivo->Update();
    aditivo->Close();
    return true;
  });
}

}  // namespace pelm
