// Read-only look-ups: parameters, labels and names.
#include <string>

#include "data/query_rows.h"
#include "frame/error_trap.h"
#include "frame/thread_slots.h"
#include "pelm/base.h"
#include "pelm/conn.h"
#include "pelm/conversions.h"
#include "platform/value/text.h"

namespace pelm {

using data::FirstRow;
using frame::error_trap;
using frame::shared_conn;

namespace {

std::string parameter_query(std::string_view internal_name, const std::string& item) {
  // kept: the name is not escaped
  return "SELECT * FROM aditivo "
         "WHERE "
         "rdefinicao = (SELECT oid FROM dadoadicional WHERE rtipo = (SELECT oid FROM categoria "
         "WHERE nomeinterno = '" +
         text::upper(internal_name) +
         "')) "
         "AND ritem = " +
         item;
}

}  // namespace

std::string Base::fObterValorParametro(std::string_view pNOMEINTERNO, Oid pOidItem,
                                       std::string_view pTipo) {
  return error_trap("Base", "fObterValorParametro", [&] {
    // kept: only the text and date columns are ever read
    const std::string_view column = pTipo == "D" ? "DTVALOR" : "SVALOR";
    // kept: asked again also when the item was 1
    for (const std::string& item : {std::to_string(pOidItem), std::string("1")}) {
      sSQL = parameter_query(pNOMEINTERNO, item);
      const FirstRow row(shared_conn(), sSQL, column);
      if (row.found()) return std::string(text::trim(to_text(row[0])));
    }
    return std::string();
  });
}

std::shared_ptr<ado::Recordset> Base::fObterRotuloCpo(Oid RAPLICATIVO) {
  return error_trap("Base", "fObterRotuloCpo", [&] {
    sSQL = "SELECT controle, valor FROM rotulo WHERE raplicativo = " + std::to_string(RAPLICATIVO);
    return shared_conn().RunSQL(sSQL);
  });
}

std::string Base::fObterNomeItem(Oid pOidItem) {
  return error_trap("Base", "fObterNomeItem", [&] {
    std::string result = "(Indeterminado)";
    sSQL.assign("SELECT nome FROM item WHERE oid = ").append(std::to_string(pOidItem));
    const FirstRow item(shared_conn(), sSQL, "nome");
    if (item.found()) result = to_text(item[0]);
    return result;
  });
}

}  // namespace pelm
