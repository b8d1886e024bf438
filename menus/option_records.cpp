// Menu options: adding, changing, and deleting with all that is below them.
#include <memory>
#include <string>

#include "data/shared_connection.h"
#include "frame/error_trap.h"
#include "frame/mensagem_erro.h"
#include "frame/mod_principal.h"
#include "frame/thread_slots.h"
#include "menus/tree_depth.h"
#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "pelm/conn.h"
#include "pelm/conversions.h"
#include "pelm/menus.h"

namespace pelm {

using frame::error_trap;
using frame::shared_conn;

namespace {

/// Options up to this key are never deleted.
constexpr std::int32_t kLastReservedKey = 7;
constexpr std::string_view kDone = "0";

bool is_placed(const Variant& ordering_result) { return !ordering_result.is_text(); }

std::string outcome(const Variant& ordering_result) {
  return is_placed(ordering_result) ? std::string(kDone) : to_text(ordering_result);
}

}  // namespace

Menus::Menus() : restricoes_(1) { frame::start_thread(); }

std::string Menus::Cadastrar_Opcao(std::string_view Nome, std::string_view Link,
                                   std::int32_t rEscopo, const Variant& rListadeObjetos,
                                   std::int32_t Ordem) {
  return error_trap("Menu", "Cadastrar_Opcao", [&] {
    const auto table = shared_conn().OpenTable("Pelm_Menu");
    table->AddNew();
    table->Fields("Nome") = Nome;
    table->Fields("Link") = Link;
    table->Fields("rEscopo") = rEscopo;
    table->Fields("rListadeObjetos") = rListadeObjetos;
    table->Fields("Ordem") = Ordem;
    table->Update();
    table->Close();

    sSQL = "select @@identity ID_OP";
    const auto identity = shared_conn().RunSQL(sSQL);
    const std::int32_t id = to_long(identity->Fields("ID_OP").Value());
    identity->Close();

    // kept: the key is not told, and the row stays whatever ordering says.
    return outcome(Ordena_Opcoes(id, to_integer(Ordem)));
  });
}

std::string Menus::Alterar_Opcao(std::int32_t IDOpcao, std::string_view Nome, std::string_view Link,
                                 std::int32_t rEscopo, const Variant& rListadeObjetos,
                                 std::int32_t Ordem) {
  return error_trap("Menu", "Alterar_Opcao", [&] {
    sSQL = "select * from Pelm_Menu where id = " + std::to_string(IDOpcao);

    {
      // kept: no test for an empty result; the first assignment to the missing row fails.
      const auto option = shared_conn().RunSQL(sSQL, ado::adOpenDynamic, ado::adLockOptimistic);
      option->Fields("Nome") = Nome;
      option->Fields("Link") = Link;
      option->Fields("rEscopo") = rEscopo;
      option->Fields("rListadeObjetos") = rListadeObjetos;
      option->Update();
      option->Close();
    }

    // kept: a new parent is stored by now, so the gap under the old one stays.
    return outcome(Ordena_Opcoes(IDOpcao, to_integer(Ordem)));
  });
}

std::string Menus::Excluir_Opcao(std::int32_t IDOpcao) {
  return error_trap("Menu", "Excluir_Opcao", [&]() -> std::string {
    const menus::TreeLevel level(depth_);
    if (IDOpcao <= kLastReservedKey) {
      frame::raise_own_error("Você não selecionou uma opção do menu válida para exclusão.");
    }
    const Variant placed = Ordena_Opcoes(IDOpcao, 1, true);
    if (!is_placed(placed)) frame::raise_own_error(to_text(placed));

    sSQL = "select id from Pelm_Menu where rEscopo = " + std::to_string(IDOpcao);
    {
      // kept: no order is asked for.
      const auto below = shared_conn().RunSQL(sSQL);
      for (; !below->Eof(); below->MoveNext()) {
        std::string deleted = Excluir_Opcao(to_long(below->Fields("id").Value()));
        if (deleted != kDone) return deleted;
      }
      below->Close();
    }

    run_directly("delete from Pelm_Menu where id = " + std::to_string(IDOpcao));
    return std::string(kDone);
  });
}

void Menus::run_directly(std::string sql) {
  sSQL = std::move(sql);
  // kept: on the connection itself, so neither translated nor seen in LastSQL.
  data::shared_conex().Execute(sSQL);
}

}  // namespace pelm
