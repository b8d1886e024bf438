// The script of a menu: an array of options for each level, written as the rows are read.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "data/query_rows.h"
#include "frame/error_trap.h"
#include "frame/page_context.h"
#include "frame/thread_slots.h"
#include "menus/header_template.h"
#include "menus/tree_depth.h"
#include "pelm/conn.h"
#include "pelm/conversions.h"
#include "pelm/menus.h"
#include "platform/ado/read_snapshot.h"
#include "platform/page/response.h"
#include "platform/value/concatenation.h"
#include "platform/value/text.h"

namespace pelm {

using frame::error_trap;
using frame::shared_conn;

namespace {

constexpr std::string_view kLineBreak = "\r\n";
constexpr std::int16_t kGranted = 1;
constexpr std::int16_t kRestricted = 0;
constexpr std::int16_t kUnrestricted = 1;

/// What is read of an option, in this order.
enum Column : std::size_t { kId, kNome, kLink, kRListadeObjetos };

void write(std::string_view text) { frame::thread_slots().response->Write(text); }

}  // namespace

void Menus::Montar_Menu(std::int32_t IDMenu, std::int16_t Numero) {
  error_trap("Menu", "Montar_Menu", [&] {
    frame::fetch_response();
    sSQL.assign("select id, Nome, Link, rListadeObjetos from Pelm_Menu where rEscopo = ")
        .append(std::to_string(IDMenu))
        .append(" order by Ordem, id");
    // A page that sends each piece at once may wait for its reader.
    std::optional<ado::ReadSnapshot> one_view;
    if (frame::thread_slots().response->Buffer()) one_view.emplace(shared_conn().Conex());
    write_level(options_of_level(), menus::kFirstLevel, "HM_Array" + std::to_string(Numero));
  });
}

void Menus::Montar_Menu_Opcao(std::int32_t parent, const std::string& array) {
  error_trap("Menu", "Montar_Menu_Opcao", [&] {
    const menus::TreeLevel level(depth_);
    sSQL.assign("select id,nome,link,rListadeObjetos from Pelm_Menu where rEscopo=")
        .append(std::to_string(parent))
        .append(" order by Ordem,id");
    write_level(options_of_level(), menus::kLevelBelow, array);
  });
}

data::AllRows Menus::options_of_level() {
  return {shared_conn(), sSQL, "id", "Nome", "Link", "rListadeObjetos"};
}

void Menus::write_level(const data::AllRows& options, const menus::LevelForm& form,
                        const std::string& array) {
  if (!write_entries(options, form, array)) return;
  write("]\r\n\r\n");
  write_levels_below(options, array);
}

bool Menus::write_entries(const data::AllRows& options, const menus::LevelForm& form,
                          const std::string& array) {
  bool header_written = false;
  std::string entry;
  for (std::size_t row = 0; row < options.size(); ++row) {
    const auto option = options[row];
    if (visible(option)) {
      if (!header_written) {
        form.write_header(*frame::thread_slots().response, *this, array);
        header_written = true;
      }
      entry.assign("[\"").append(form.before_caption);
      join_to(entry, option[kNome]);
      entry.append(form.after_caption).append("\",\"");
      join_to(entry, option[kLink]);
      entry.append("\",1,0,").append(has_options_below(option) ? "1]" : "0]");
      write(entry);
    }
    // kept: the comma is written on the turn of the row before, hidden or not, so it may come
    // before the header, stand on a line of its own, or follow nothing.
    const std::size_t next = row + 1;
    if (next < options.size() && visible(options[next])) write(",");
    write(kLineBreak);
  }
  return header_written;
}

void Menus::write_levels_below(const data::AllRows& options, const std::string& array) {
  std::int32_t number = 0;
  for (std::size_t row = 0; row < options.size(); ++row) {
    const auto option = options[row];
    if (!visible(option)) continue;
    ++number;  // kept: counts visible options only
    Montar_Menu_Opcao(to_long(option[kId]), array + "_" + std::to_string(number));
  }
}

// Asked anew on every pass over a level.
bool Menus::visible(std::span<const Variant> option) {
  if (OIDFuncionario == 0) return true;
  const Variant& list = option[kRListadeObjetos];
  return list.is_null() || AcessoListaDeObjetos(OIDFuncionario, to_long(list)) == kGranted;
}

bool Menus::has_options_below(std::span<const Variant> option) {
  sSQL.assign("select id from Pelm_Menu where rEscopo = ")
      .append(std::to_string(to_long(option[kId])));
  // kept: whether anybody may see them is not asked
  return data::FirstRow(shared_conn(), sSQL).found();
}

Variant Menus::AddRestricaoItemMenu(std::string_view Link) {
  // kept: the list grows by a slot and forgets what it held; only the last fragment is there.
  const std::size_t slots = restricoes_.size() + 1;
  restricoes_.assign(slots, Variant());
  restricoes_.back() = Link;
  return {};
}

std::int16_t Menus::GetRestricaoItemMenu(std::string_view Link) {
  return error_trap("Menu", "GetRestricaoItemMenu", [&] {
    for (std::size_t i = 1; i < restricoes_.size(); ++i) {
      // kept: a forgotten slot is the empty text, which every address but the empty one contains.
      if (text::instr(1, Link, joined_text(restricoes_[i])) > 0) return kRestricted;
    }
    return kUnrestricted;
  });
}

}  // namespace pelm
