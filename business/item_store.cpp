// Items: creating, changing, and recording their deletion.
#include <string>

#include "business/scratch_recordset.h"
#include "data/shared_connection.h"
#include "frame/error_trap.h"
#include "frame/thread_slots.h"
#include "pelm/base.h"
#include "pelm/conn.h"
#include "pelm/conversions.h"
#include "platform/value/clock.h"

namespace pelm {

using business::ScratchRecordset;
using frame::error_trap;
using frame::shared_conn;

Oid Base::cadastrar_item(Oid pCRIADOPOR, std::string_view pNOME, std::int32_t pCID, Oid pOID,
                         Oid pRESCOPO, const OptionalArg& pCRIADOEM,
                         const OptionalArg& pATUALIZADOEM, Oid pATUALIZADOPOR,
                         std::string_view pOBSERVACAO, std::string_view pCODIGO,
                         std::int16_t pEXCLUIDO) {
  return error_trap("Base", "cadastrar_item", [&] {
    if (pATUALIZADOPOR == kMesmoQueCriador) pATUALIZADOPOR = pCRIADOPOR;

    // kept: two readings of the clock, which may differ.
    const Variant criado = pCRIADOEM ? *pCRIADOEM : Variant(clock_now());
    const Variant atualizado = pATUALIZADOEM ? *pATUALIZADOEM : Variant(clock_now());
    const Date criado_em = to_date(criado);
    const Date atualizado_em = to_date(atualizado);

    if (pOID == kPedirNovoOid) pOID = Gerar_Oid();

    const ScratchRecordset item(rsBase, shared_conn().OpenTable("item"));
    item->AddNew();
    item->Fields("RESCOPO") = pRESCOPO;
    item->Fields("CRIADOPOR") = pCRIADOPOR;
    item->Fields("ATUALIZADOPOR") = pATUALIZADOPOR;
    item->Fields("CODIGO") = pCODIGO;
    item->Fields("CRIADOEM") = criado_em;
    item->Fields("ATUALIZADOEM") = atualizado_em;
    item->Fields("OBSERVACAO") = pOBSERVACAO;
    item->Fields("NOME") = pNOME;
    item->Fields("EXCLUIDO") = pEXCLUIDO;
    item->Fields("CID") = pCID;
    item->Fields("OID") = pOID;
    item->Update();
    item->Close();
    return pOID;
  });
}

Oid Base::alterar_item(Oid pOID, Oid pATUALIZADOPOR, const OptionalArg& pNOME,
                       const OptionalArg& pRESCOPO, const OptionalArg& pATUALIZADOEM,
                       const OptionalArg& pOBSERVACAO, const OptionalArg& pCODIGO) {
  return error_trap("Base", "alterar_item", [&] {
    sSQL = "SELECT * FROM item WHERE oid = " + std::to_string(pOID);

    // kept: no test for an empty result; the first assignment to the missing row fails. A value
    // that does not convert fails before it does.
    const ScratchRecordset item(
        rsBase, shared_conn().RunSQL(sSQL, ado::adOpenDynamic, ado::adLockOptimistic));
    if (pRESCOPO) item->Fields("RESCOPO") = to_long(*pRESCOPO);
    item->Fields("ATUALIZADOPOR") = pATUALIZADOPOR;
    if (pCODIGO) item->Fields("CODIGO") = to_text(*pCODIGO);
    item->Fields("ATUALIZADOEM") = pATUALIZADOEM ? to_date(*pATUALIZADOEM) : clock_now();
    if (pOBSERVACAO) item->Fields("OBSERVACAO") = to_text(*pOBSERVACAO);
    if (pNOME) item->Fields("NOME") = to_text(*pNOME);
    item->Update();
    item->Close();
    return pOID;
  });
}

bool Base::excluir_item(std::string_view pNOME, std::string_view pCODIGO, Oid pEXCLUIDOPOR,
                        Date pEXCLUIDOEM, Oid pRAPLICATIVO, std::int32_t pCID, Oid pOID,
                        bool pDeixarNaLixeira) {
  return error_trap("Base", "excluir_item", [&] {
    {
      const ScratchRecordset excluido(rsBase, shared_conn().OpenTable("EXCLUIDO"));
      excluido->AddNew();
      excluido->Fields("NOME") = pNOME;
      excluido->Fields("CODIGO") = pCODIGO;
      excluido->Fields("EXCLUIDOPOR") = pEXCLUIDOPOR;
      excluido->Fields("EXCLUIDOEM") = pEXCLUIDOEM;
      excluido->Fields("RAPLICATIVO") = pRAPLICATIVO;
      excluido->Fields("CID") = pCID;
      excluido->Fields("OID") = pOID;
      excluido->Update();
      excluido->Close();
    }
    if (!pDeixarNaLixeira) {
      sSQL = "DELETE FROM excluido WHERE oid = " + std::to_string(pOID);
      // kept: directly on the connection, so neither translated nor seen in LastSQL; a failure
      // here leaves the row just stored.
      data::shared_conex().Execute(sSQL, nullptr, ado::adOptionUnspecified);
    }
    return true;
  });
}

}  // namespace pelm
