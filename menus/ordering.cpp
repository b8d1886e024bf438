// The places of options among those of the same parent.
#include <memory>
#include <optional>
#include <string>

#include "frame/error_trap.h"
#include "frame/page_context.h"
#include "frame/thread_slots.h"
#include "pelm/ado/recordset.h"
#include "pelm/conn.h"
#include "pelm/conversions.h"
#include "pelm/menus.h"

namespace pelm {

using frame::error_trap;
using frame::shared_conn;

namespace {

constexpr std::int16_t kPlaced = 1;

/// Nothing for a null.
std::optional<std::int32_t> place_of(ado::Recordset& row, std::string_view column) {
  const Variant place = row.Fields(column).Value();
  return place.is_null() ? std::nullopt : std::optional(to_long(place));
}

}  // namespace

Variant Menus::Ordena_Opcoes(std::int32_t ID, std::int16_t& Ordem, bool Excluir) {
  return error_trap("Menu", "Ordena_Opcoes", [&]() -> Variant {
    frame::fetch_response();  // kept: nothing is written to it
    // kept: refused also when deleting, where the place asked for does not count.
    if (Ordem <= 0) return "O número de ordem não pode ser menor ou igual a 0!";

    sSQL = "select rEscopo,ORDEM from pelm_menu where id = " + std::to_string(ID);
    const auto option = shared_conn().RunSQL(sSQL);
    if (option->Eof()) return "Opção de MENU: " + std::to_string(ID) + " inválida!";
    const std::optional<std::int32_t> old_place = place_of(*option, "ordem");
    const std::int32_t parent = to_long(option->Fields("rEscopo").Value());
    option->Close();

    if (Excluir) Ordem = place_behind_all(parent);
    if (old_place && *old_place != 0) close_gap(ID, parent, *old_place);
    clamp_to_end(ID, parent, Ordem);
    open_place(ID, parent, Ordem);
    run_directly("update pelm_menu set ORDEM = " + std::to_string(Ordem) +
                 " where id = " + std::to_string(ID));
    return kPlaced;
  });
}

std::int16_t Menus::place_behind_all(std::int32_t parent) {
  sSQL = "select max(ordem)+1 maxordem from Pelm_Menu where ordem is not null and rEscopo = " +
         std::to_string(parent);
  const auto last = shared_conn().RunSQL(sSQL);
  // kept: null, and so an error, where no option of this parent has a place.
  const std::int16_t place = to_integer(last->Fields("maxordem").Value());
  last->Close();
  return place;
}

void Menus::close_gap(std::int32_t id, std::int32_t parent, std::int32_t old_place) {
  run_directly("update pelm_menu set ORDEM = (ORDEM - 1) where ORDEM > " +
               std::to_string(old_place) + " and Ordem > 1 and id <> " + std::to_string(id) +
               " and rEscopo = " + std::to_string(parent));
}

void Menus::clamp_to_end(std::int32_t id, std::int32_t parent, std::int16_t& place) {
  sSQL = "select ORDEM from pelm_menu where (id <> " + std::to_string(id) +
         ") and (rEscopo = " + std::to_string(parent) +
         ") and (ORDEM is not null) order by ORDEM desc";
  const auto others = shared_conn().RunSQL(sSQL);
  if (!others->Eof()) {
    const std::int64_t end = std::int64_t{to_long(others->Fields("ORDEM").Value())} + 1;
    if (place > end) place = to_integer(static_cast<double>(end));
  }
  others->Close();
}

void Menus::open_place(std::int32_t id, std::int32_t parent, std::int16_t place) {
  run_directly("update pelm_menu set ORDEM = (ORDEM + 1) where ORDEM >= " + std::to_string(place) +
               " and id <> " + std::to_string(id) + " and rEscopo = " + std::to_string(parent));
}

}  // namespace pelm
