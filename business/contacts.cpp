// Contacts: a person with a position at a company.
#include <string>

#include "business/scratch_recordset.h"
#include "data/shared_connection.h"
#include "frame/error_trap.h"
#include "frame/mensagem_erro.h"
#include "frame/thread_slots.h"
#include "pelm/base.h"
#include "pelm/conn.h"
#include "pelm/conversions.h"

namespace pelm {

using business::ScratchRecordset;
using frame::error_trap;
using frame::raise_mensagem_erro;
using frame::shared_conn;

namespace {

constexpr std::int32_t kClasseContato = 45;
constexpr Oid kCategoriaContato = 1000;
constexpr Oid kFalhou = -1;

}  // namespace

Oid Base::cadastrar_contato(std::string_view pNomeContato, Oid pCargo, Oid pOidEmpresa,
                            Oid pRespCadastro) {
  return error_trap("Base", "cadastrar_contato", [&] {
    const Oid oid = cadastrar_item(pRespCadastro, pNomeContato, kClasseContato, kPedirNovoOid,
                                   kEscopoPadrao, kAbsent, kAbsent, kMesmoQueCriador, "", "", 0);
    if (oid == kFalhou) raise_mensagem_erro();  // kept: an allocator that hands out -1 gets here

    {
      const ScratchRecordset pessoa(rsBase, shared_conn().OpenTable("pessoa"));
      pessoa->AddNew();
      pessoa->Fields("RAZAOSOCIAL") = "";
      pessoa->Fields("OID") = oid;
      pessoa->Fields("IDENTIFICADOR") = Null{};
      pessoa->Update();
      pessoa->Close();
    }
    {
      const ScratchRecordset pessoafisica(rsBase, shared_conn().OpenTable("pessoafisica"));
      pessoafisica->AddNew();
      pessoafisica->Fields("OID") = oid;
      pessoafisica->Update();
      pessoafisica->Close();
    }

    if (!cadastrar_classificacao(oid, kCategoriaContato)) raise_mensagem_erro();
    if (!cadastrar_agrupamento(pCargo, pOidEmpresa, oid)) raise_mensagem_erro();
    return oid;
  });
}

Oid Base::alterar_contato(std::string_view pOID, std::string_view pNomeContato, Oid pCargo,
                          Oid pOidEmpresa, Oid pRespCadastro) {
  return error_trap("Base", "alterar_contato", [&] {
    if (alterar_item(to_long(pOID), pRespCadastro, pNomeContato) == kFalhou) {
      raise_mensagem_erro();
    }

    // kept: the contact's OID goes in exactly as given; groupings in other companies stay
    sSQL =
        "DELETE "
        "FROM agrupamento "
        "WHERE rpapel IN (SELECT oid FROM cargo_r) "
        "AND ritem IN (SELECT oid FROM item_r) "
        "AND rgrupo = " +
        std::to_string(pOidEmpresa) +
        " "
        "AND ritem = " +
        std::string(pOID);
    data::shared_conex().Execute(sSQL, nullptr, ado::adOptionUnspecified);

    if (!cadastrar_agrupamento(pCargo, pOidEmpresa, to_long(pOID))) raise_mensagem_erro();
    return to_long(pOID);
  });
}

}  // namespace pelm
