// Communications: telephone numbers, e-mail addresses and the like.
#include <string>

#include "business/scratch_recordset.h"
#include "frame/error_trap.h"
#include "frame/mensagem_erro.h"
#include "frame/thread_slots.h"
#include "pelm/base.h"
#include "pelm/conn.h"

namespace pelm {

using business::ScratchRecordset;
using frame::error_trap;
using frame::shared_conn;

bool Base::cadastrar_comunicacao(Oid pRITEM, Oid pRTIPO, Oid pRENDERECO, std::string_view pVALOR) {
  return error_trap("Base", "cadastrar_comunicacao", [&] {
    const Oid oid = Gerar_Oid();
    const ScratchRecordset comunicacao(rsBase, shared_conn().OpenTable("comunicacao"));
    comunicacao->AddNew();
    comunicacao->Fields("RITEM") = pRITEM;
    comunicacao->Fields("RTIPO") = pRTIPO;
    comunicacao->Fields("RENDERECO") = pRENDERECO;
    comunicacao->Fields("VALOR") = pVALOR;
    comunicacao->Fields("OID") = oid;
    comunicacao->Update();
    comunicacao->Close();
    return true;
  });
}

bool Base::alterar_comunicacao(Oid pOID, Oid pRITEM, Oid pRTIPO, Oid pRENDERECO,
                               std::string_view pVALOR) {
  return error_trap("Base", "alterar_comunicacao", [&] {
    sSQL = "SELECT * FROM comunicacao WHERE oid = " + std::to_string(pOID);
    const ScratchRecordset comunicacao(
        rsBase, shared_conn().RunSQL(sSQL, ado::adOpenDynamic, ado::adLockOptimistic));
    if (comunicacao->Eof()) {
      comunicacao->Close();
      frame::raise_own_error("A comunicação que está sendo alterada não existe!");
    }
    comunicacao->Fields("RITEM") = pRITEM;
    comunicacao->Fields("RTIPO") = pRTIPO;
    comunicacao->Fields("RENDERECO") = pRENDERECO;
    comunicacao->Fields("VALOR") = pVALOR;
    comunicacao->Update();
    comunicacao->Close();
    return true;
  });
}

}  // namespace pelm
