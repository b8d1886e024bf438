// Who may use an option.
#include <memory>
#include <optional>
#include <string>

#include "frame/error_trap.h"
#include "frame/thread_slots.h"
#include "menus/tree_depth.h"
#include "pelm/ado/recordset.h"
#include "pelm/conn.h"
#include "pelm/conversions.h"
#include "pelm/menus.h"

namespace pelm {

using frame::error_trap;
using frame::shared_conn;

namespace {

constexpr std::int16_t kGranted = 1;
constexpr std::int16_t kDenied = 0;
/// The option at the top of the tree, above every menu.
constexpr std::int32_t kRootOption = 7;

// kept: a null is no denial.
std::int16_t decision(const Variant& acesso) {
  return !acesso.is_null() && to_double(acesso) == 0 ? kDenied : kGranted;
}

}  // namespace

std::optional<Oid> Menus::user_of(Oid person) {
  sSQL.assign("SELECT oid FROM usuario WHERE oid=").append(std::to_string(person));
  auto rows = shared_conn().RunSQL(sSQL);
  if (rows->Eof()) {
    rows->Close();
    sSQL = "SELECT rendereco FROM comunicacao WHERE rtipo=1121 AND ritem=" + std::to_string(person);
    rows = shared_conn().RunSQL(sSQL);
    if (rows->Eof()) return std::nullopt;
  }
  const Oid user = to_long(rows->Fields(0).Value());
  rows->Close();
  return user;
}

std::int16_t Menus::AcessoListaDeObjetos(Oid person, Oid list) {
  return error_trap("Menu", "AcessoListaDeObjetos", [&] {
    const std::optional<Oid> user = user_of(person);
    // kept: whoever is no user may use everything.
    if (!user) return kGranted;

    const std::string user_oid = std::to_string(*user);
    sSQL.assign("select oid,1 from item where oid=")
        .append(user_oid)
        .append(
            " Union select item.oid,2 from item inner join agrupamento on "
            "item.oid=agrupamento.rgrupo and agrupamento.ritem=")
        .append(user_oid)
        .append(" Union select oid, 3 from item where oid=1 order by 2");
    std::int16_t result = kGranted;
    const auto holders = shared_conn().RunSQL(sSQL);
    for (; !holders->Eof(); holders->MoveNext()) {
      const Oid holder = to_long(holders->Fields("oid").Value());
      sSQL.assign("select rescopo,Acesso from permissao where rusuario=")
          .append(std::to_string(holder))
          .append(" and rescopo=")
          .append(std::to_string(list));
      const auto permission = shared_conn().RunSQL(sSQL);
      const bool decides = !permission->Eof();
      if (decides) result = decision(permission->Fields("Acesso").Value());
      permission->Close();
      if (decides) break;
    }
    holders->Close();
    return result;
  });
}

std::int16_t Menus::AcessoTotalrListadeObjetos(Oid person, Oid list) {
  return error_trap("Menu", "AcessoTotalrListadeObjetos", [&] {
    sSQL = "select rdominio from listadeobjetos_r where oid = " + std::to_string(list);
    const auto domain = shared_conn().RunSQL(sSQL);
    std::int16_t result = kGranted;
    if (!domain->Eof()) {
      result = AcessoListaDeObjetos(person, to_long(domain->Fields("rdominio").Value()));
    }
    if (result == kGranted) result = AcessoListaDeObjetos(person, list);
    return result;
  });
}

// The argument is not the field of its name, which is for the menu alone.
Variant Menus::AcessoOpcao(Oid funcionario, std::int32_t IDOpcao) {
  return error_trap("Menu", "AcessoOpcao", [&]() -> Variant {
    sSQL = "select rListadeObjetos from Pelm_Menu where Id = " + std::to_string(IDOpcao);
    const auto option = shared_conn().RunSQL(sSQL);
    Variant result = kGranted;
    if (option->Eof()) {
      result =
          "Erro na função AcessoOpcao, o Id enviado não tem nenhum registro de opção associado.";
    } else if (const Variant list = option->Fields("rListadeObjetos").Value(); !list.is_null()) {
      result = AcessoListaDeObjetos(funcionario, to_long(list));
    }
    option->Close();
    return result;
  });
}

Variant Menus::AcessoTotalOpcao(Oid funcionario, std::int32_t IDOpcao) {
  return error_trap("Menu", "AcessoTotalOpcao", [&]() -> Variant {
    const menus::TreeLevel level(depth_);
    sSQL = "select rEscopo, rListadeObjetos from Pelm_Menu where Id = " + std::to_string(IDOpcao);
    const auto option = shared_conn().RunSQL(sSQL);
    if (option->Eof()) {
      option->Close();
      return "Erro na função AcessoTotalOpcao, o Id enviado não tem nenhum registro de opção "
             "associado.";
    }
    Variant result = kGranted;
    if (const Variant list = option->Fields("rListadeObjetos").Value(); !list.is_null()) {
      result = AcessoTotalrListadeObjetos(funcionario, to_long(list));
    }
    const Variant parent = option->Fields("rEscopo").Value();
    // kept: an option without a parent ends the climb as the root does.
    if (result == Variant(kGranted) && !parent.is_null() && to_long(parent) != kRootOption) {
      result = AcessoTotalOpcao(funcionario, to_long(parent));
    }
    option->Close();
    return result;
  });
}

}  // namespace pelm
