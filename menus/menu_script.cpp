// The script of a menu: an array of options for each level, written as the rows are read.
#include <cstddef>
#include <memory>
#include <string>

#include "data/first_row.h"
#include "frame/error_trap.h"
#include "frame/page_context.h"
#include "frame/thread_slots.h"
#include "menus/header_template.h"
#include "menus/tree_depth.h"
#include "pelm/ado/recordset.h"
#include "pelm/conn.h"
#include "pelm/conversions.h"
#include "pelm/menus.h"
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

void write(std::string_view text) { frame::thread_slots().response->Write(text); }

}  // namespace

void Menus::Montar_Menu(std::int32_t IDMenu, std::int16_t Numero) {
  error_trap("Menu", "Montar_Menu", [&] {
    frame::fetch_response();
    sSQL.assign("select id, Nome, Link, rListadeObjetos from Pelm_Menu where rEscopo = ")
        .append(std::to_string(IDMenu))
        .append(" order by Ordem, id");
    const auto options = shared_conn().RunSQL(sSQL);
    write_level(*options, menus::kFirstLevel, "HM_Array" + std::to_string(Numero));
    options->Close();
  });
}

void Menus::Montar_Menu_Opcao(std::int32_t parent, const std::string& array) {
  error_trap("Menu", "Montar_Menu_Opcao", [&] {
    const menus::TreeLevel level(depth_);
    sSQL.assign("select id,nome,link,rListadeObjetos from Pelm_Menu where rEscopo=")
        .append(std::to_string(parent))
        .append(" order by Ordem,id");
    const auto options = shared_conn().RunSQL(sSQL);
    write_level(*options, menus::kLevelBelow, array);
    options->Close();
  });
}

void Menus::write_level(ado::Recordset& options, const menus::LevelForm& form,
                        const std::string& array) {
  if (!write_entries(options, form, array)) return;
  write("]\r\n\r\n");
  write_levels_below(options, array);
}

bool Menus::write_entries(ado::Recordset& options, const menus::LevelForm& form,
                          const std::string& array) {
  bool header_written = false;
  while (!options.Eof()) {
    if (visible(options)) {
      if (!header_written) {
        form.write_header(*frame::thread_slots().response, *this, array);
        header_written = true;
      }
      const std::string link = joined_text(options.Fields("Link").Value());
      const std::string_view has_below = has_options_below(options) ? "1" : "0";
      std::string entry = "[\"";
      entry += form.before_caption;
      entry += joined_text(options.Fields("Nome").Value());
      entry += form.after_caption;
      entry += "\",\"";
      entry += link;
      entry += "\",1,0,";
      entry += has_below;
      entry += "]";
      write(entry);
    }
    options.MoveNext();
    // kept: the comma is written on the turn of the row before, hidden or not, so it may come
    // before the header, stand on a line of its own, or follow nothing.
    if (!options.Eof() && visible(options)) write(",");
    write(kLineBreak);
  }
  return header_written;
}

void Menus::write_levels_below(ado::Recordset& options, const std::string& array) {
  std::int32_t number = 0;
  for (options.MoveFirst(); !options.Eof(); options.MoveNext()) {
    if (!visible(options)) continue;
    ++number;  // kept: counts visible options only
    Montar_Menu_Opcao(to_long(options.Fields("id").Value()), array + "_" + std::to_string(number));
  }
}

// Asked anew on every pass over a level.
bool Menus::visible(ado::Recordset& option) {
  if (OIDFuncionario == 0) return true;
  const Variant list = option.Fields("rListadeObjetos").Value();
  return list.is_null() || AcessoListaDeObjetos(OIDFuncionario, to_long(list)) == kGranted;
}

bool Menus::has_options_below(ado::Recordset& option) {
  const std::int32_t id = to_long(option.Fields("id").Value());
  sSQL.assign("select id from Pelm_Menu where rEscopo = ").append(std::to_string(id));
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
