// Who may use an option.
#include <cstddef>
#include <optional>
#include <string>

#include "data/query_rows.h"
#include "frame/error_trap.h"
#include "frame/thread_slots.h"
#include "menus/tree_depth.h"
#include "pelm/conn.h"
#include "pelm/conversions.h"
#include "pelm/menus.h"

namespace pelm {

using data::FirstRow;
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
  if (const FirstRow user(shared_conn(), sSQL, "oid"); user.found()) return to_long(user[0]);
  sSQL = "SELECT rendereco FROM comunicacao WHERE rtipo=1121 AND ritem=" + std::to_string(person);
  if (const FirstRow address(shared_conn(), sSQL, "rendereco"); address.found()) {
    return to_long(address[0]);
  }
  return std::nullopt;
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
    const data::AllRows holders(shared_conn(), sSQL, "oid");
    for (std::size_t row = 0; row < holders.size(); ++row) {
      const Oid holder = to_long(holders[row][0]);
      sSQL.assign("select rescopo,Acesso from permissao where rusuario=")
          .append(std::to_string(holder))
          .append(" and rescopo=")
          .append(std::to_string(list));
      const FirstRow permission(shared_conn(), sSQL, "Acesso");
      if (permission.found()) return decision(permission[0]);
    }
    return kGranted;
  });
}

std::int16_t Menus::AcessoTotalrListadeObjetos(Oid person, Oid list) {
  return error_trap("Menu", "AcessoTotalrListadeObjetos", [&] {
    sSQL = "select rdominio from listadeobjetos_r where oid = " + std::to_string(list);
    const FirstRow domain(shared_conn(), sSQL, "rdominio");
    std::int16_t result = kGranted;
    if (domain.found()) result = AcessoListaDeObjetos(person, to_long(domain[0]));
    if (result == kGranted) result = AcessoListaDeObjetos(person, list);
    return result;
  });
}

// The argument is not the field of its name, which is for the menu alone.
Variant Menus::AcessoOpcao(Oid funcionario, std::int32_t IDOpcao) {
  return error_trap("Menu", "AcessoOpcao", [&]() -> Variant {
    sSQL = "select rListadeObjetos from Pelm_Menu where Id = " + std::to_string(IDOpcao);
    const FirstRow option(shared_conn(), sSQL, "rListadeObjetos");
    if (!option.found()) {
      return "Erro na função AcessoOpcao, o Id enviado não tem nenhum registro de opção associado.";
    }
    if (option[0].is_null()) return kGranted;
    return AcessoListaDeObjetos(funcionario, to_long(option[0]));
  });
}

Variant Menus::AcessoTotalOpcao(Oid funcionario, std::int32_t IDOpcao) {
  return error_trap("Menu", "AcessoTotalOpcao", [&]() -> Variant {
    const menus::TreeLevel level(depth_);
    sSQL = "select rEscopo, rListadeObjetos from Pelm_Menu where Id = " + std::to_string(IDOpcao);
    const FirstRow option(shared_conn(), sSQL, "rEscopo", "rListadeObjetos");
    if (!option.found()) {
      return "Erro na função AcessoTotalOpcao, o Id enviado não tem nenhum registro de opção "
             "associado.";
    }
    const Variant& parent = option[0];
    const Variant& list = option[1];
    Variant result = kGranted;
    if (!list.is_null()) result = AcessoTotalrListadeObjetos(funcionario, to_long(list));
    // kept: an option without a parent ends the climb as the root does.
    if (result == Variant(kGranted) && !parent.is_null() && to_long(parent) != kRootOption) {
      result = AcessoTotalOpcao(funcionario, to_long(parent));
    }
    return result;
  });
}

}  // namespace pelm
