/// The business records: items and what hangs off them.
///
///     auto base = main.CBase();
///     const pelm::Oid oid = base->cadastrar_item(usuario, "Pasta de contratos", 20);
///     base->alterar_item(oid, usuario, "Pasta de propostas");
///
/// Every operation works on the connection that `CMain::CConn` hands out on this thread and
/// raises 91 where there is none. Failures leave with the operation's own source,
/// "PelmComum2008.Base." and its name; nothing done before is undone. One operation at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "pelm/ado/recordset.h"
#include "pelm/date.h"
#include "pelm/object.h"
#include "pelm/oid.h"
#include "pelm/variant.h"

namespace pelm {

class Base : public Object {
 public:
  Base();

  /// The next free OID; 0 when no range could be reserved. The last OID of a range is given twice.
  /// Errors carry the allocator's source.
  Oid Gerar_Oid();

  /// Creates an item and returns its OID. A `pOID` of 7 asks for a new one; any other value is
  /// used as given. An absent date is now, each read on its own; an updater of -1 is the creator.
  /// Raises 13 for a date that does not convert, -2147217873 for an OID that exists.
  Oid cadastrar_item(Oid pCRIADOPOR, std::string_view pNOME, std::int32_t pCID,
                     Oid pOID = kPedirNovoOid, Oid pRESCOPO = kEscopoPadrao,
                     const OptionalArg& pCRIADOEM = kAbsent,
                     const OptionalArg& pATUALIZADOEM = kAbsent,
                     Oid pATUALIZADOPOR = kMesmoQueCriador, std::string_view pOBSERVACAO = "",
                     std::string_view pCODIGO = "", std::int16_t pEXCLUIDO = 0);

  /// Changes an item and returns its OID. Only an absent argument leaves its column alone; the
  /// update time is always written, now when absent. Raises 94 for a null, 13 for a value that
  /// does not convert, 3021 when there is no such item.
  Oid alterar_item(Oid pOID, Oid pATUALIZADOPOR, const OptionalArg& pNOME = kAbsent,
                   const OptionalArg& pRESCOPO = kAbsent,
                   const OptionalArg& pATUALIZADOEM = kAbsent,
                   const OptionalArg& pOBSERVACAO = kAbsent, const OptionalArg& pCODIGO = kAbsent);

  /// Records the deletion of an item in the recycle bin and returns True; the item's own row stays
  /// as it is. With `pDeixarNaLixeira` False every row of that OID leaves the recycle bin again.
  bool excluir_item(std::string_view pNOME, std::string_view pCODIGO, Oid pEXCLUIDOPOR,
                    Date pEXCLUIDOEM, Oid pRAPLICATIVO, std::int32_t pCID, Oid pOID,
                    bool pDeixarNaLixeira = true);

 private:
  friend class BaseProbe;  // the tests look at the two scratch fields

  std::shared_ptr<ado::Recordset> rsBase;  // of the operation in progress; null between them
  std::string sSQL;                        // the text last built; never cleared
};

}  // namespace pelm
