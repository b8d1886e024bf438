// Read-only look-ups: parameters, labels and names.
#include <string>

#include "business/scratch_recordset.h"
#include "data/first_row.h"
#include "frame/error_trap.h"
#include "frame/thread_slots.h"
#include "pelm/base.h"
#include "pelm/conn.h"
#include "pelm/conversions.h"
#include "platform/value/text.h"

namespace pelm {

using business::ScratchRecordset;
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
    const auto read = [&](const ScratchRecordset& row) {
      // kept: only the text and date columns are ever read
      const Variant value = row->Fields(pTipo == "D" ? "DTVALOR" : "SVALOR").Value();
      std::string result(text::trim(to_text(value)));
      row->Close();
      return result;
    };

    sSQL = parameter_query(pNOMEINTERNO, std::to_string(pOidItem));
    {
      const ScratchRecordset own(rsBase, shared_conn().RunSQL(sSQL));
      if (!own->Eof()) return read(own);
      own->Close();
    }
    sSQL = parameter_query(pNOMEINTERNO, "1");  // kept: asked again also when the item was 1
    const ScratchRecordset general(rsBase, shared_conn().RunSQL(sSQL));
    if (!general->Eof()) return read(general);
    general->Close();
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
