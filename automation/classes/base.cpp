// The type library's table of Base.
#include "pelm/base.h"
#include "automation/binding.h"
#include "automation/class_list.h"

namespace pelm::automation {

ClassEntry base_table() {
  return class_table<Base>(
      kClassName<Base>, "PelmComum2008.Base",
      "The business records: items and what hangs off them.",
      {
          method<&Base::Gerar_Oid>("Gerar_Oid",
                                   "The next free OID; 0 when no range could be reserved."),
          method<&Base::cadastrar_item>("cadastrar_item", "Creates an item and returns its OID.",
                                        {"pCRIADOPOR",
                                         "pNOME",
                                         "pCID",
                                         {"pOID", kPedirNovoOid},
                                         {"pRESCOPO", kEscopoPadrao},
                                         "pCRIADOEM",
                                         "pATUALIZADOEM",
                                         {"pATUALIZADOPOR", kMesmoQueCriador},
                                         {"pOBSERVACAO", ""},
                                         {"pCODIGO", ""},
                                         {"pEXCLUIDO", std::int16_t{0}}}),
          method<&Base::alterar_item>(
              "alterar_item", "Changes the given columns of an item; its update time always.",
              {"pOID", "pATUALIZADOPOR", "pNOME", "pRESCOPO", "pATUALIZADOEM", "pOBSERVACAO",
               "pCODIGO"}),
          method<&Base::excluir_item>("excluir_item",
                                      "Records the deletion of an item in the recycle bin.",
                                      {"pNOME",
                                       "pCODIGO",
                                       "pEXCLUIDOPOR",
                                       "pEXCLUIDOEM",
                                       "pRAPLICATIVO",
                                       "pCID",
                                       "pOID",
                                       {"pDeixarNaLixeira", true}}),
      });
}

}  // namespace pelm::automation
