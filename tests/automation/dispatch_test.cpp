// Calling members by name: finding them, completing arguments, refusing what does not fit.
#include "automation/dispatch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "frame/thread_slots.h"
#include "pelm/base.h"
#include "pelm/cmain.h"
#include "pelm/conn.h"
#include "pelm/error.h"
#include "pelm/manipula_data.h"

namespace pelm::automation {
namespace {

class DispatchTest : public testing::Test {
 protected:
  void SetUp() override { frame::thread_slots() = {}; }
  void TearDown() override { frame::thread_slots() = {}; }

  Variant call_with(Object& object, std::string_view member, std::vector<OptionalArg> args) {
    return call(object, member, args);
  }
};

struct Raised {
  std::int32_t number = 0;
  std::string description;
};

Raised raised(const std::function<void()>& body) {
  try {
    body();
  } catch (const Error& e) {
    return {e.number(), e.description()};
  }
  return {};
}

TEST_F(DispatchTest, CreatesEachPublicClassByItsIdentifierInAnyCase) {
  for (const char* id :
       {"PelmComum2008.CMain", "pelmcomum2008.CONN", "PelmComum2008.Base",
        "PelmComum2008.ManipulaData", "ADODB.Recordset", "ADODB.Connection", "ADODB.Command"}) {
    EXPECT_NE(CreateObject(id), nullptr) << id;
  }
}

TEST_F(DispatchTest, AnUnknownOrPrivateIdentifierIsRefusedByName) {
  for (const char* id : {"PelmComum2008.ManipulaOID", "Nada.Aqui", "", "PelmComum2008.Field"}) {
    const Raised e = raised([&] { CreateObject(id); });
    EXPECT_EQ(e.number, error_number::kCannotCreateObject) << id;
    EXPECT_NE(e.description.find(id), std::string::npos);
  }
}

TEST_F(DispatchTest, NamesCompareWithoutCase) {
  const ObjectRef main = CreateObject("PelmComum2008.CMain");
  EXPECT_EQ(get(*main, "isweb"), Variant(true));
  put(*main, "ISWEB", Variant(false));
  EXPECT_EQ(get(*main, "IsWeb"), Variant(false));
}

TEST_F(DispatchTest, APropertyConvertsWhatIsAssigned) {
  Conn conn;
  put(conn, "ODBC_COM_TIMEOUT", Variant("12"));
  EXPECT_EQ(conn.ODBC_COM_TIMEOUT(), 12);
  EXPECT_EQ(raised([&] { put(conn, "ODBC_COM_TIMEOUT", Variant("abc")); }).number,
            error_number::kTypeMismatch);
  EXPECT_EQ(raised([&] { put(conn, "ODBC_COM_TIMEOUT", Variant(40000)); }).number,
            error_number::kOverflow);
  EXPECT_EQ(raised([&] { put(conn, "ODBC_STR", Variant(Null{})); }).number,
            error_number::kInvalidUseOfNull);
}

TEST_F(DispatchTest, AnErrorOfTheMemberPassesUnchanged) {
  Conn conn;
  try {
    put(conn, "Database", Variant(3));
    FAIL() << "nothing was raised";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), 1001);
    EXPECT_EQ(e.source(), "PelmComum2008.Conn.PropertyDatabase");
    EXPECT_EQ(e.description(),
              "Valor da propriedade pode ser apenas 1 para SQLServer e 2 para Oracle");
  }
}

TEST_F(DispatchTest, OmittedArgumentsTakeTheirDefaults) {
  Conn conn;
  std::array<OptionalArg, 3> args{Variant(false), Variant("X"), kAbsent};
  call(conn, "ConfigureConn", args);
  EXPECT_EQ(conn.ODBC_STR(), "X");
  EXPECT_EQ(conn.ODBC_CONN_TIMEOUT(), 60);
  EXPECT_EQ(conn.Database(), 1);
}

TEST_F(DispatchTest, UnknownMembersAndWrongUsesAreRefusedByName) {
  CMain main;
  Conn conn;
  const std::vector<std::pair<const char*, std::function<void()>>> cases = {
      {"CMain.Nada", [&] { call(main, "Nada"); }},
      {"CMain.CConn", [&] { put(main, "CConn", Variant(1)); }},
      {"CMain.myCDbl", [&] { put(main, "myCDbl", Variant(1)); }},
      {"Conn.RunSQL", [&] { get(conn, "RunSQL"); }},
      {"CMain.(padrão)", [&] { call(main, ""); }},
  };
  for (const auto& [path, body] : cases) {
    const Raised e = raised(body);
    EXPECT_EQ(e.number, error_number::kMemberNotFound) << path;
    EXPECT_NE(e.description.find(path), std::string::npos) << e.description;
  }
}

TEST_F(DispatchTest, AMissingArgumentIsNamed) {
  CMain main;
  const Raised e = raised([&] { call(main, "myCDbl"); });
  EXPECT_EQ(e.number, error_number::kArgumentNotOptional);
  EXPECT_NE(e.description.find("CMain.myCDbl: sValor"), std::string::npos) << e.description;
}

TEST_F(DispatchTest, TooManyArgumentsAreRefused) {
  CMain main;
  const Raised e = raised([&] { call_with(main, "myCDbl", {Variant("1"), Variant("2")}); });
  EXPECT_EQ(e.number, error_number::kWrongArgumentCount);
  EXPECT_NE(e.description.find("CMain.myCDbl"), std::string::npos) << e.description;
}

TEST_F(DispatchTest, AnArgumentThatDoesNotConvertIsNamed) {
  Base base;
  const Raised e = raised([&] {
    call_with(base, "excluir_item",
              {Variant("n"), Variant("c"), Variant("um"), Variant("1/1/2008"), Variant(1),
               Variant(1), Variant(1)});
  });
  EXPECT_EQ(e.number, error_number::kTypeMismatch);
  EXPECT_NE(e.description.find("Base.excluir_item: pEXCLUIDOPOR"), std::string::npos)
      << e.description;
}

TEST_F(DispatchTest, AnObjectWhereAValueIsWantedIsRefused) {
  CMain main;
  EXPECT_EQ(raised([&] { call_with(main, "myCDbl", {Variant(main.CConn())}); }).number,
            error_number::kTypeMismatch);
}

TEST_F(DispatchTest, AnObjectPropertyTakesOnlyItsClassOrNothing) {
  CMain main;
  const auto conn = main.CConn();
  EXPECT_EQ(raised([&] { put(*conn, "Conex", Variant(5)); }).number, error_number::kObjectRequired);
  EXPECT_EQ(raised([&] { put(*conn, "Conex", Variant(main.CBase())); }).number,
            error_number::kTypeMismatch);
  const ObjectRef connection = CreateObject("ADODB.Connection");
  put(*conn, "Conex", Variant(connection));
  EXPECT_EQ(get(*conn, "Conex").object(), connection);
  put(*conn, "Conex", Variant(ObjectRef()));
  EXPECT_EQ(conn->Conex(), nullptr);
}

TEST_F(DispatchTest, ByReferenceArgumentsComeBackChanged) {
  CMain main;
  std::array<OptionalArg, 1> minutes{Variant(125)};
  EXPECT_EQ(call(*main.Data(), "Minuto_hora", minutes), Variant("2:05"));
  EXPECT_EQ(minutes[0], OptionalArg(Variant(5)));

  std::array<OptionalArg, 2> sql{Variant("select isnull(a,0) from t"), Variant("Oracle")};
  call(*main.CConn(), "traduzsql", sql);
  EXPECT_EQ(sql[0], OptionalArg(Variant("SELECT NVL(A,0) FROM T")));
  EXPECT_EQ(sql[1], OptionalArg(Variant("Oracle")));
}

TEST_F(DispatchTest, ByReferenceArgumentsComeBackAlsoFromAFailure) {
  CMain main;
  std::array<OptionalArg, 1> barcode{Variant(std::string(43, '1') + "x")};
  EXPECT_EQ(raised([&] { call(*main.CBase(), "fCalcularDV11_Cobranca", barcode); }).number,
            error_number::kTypeMismatch);
  EXPECT_EQ(barcode[0], OptionalArg(Variant(std::string(42, '1') + "x")));
}

TEST_F(DispatchTest, ByValueArgumentsStayAsTheyWere) {
  CMain main;
  std::array<OptionalArg, 1> text{Variant(std::int16_t{7})};
  EXPECT_EQ(call(main, "myCDbl", text), Variant(7.0));
  EXPECT_EQ(text[0], OptionalArg(Variant(std::int16_t{7})));
}

TEST_F(DispatchTest, ThePagesEndEndsACMain) {
  CMain main;
  const auto conn = main.CConn();
  frame::thread_slots().session = std::make_shared<CMain>();
  end_page_object(main);
  EXPECT_EQ(frame::thread_slots().session, nullptr);
  EXPECT_NO_THROW(end_page_object(*conn));
}

TEST(TypeLibrary, EveryMemberHasHelpAndEveryArgumentAName) {
  for (const ClassInfo* cls : classes()) {
    EXPECT_FALSE(cls->help.empty()) << cls->name;
    for (const MemberInfo& member : cls->members) {
      EXPECT_FALSE(member.help.empty()) << cls->name << "." << member.name;
      EXPECT_TRUE(member.invoke) << cls->name << "." << member.name;
      EXPECT_EQ(member.writable, bool(member.assign)) << cls->name << "." << member.name;
      for (const ParameterInfo& p : member.parameters) EXPECT_FALSE(p.name.empty());
    }
  }
}

TEST(TypeLibrary, NoClassHasTwoMembersOfOneName) {
  for (const ClassInfo* cls : classes()) {
    for (const MemberInfo& member : cls->members) {
      EXPECT_EQ(cls->find(member.name), &member) << cls->name << "." << member.name;
    }
  }
}

TEST(TypeLibrary, OptionalArgumentsComeLast) {
  for (const ClassInfo* cls : classes()) {
    for (const MemberInfo& member : cls->members) {
      bool optional = false;
      for (const ParameterInfo& p : member.parameters) {
        EXPECT_TRUE(p.optional || !optional) << cls->name << "." << member.name << " " << p.name;
        optional = p.optional;
      }
    }
  }
}

/// "Class.member: argument argument" for each member with arguments by reference.
std::vector<std::string> marked_by_reference(std::string_view class_name) {
  std::vector<std::string> found;
  for (const MemberInfo& member : find_class(class_name)->members) {
    std::string line;
    for (const ParameterInfo& p : member.parameters) {
      if (p.by_reference) line += " " + std::string(p.name);
    }
    if (!line.empty()) found.push_back(std::string(member.name) + ":" + line);
  }
  return found;
}

TEST(TypeLibrary, MarksWhatCallersPassByReferenceChangedOrNot) {
  using testing::ElementsAre;
  using testing::IsEmpty;
  EXPECT_THAT(marked_by_reference("CMain"), ElementsAre("myCDbl: sValor"));
  EXPECT_THAT(marked_by_reference("Conn"), ElementsAre("RunSQL: Query", "traduzsql: psqlstat"));
  EXPECT_THAT(marked_by_reference("ManipulaData"), ElementsAre("Minuto_hora: Minuto"));
  EXPECT_THAT(marked_by_reference("treeview"), IsEmpty());
  EXPECT_THAT(marked_by_reference("Calendario"), IsEmpty());
  EXPECT_THAT(
      marked_by_reference("Base"),
      ElementsAre("cadastrar_endereco: pREFERENCIA",
                  "fBuscarContaAssociada: p_rPlanoDeContas p_rItem p_rFonteDoValor "
                  "p_rCategoria",
                  "fBuscarContaAnalitica: p_OidItem p_OidContaSintetica",
                  "fObterCodContaContabil: OidContaContabil",
                  "Iniciar_Sessao_Uso: rUsuario Estacao OidAplicativo",
                  "Finalizar_Sessao_Uso: OIDSessaoApp Motivo",
                  "fCalcularDV10_GeralArrecadacao: sCodigoBarra",
                  "fCalcularDV11_Cobranca: sCodigoBarra", "fCalcularDV10_Cobranca: sCodigoBarra"));
  EXPECT_THAT(
      marked_by_reference("Menus"),
      ElementsAre("Cadastrar_Opcao: Nome Link rEscopo rListadeObjetos Ordem",
                  "Alterar_Opcao: IDOpcao Nome Link rEscopo rListadeObjetos Ordem",
                  "Excluir_Opcao: IDOpcao", "Ordena_Opcoes: ID Ordem Excluir",
                  "AcessoOpcao: OIDFuncionario IDOpcao", "AcessoTotalOpcao: OIDFuncionario IDOpcao",
                  "Montar_Menu: IDMenu Numero"));
}

TEST_F(DispatchTest, AnArgumentByReferenceThatNobodyChangesKeepsItsOwnType) {
  CMain main;
  std::array<OptionalArg, 1> number{Variant(15)};
  EXPECT_EQ(call(main, "myCDbl", number), Variant(15.0));
  EXPECT_EQ(number[0], OptionalArg(Variant(15)));
}

TEST(TypeLibrary, TellsKindsDefaultsAndReferences) {
  const ClassInfo* conn = find_class("PelmComum2008.Conn");
  ASSERT_NE(conn, nullptr);
  const MemberInfo* run = conn->find("runsql");
  ASSERT_NE(run, nullptr);
  EXPECT_EQ(run->result, ValueKind::Object);
  EXPECT_EQ(run->result_class, "Recordset");
  ASSERT_EQ(run->parameters.size(), 7u);
  EXPECT_TRUE(run->parameters[0].by_reference);
  EXPECT_FALSE(run->parameters[0].optional);
  EXPECT_EQ(run->parameters[1].default_value, Variant(3));
  EXPECT_FALSE(run->parameters[1].by_reference);
}

}  // namespace
}  // namespace pelm::automation
