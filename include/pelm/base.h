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

  // Additional data: typed values of an item.

  /// The column that holds values of a type: "SVALOR", "NVALOR", "DTVALOR" or "LSVALOR".
  std::string tipo_aditivo(std::int32_t TIPO) const;
  /// Adds a value and returns True. An OID is used up even when the definition does not exist.
  /// Raises 1001 "Aditivo inexistente.", the database's error for a value the column cannot take.
  bool cadastrar_aditivo(Oid RITEM, Oid RDEFINICAO, const Variant& DADO);
  /// Sets the first value of that item and definition, adding one where there is none unless
  /// `CRIAR_SE_NAO_HOUVER` is False, and returns True. Raises 1001 for an unknown definition and
  /// for a missing value that may not be added.
  bool alterar_aditivo(Oid RITEM, Oid RDEFINICAO, const Variant& DADO,
                       bool CRIAR_SE_NAO_HOUVER = true);

  // Parameters, labels and names.

  /// A parameter's value for an item, else for item 1, without blanks around it; "" when there is
  /// none. A `pTipo` of exactly "D" reads the date column, any other the text column. Raises 94
  /// when the value's row holds null. `pNOMEINTERNO` goes into the SQL text unescaped.
  std::string fObterValorParametro(std::string_view pNOMEINTERNO, Oid pOidItem = 1,
                                   std::string_view pTipo = "S");
  /// The labels of an application, columns `controle` and `valor`. The caller closes it.
  std::shared_ptr<ado::Recordset> fObterRotuloCpo(Oid RAPLICATIVO);
  /// An item's name; "(Indeterminado)" when there is no such item. Raises 94 for a null name.
  std::string fObterNomeItem(Oid pOidItem);

  // Grouping, classification and categories. Nothing is checked for uniqueness.

  /// Puts an item into a group in a role; returns True.
  bool cadastrar_agrupamento(Oid RPAPEL, Oid RGRUPO, Oid RITEM);
  /// Puts an item into a category; returns True.
  bool cadastrar_classificacao(Oid RITEM, Oid RCATEGORIA);
  /// Creates a category and returns its OID; a `pOID` of 7 asks for a new one. Without a name it
  /// is called "CAT" and its OID.
  Oid cadastrar_categoria(Oid pRSUPER, std::string_view pNOMEINTERNO = "",
                          Oid pOID = kPedirNovoOid);

  // Sequential numbering.

  /// The next number of the sequence `CODIGO`, recorded in `chaveunica` so that nobody else gets
  /// it. The first number is 1, or one more than the parameter `NOME_INTERNO`. With `Max` the
  /// result cycles through 1 to `Max` while the recorded numbers go on; a `Max` of 0 gives the
  /// recorded number. `CODIGO` goes into a LIKE unescaped. Raises 1001 for a parameter of "-1".
  /// Tries the next number for ever while storing fails, whatever the reason.
  std::int32_t fObterNovoNumOrd(std::string_view CODIGO, std::string_view NOME_INTERNO = "",
                                std::int32_t Max = -1);

  // Contacts: a person with a position at a company.

  /// Creates the item (class 45), the person's rows, the classification (1000) and the grouping
  /// with the company; returns the contact's OID. What was written before a failure stays.
  Oid cadastrar_contato(std::string_view pNomeContato, Oid pCargo, Oid pOidEmpresa,
                        Oid pRespCadastro = 1);
  /// Renames a contact and replaces its position in that company; returns its OID. `pOID` goes
  /// into the SQL text as given. Raises 13 when it is not a number.
  Oid alterar_contato(std::string_view pOID, std::string_view pNomeContato, Oid pCargo,
                      Oid pOidEmpresa, Oid pRespCadastro = 1);

  // Addresses: items of class 26, named street, complement, number.

  /// Returns the OID of the new address.
  Oid cadastrar_endereco(Oid pRITEM, Oid pRCIDADE, std::string_view pCEP, std::string_view pBAIRRO,
                         std::string_view pCOMPLEMENTO, std::string_view pNUMERO,
                         std::string_view pRUA, std::string_view pREFERENCIA = "",
                         Oid pRespCadastro = 1);
  /// Rewrites an address and returns its OID; only an empty reference leaves the stored one.
  /// Raises 3021 when it has no row.
  Oid alterar_endereco(Oid pOID, Oid pRITEM, Oid pRCIDADE, std::string_view pCEP,
                       std::string_view pBAIRRO, std::string_view pCOMPLEMENTO,
                       std::string_view pNUMERO, std::string_view pRUA,
                       std::string_view pREFERENCIA = "", Oid pRespCadastro = 1);

  // Communications: ways of reaching an item.

  /// Returns True; the new row's OID is not told.
  bool cadastrar_comunicacao(Oid pRITEM, Oid pRTIPO, Oid pRENDERECO, std::string_view pVALOR = "");
  /// Returns True. Raises 1001 "A comunicação que está sendo alterada não existe!".
  bool alterar_comunicacao(Oid pOID, Oid pRITEM, Oid pRTIPO, Oid pRENDERECO,
                           std::string_view pVALOR);

  // Accounting look-ups. Raise 94 for a null in the column read.

  /// The ledger account associated with an item, 0 when none; a row of its own category and value
  /// source wins over the general ones (7).
  Oid fBuscarContaAssociada(Oid p_rPlanoDeContas, Oid p_rItem, Oid p_rFonteDoValor,
                            Oid p_rCategoria);
  /// The analytic account of an item under a synthetic one, 0 when none.
  Oid fBuscarContaAnalitica(Oid p_OidItem, Oid p_OidContaSintetica);
  /// An account's code in the chart of accounts, "" when there is no such account.
  std::string fObterCodContaContabil(Oid OidContaContabil);

  // Usage sessions of a workstation.

  /// Joins the workstation's open usage session and returns its OID, or opens one and returns the
  /// OID of the application session in it. `Estacao` goes into the SQL text unescaped.
  Oid Iniciar_Sessao_Uso(Oid rUsuario, std::string_view Estacao, Oid OidAplicativo);
  /// Closes an application session and the whole usage session it belongs to; returns True, also
  /// for an unknown or closed one. `Motivo` is stored as the reason.
  bool Finalizar_Sessao_Uso(Oid OIDSessaoApp, std::int16_t Motivo = 2);

  // Check digits of payment slips. Raise 13 for a character read that is not a digit.

  /// A 44-digit collection barcode, check digit at position 4, which is cut out of the caller's
  /// text when the length is right. A sum that is a multiple of 10 is always refused.
  bool fCalcularDV10_GeralArrecadacao(std::string& sCodigoBarra) const;
  /// A 44-digit bank barcode, check digit at position 5, which is cut out of the caller's text
  /// when the length is right.
  bool fCalcularDV11_Cobranca(std::string& sCodigoBarra) const;
  /// A 47-digit typed line of a bank slip: the check digits of its first three fields.
  bool fCalcularDV10_Cobranca(std::string_view sCodigoBarra) const;

  // Texts.

  /// `Data` cut to `Size` characters, or filled with `Complemento`, whole each time: in front when
  /// `Side` is 1, behind for any other. Raises 5 for a negative `Size`.
  std::string CompleteWith(std::string_view Data, std::int16_t Size, std::int16_t Side = 1,
                           std::string_view Complemento = " ") const;
  /// A typed number in display form, as "int" (16 bits) or "dbl" (two decimals); `Valor` itself
  /// when it is no such number or `TIPO` is any other. Never raises.
  std::string Format_Number(std::string_view Valor, std::string_view TIPO) const;

 private:
  friend class BaseProbe;  // the tests look at the two scratch fields

  /// The value column of a definition of additional data. Raises 1001 for an unknown one.
  std::string value_column(Oid definition);

  std::shared_ptr<ado::Recordset> rsBase;  // of the operation in progress; null between them
  std::string sSQL;                        // the text last built; never cleared
};

}  // namespace pelm
