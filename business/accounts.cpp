// Accounting look-ups.
#include <string>

#include "business/scratch_recordset.h"
#include "frame/error_trap.h"
#include "frame/thread_slots.h"
#include "pelm/base.h"
#include "pelm/conn.h"
#include "pelm/conversions.h"

namespace pelm {

using business::ScratchRecordset;
using frame::error_trap;
using frame::shared_conn;

Oid Base::fBuscarContaAssociada(Oid p_rPlanoDeContas, Oid p_rItem, Oid p_rFonteDoValor,
                                Oid p_rCategoria) {
  return error_trap("Base", "fBuscarContaAssociada", [&] {
    // 7 stands for any value source or category; the order puts the caller's own ahead of it.
    sSQL =
        "SELECT RCONTACONTABIL "
        "FROM CONTAASSOCIADA, CONTACONTABIL_R "
        "WHERE "
        "RPLANODECONTAS = " +
        std::to_string(p_rPlanoDeContas) +
        " "
        "AND RITEM = " +
        std::to_string(p_rItem) +
        " "
        "AND RFONTEDOVALOR IN (7," +
        std::to_string(p_rFonteDoValor) +
        ") "
        "AND RCATEGORIA  IN (7," +
        std::to_string(p_rCategoria) +
        ") "
        "AND CONTACONTABIL_R.OID = RCONTACONTABIL "
        "ORDER BY RCATEGORIA DESC, RFONTEDOVALOR DESC";
    Oid account = 0;
    const ScratchRecordset rows(rsBase, shared_conn().RunSQL(sSQL));
    if (!rows->Eof()) account = to_long(rows->Fields("RCONTACONTABIL").Value());
    rows->Close();
    return account;
  });
}

Oid Base::fBuscarContaAnalitica(Oid p_OidItem, Oid p_OidContaSintetica) {
  return error_trap("Base", "fBuscarContaAnalitica", [&] {
    sSQL =
        "SELECT CONTACONTABIL_R.OID "
        "FROM CONTAASSOCIADA_R, CONTACONTABIL_R "
        "WHERE RCONTACONTABIL = CONTACONTABIL_R.OID "
        "AND RITEM = " +
        std::to_string(p_OidItem) +
        " "
        "AND RESCOPO = " +
        std::to_string(p_OidContaSintetica) +
        " "
        "AND RCATEGORIA = 12493";
    Oid account = 0;
    const ScratchRecordset rows(rsBase, shared_conn().RunSQL(sSQL));
    if (!rows->Eof()) account = to_long(rows->Fields("OID").Value());
    rows->Close();
    return account;
  });
}

std::string Base::fObterCodContaContabil(Oid OidContaContabil) {
  return error_trap("Base", "fObterCodContaContabil", [&] {
    sSQL = "SELECT hierarquianumero FROM contacontabil WHERE oid = " +
           std::to_string(OidContaContabil);
    std::string code;
    const ScratchRecordset rows(rsBase, shared_conn().RunSQL(sSQL));
    if (!rows->Eof()) code = to_text(rows->Fields("hierarquianumero").Value());
    rows->Close();
    return code;
  });
}

}  // namespace pelm
