// Addresses: items with a row of their own.
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
using frame::raise_mensagem_erro;
using frame::shared_conn;

namespace {

constexpr std::int32_t kClasseEndereco = 26;
constexpr Oid kCategoriaEndereco = 1066;
constexpr Oid kFalhou = -1;

/// kept: street, complement, number, one blank between them even where one is empty
std::string item_name(std::string_view street, std::string_view complement,
                      std::string_view number) {
  std::string name(street);
  name.append(" ").append(complement).append(" ").append(number);
  return name;
}

}  // namespace

Oid Base::cadastrar_endereco(Oid pRITEM, Oid pRCIDADE, std::string_view pCEP,
                             std::string_view pBAIRRO, std::string_view pCOMPLEMENTO,
                             std::string_view pNUMERO, std::string_view pRUA,
                             std::string_view pREFERENCIA, Oid pRespCadastro) {
  return error_trap("Base", "cadastrar_endereco", [&] {
    const std::string name = item_name(pRUA, pCOMPLEMENTO, pNUMERO);
    const Oid oid = cadastrar_item(pRespCadastro, name, kClasseEndereco, kPedirNovoOid,
                                   kEscopoPadrao, kAbsent, kAbsent, kMesmoQueCriador, "", "", 0);
    if (oid == kFalhou) raise_mensagem_erro();

    {
      const ScratchRecordset endereco(rsBase, shared_conn().OpenTable("endereco"));
      endereco->AddNew();
      endereco->Fields("RITEM") = pRITEM;
      endereco->Fields("RCIDADE") = pRCIDADE;
      endereco->Fields("CEP") = pCEP;
      endereco->Fields("BAIRRO") = pBAIRRO;
      endereco->Fields("COMPLEMENTO") = pCOMPLEMENTO;
      endereco->Fields("NUMERO") = pNUMERO;
      endereco->Fields("RUA") = pRUA;
      endereco->Fields("OID") = oid;
      endereco->Fields("REFERENCIA") = pREFERENCIA;
      endereco->Update();
      endereco->Close();
    }

    if (!cadastrar_classificacao(oid, kCategoriaEndereco)) raise_mensagem_erro();
    return oid;
  });
}

Oid Base::alterar_endereco(Oid pOID, Oid pRITEM, Oid pRCIDADE, std::string_view pCEP,
                           std::string_view pBAIRRO, std::string_view pCOMPLEMENTO,
                           std::string_view pNUMERO, std::string_view pRUA,
                           std::string_view pREFERENCIA, Oid pRespCadastro) {
  return error_trap("Base", "alterar_endereco", [&] {
    const std::string name = item_name(pRUA, pCOMPLEMENTO, pNUMERO);
    if (alterar_item(pOID, pRespCadastro, name) == kFalhou) raise_mensagem_erro();

    sSQL = "SELECT * FROM endereco WHERE oid = " + std::to_string(pOID);
    // kept: no test for an empty result; the item is renamed by then
    const ScratchRecordset endereco(
        rsBase, shared_conn().RunSQL(sSQL, ado::adOpenDynamic, ado::adLockOptimistic));
    endereco->Fields("RITEM") = pRITEM;
    endereco->Fields("RCIDADE") = pRCIDADE;
    endereco->Fields("CEP") = pCEP;
    endereco->Fields("BAIRRO") = pBAIRRO;
    endereco->Fields("COMPLEMENTO") = pCOMPLEMENTO;
    endereco->Fields("NUMERO") = pNUMERO;
    endereco->Fields("RUA") = pRUA;
    if (!pREFERENCIA.empty()) endereco->Fields("REFERENCIA") = pREFERENCIA;
    endereco->Update();
    endereco->Close();
    return pOID;
  });
}

}  // namespace pelm
