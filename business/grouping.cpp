// Grouping, classification and categories.
#include <string>

#include "business/scratch_recordset.h"
#include "frame/error_trap.h"
#include "frame/thread_slots.h"
#include "pelm/base.h"
#include "pelm/conn.h"

namespace pelm {

using business::ScratchRecordset;
using frame::error_trap;
using frame::shared_conn;

bool Base::cadastrar_agrupamento(Oid RPAPEL, Oid RGRUPO, Oid RITEM) {
  return error_trap("Base", "cadastrar_agrupamento", [&] {
    const Oid oid = Gerar_Oid();
    const ScratchRecordset agrupamento(rsBase, shared_conn().OpenTable("agrupamento"));
    agrupamento->AddNew();
    agrupamento->Fields("RPAPEL") = RPAPEL;
    agrupamento->Fields("RGRUPO") = RGRUPO;
    agrupamento->Fields("RITEM") = RITEM;
    agrupamento->Fields("OID") = oid;
    agrupamento->Update();
    agrupamento->Close();
    return true;
  });
}

bool Base::cadastrar_classificacao(Oid RITEM, Oid RCATEGORIA) {
  return error_trap("Base", "cadastrar_classificacao", [&] {
    const Oid oid = Gerar_Oid();
    const ScratchRecordset classificacao(rsBase, shared_conn().OpenTable("classificacao"));
    classificacao->AddNew();
    classificacao->Fields("RITEM") = RITEM;
    classificacao->Fields("RCATEGORIA") = RCATEGORIA;
    classificacao->Fields("OID") = oid;
    classificacao->Update();
    classificacao->Close();
    return true;
  });
}

Oid Base::cadastrar_categoria(Oid pRSUPER, std::string_view pNOMEINTERNO, Oid pOID) {
  return error_trap("Base", "cadastrar_categoria", [&] {
    if (pOID == kPedirNovoOid) pOID = Gerar_Oid();
    // kept: a given name is not put into capitals, although look-ups ask in capitals
    const std::string name =
        pNOMEINTERNO.empty() ? "CAT" + std::to_string(pOID) : std::string(pNOMEINTERNO);

    const ScratchRecordset categoria(rsBase, shared_conn().OpenTable("categoria"));
    categoria->AddNew();
    categoria->Fields("RSUPER") = pRSUPER;
    categoria->Fields("NOMEINTERNO") = name;
    categoria->Fields("OID") = pOID;
    categoria->Update();
    categoria->Close();
    return pOID;
  });
}

}  // namespace pelm
