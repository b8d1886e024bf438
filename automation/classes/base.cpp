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
          method<&Base::tipo_aditivo>("tipo_aditivo",
                                      "The column that holds values of a type of additional data.",
                                      {"TIPO"}),
          method<&Base::cadastrar_aditivo>("cadastrar_aditivo", "Adds a value to an item.",
                                           {"RITEM", "RDEFINICAO", "DADO"}),
          method<&Base::alterar_aditivo>(
              "alterar_aditivo", "Sets a value of an item, adding it where there is none.",
              {"RITEM", "RDEFINICAO", "DADO", {"CRIAR_SE_NAO_HOUVER", true}}),
          method<&Base::fObterValorParametro>(
              "fObterValorParametro",
              "A parameter's value for an item, else for item 1; empty when there is none.",
              {"pNOMEINTERNO", {"pOidItem", Oid{1}}, {"pTipo", "S"}}),
          method<&Base::fObterRotuloCpo>(
              "fObterRotuloCpo", "The labels of an application: controle, valor.", {"RAPLICATIVO"}),
          method<&Base::fObterNomeItem>("fObterNomeItem",
                                        "An item's name; \"(Indeterminado)\" when there is none.",
                                        {"pOidItem"}),
          method<&Base::cadastrar_agrupamento>("cadastrar_agrupamento",
                                               "Puts an item into a group in a role.",
                                               {"RPAPEL", "RGRUPO", "RITEM"}),
          method<&Base::cadastrar_classificacao>(
              "cadastrar_classificacao", "Puts an item into a category.", {"RITEM", "RCATEGORIA"}),
          method<&Base::cadastrar_categoria>(
              "cadastrar_categoria", "Creates a category and returns its OID.",
              {"pRSUPER", {"pNOMEINTERNO", ""}, {"pOID", kPedirNovoOid}}),
          method<&Base::fObterNovoNumOrd>(
              "fObterNovoNumOrd", "The next number of a sequence, given once.",
              {"CODIGO", {"NOME_INTERNO", ""}, {"Max", std::int32_t{-1}}}),
          method<&Base::cadastrar_contato>(
              "cadastrar_contato", "Creates a contact of a company and returns its OID.",
              {"pNomeContato", "pCargo", "pOidEmpresa", {"pRespCadastro", Oid{1}}}),
          method<&Base::alterar_contato>(
              "alterar_contato", "Renames a contact and replaces its position in the company.",
              {"pOID", "pNomeContato", "pCargo", "pOidEmpresa", {"pRespCadastro", Oid{1}}}),
          method<&Base::cadastrar_endereco>("cadastrar_endereco",
                                            "Creates an address and returns its OID.",
                                            {"pRITEM",
                                             "pRCIDADE",
                                             "pCEP",
                                             "pBAIRRO",
                                             "pCOMPLEMENTO",
                                             "pNUMERO",
                                             "pRUA",
                                             by_ref({"pREFERENCIA", ""}),
                                             {"pRespCadastro", Oid{1}}}),
          method<&Base::alterar_endereco>(
              "alterar_endereco",
              "Rewrites an address; only an empty reference leaves the stored one.",
              {"pOID",
               "pRITEM",
               "pRCIDADE",
               "pCEP",
               "pBAIRRO",
               "pCOMPLEMENTO",
               "pNUMERO",
               "pRUA",
               {"pREFERENCIA", ""},
               {"pRespCadastro", Oid{1}}}),
          method<&Base::cadastrar_comunicacao>("cadastrar_comunicacao",
                                               "Adds a way of reaching an item.",
                                               {"pRITEM", "pRTIPO", "pRENDERECO", {"pVALOR", ""}}),
          method<&Base::alterar_comunicacao>("alterar_comunicacao",
                                             "Rewrites a way of reaching an item.",
                                             {"pOID", "pRITEM", "pRTIPO", "pRENDERECO", "pVALOR"}),
          method<&Base::fBuscarContaAssociada>(
              "fBuscarContaAssociada", "The ledger account associated with an item; 0 when none.",
              {by_ref("p_rPlanoDeContas"), by_ref("p_rItem"), by_ref("p_rFonteDoValor"),
               by_ref("p_rCategoria")}),
          method<&Base::fBuscarContaAnalitica>(
              "fBuscarContaAnalitica",
              "The analytic account of an item under a synthetic one; 0 when none.",
              {by_ref("p_OidItem"), by_ref("p_OidContaSintetica")}),
          method<&Base::fObterCodContaContabil>("fObterCodContaContabil",
                                                "An account's code; empty when there is none.",
                                                {by_ref("OidContaContabil")}),
          method<&Base::Iniciar_Sessao_Uso>(
              "Iniciar_Sessao_Uso",
              "Joins the workstation's usage session, or opens one with this application.",
              {by_ref("rUsuario"), by_ref("Estacao"), by_ref("OidAplicativo")}),
          method<&Base::Finalizar_Sessao_Uso>(
              "Finalizar_Sessao_Uso",
              "Closes an application session and the usage session it belongs to.",
              {by_ref("OIDSessaoApp"), by_ref({"Motivo", std::int16_t{2}})}),
          method<&Base::fCalcularDV10_GeralArrecadacao>(
              "fCalcularDV10_GeralArrecadacao",
              "Whether a collection barcode is right; its check digit is cut out of the text.",
              {"sCodigoBarra"}),
          method<&Base::fCalcularDV11_Cobranca>(
              "fCalcularDV11_Cobranca",
              "Whether a bank barcode is right; its check digit is cut out of the text.",
              {"sCodigoBarra"}),
          method<&Base::fCalcularDV10_Cobranca>("fCalcularDV10_Cobranca",
                                                "Whether a bank slip's typed line is right.",
                                                {by_ref("sCodigoBarra")}),
          method<&Base::CompleteWith>(
              "CompleteWith", "Text cut or filled to a width.",
              {"Data", "Size", {"Side", std::int16_t{1}}, {"Complemento", " "}}),
          method<&Base::Format_Number>("Format_Number",
                                       "A typed number in display form; itself when it is none.",
                                       {"Valor", "TIPO"}),
      });
}

}  // namespace pelm::automation
