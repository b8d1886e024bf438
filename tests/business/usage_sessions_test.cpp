// Usage sessions: who uses which application from which workstation.
#include <string>
#include <string_view>
#include <vector>

#include "business/base_test.h"

namespace pelm {
namespace {

using test::kNow;
using test::of_base;
using test::raised;
using test::Raised;
using testing::ElementsAre;

constexpr Oid kVendas = 30;
constexpr Oid kEstoque = 31;
constexpr Oid kUsuario = 9;

class UsageSessions : public test::BaseTest {
 protected:
  void SetUp() override {
    BaseTest::SetUp();
    if (IsSkipped()) return;
    oids_from(1000);
  }
  std::vector<std::string> usage() {
    return rows("select OID, INICIO, TERMINO, SITUACAO from sessaodeuso order by OID");
  }
  std::vector<std::string> applications() {
    return rows(
        "select OID, RSESSAODEUSO, RAPLICATIVO, RUSUARIO, ESTACAO, INICIO, TERMINO from "
        "sessaoaplicativo order by OID");
  }
  /// An open usage session and in it an open application.
  void add_open(int usage_session, int application_session, Oid application) {
    const std::string oid = std::to_string(usage_session);
    run("insert into sessaodeuso (OID, INICIO, TERMINO, SITUACAO) values (" + oid +
        ", '2008-03-05 08:00:00', null, 1)");
    add_application(usage_session, application_session, application);
  }
  void add_application(int usage_session, int application_session, Oid application) {
    run("insert into sessaoaplicativo (OID, RSESSAODEUSO, RAPLICATIVO, RUSUARIO, ESTACAO, INICIO, "
        "TERMINO) values (" +
        std::to_string(application_session) + ", " + std::to_string(usage_session) + ", " +
        std::to_string(application) + ", 9, 'CAIXA01', '2008-03-05 08:00:00', null)");
  }
  static constexpr std::string_view kEight = "05/03/2008 08:00:00";
};

class IniciarSessaoUso : public UsageSessions {};
PELM_ON_EVERY_ENGINE(IniciarSessaoUso);

TEST_P(IniciarSessaoUso, OpensAUsageSessionAndGivesTheOidOfTheApplicationsOne) {
  const ScopedClock clock(kNow);
  EXPECT_EQ(base().Iniciar_Sessao_Uso(kUsuario, "CAIXA01", kVendas), 1001);
  EXPECT_THAT(usage(), ElementsAre("1000|05/03/2008 14:07:09|null|1"));
  EXPECT_THAT(applications(), ElementsAre("1001|1000|30|9|CAIXA01|05/03/2008 14:07:09|null"));
  EXPECT_TRUE(is_idle());
}

TEST_P(IniciarSessaoUso, AnotherApplicationJoinsAndGivesTheOidOfTheUsageSession) {
  base().Iniciar_Sessao_Uso(kUsuario, "CAIXA01", kVendas);
  EXPECT_EQ(base().Iniciar_Sessao_Uso(kUsuario, "CAIXA01", kEstoque), 1000);
  EXPECT_EQ(row_counts(), "sessaodeuso 1, sessaoaplicativo 1");
  EXPECT_EQ(base().Gerar_Oid(), 1002);
  EXPECT_TRUE(is_idle());
}

TEST_P(IniciarSessaoUso, TheSameApplicationOpensANewSession) {
  base().Iniciar_Sessao_Uso(kUsuario, "CAIXA01", kVendas);
  EXPECT_EQ(base().Iniciar_Sessao_Uso(kUsuario, "CAIXA01", kVendas), 1003);
  EXPECT_EQ(row_counts(), "sessaodeuso 2, sessaoaplicativo 2");
}

TEST_P(IniciarSessaoUso, AnotherWorkstationOpensItsOwn) {
  base().Iniciar_Sessao_Uso(kUsuario, "CAIXA01", kVendas);
  EXPECT_EQ(base().Iniciar_Sessao_Uso(kUsuario, "CAIXA02", kEstoque), 1003);
}

TEST_P(IniciarSessaoUso, AClosedSessionOfThisApplicationDoesNotKeepItOut) {
  add_open(800, 900, kEstoque);
  add_application(800, 901, kVendas);
  run("update sessaoaplicativo set TERMINO = '2008-03-05 09:00:00' where OID = 901");
  EXPECT_EQ(base().Iniciar_Sessao_Uso(kUsuario, "CAIXA01", kVendas), 800);
}

TEST_P(IniciarSessaoUso, TheOtherApplicationNeedNotBeOpenStill) {
  add_open(800, 900, kEstoque);
  run("update sessaoaplicativo set TERMINO = '2008-03-05 09:00:00'");
  EXPECT_EQ(base().Iniciar_Sessao_Uso(kUsuario, "CAIXA01", kVendas), 800);
}

TEST_P(IniciarSessaoUso, SessionsUpToSevenAreNeverJoined) {
  add_open(7, 900, kEstoque);
  EXPECT_EQ(base().Iniciar_Sessao_Uso(kUsuario, "CAIXA01", kVendas), 1001);
  run("delete from sessaodeuso; delete from sessaoaplicativo");
  add_open(8, 900, kEstoque);
  EXPECT_EQ(base().Iniciar_Sessao_Uso(kUsuario, "CAIXA01", kVendas), 8);
}

TEST_P(IniciarSessaoUso, OnlyAnOpenUsageSessionIsJoined) {
  add_open(800, 900, kEstoque);
  run("update sessaodeuso set SITUACAO = 2");
  EXPECT_EQ(base().Iniciar_Sessao_Uso(kUsuario, "CAIXA01", kVendas), 1001);
  run("delete from sessaodeuso where OID >= 1000; delete from sessaoaplicativo where OID >= 1000");
  run("update sessaodeuso set SITUACAO = 1, TERMINO = '2008-03-05 09:00:00'");
  EXPECT_EQ(base().Iniciar_Sessao_Uso(kUsuario, "CAIXA01", kVendas), 1003);
}

TEST_P(IniciarSessaoUso, ReadsTheClockForEachRow) {
  int second = 0;
  const ScopedClock clock([&] { return Date::from_civil({2008, 3, 5, 14, 0, second++}); });
  base().Iniciar_Sessao_Uso(kUsuario, "CAIXA01", kVendas);
  EXPECT_EQ(row("select INICIO from sessaodeuso"), "05/03/2008 14:00:00");
  EXPECT_EQ(row("select INICIO from sessaoaplicativo"), "05/03/2008 14:00:01");
  EXPECT_EQ(second, 2);
}

TEST_P(IniciarSessaoUso, AWorkstationThatDoesNotFitLeavesTheUsageSessionBehind) {
  EXPECT_THAT(raised([&] { base().Iniciar_Sessao_Uso(kUsuario, std::string(101, 'x'), kVendas); }),
              Raised(error_number::kDataOverflow, of_base("Iniciar_Sessao_Uso"), testing::_));
  EXPECT_EQ(row_counts(), "sessaodeuso 1");
  EXPECT_TRUE(is_idle());
}

TEST_P(IniciarSessaoUso, TheWorkstationIsNotEscaped) {
  EXPECT_THAT(raised([&] { base().Iniciar_Sessao_Uso(kUsuario, "D'ÁGUA", kVendas); }),
              Raised(error_number::kErrorsInCommand, of_base("Iniciar_Sessao_Uso"), testing::_));
  EXPECT_EQ(row_counts(), "");
}

constexpr std::string_view kQuery =
    "SELECT SU.OID FROM SESSAODEUSO SU, SESSAOAPLICATIVO SA WHERE SU.OID = SA.RSESSAODEUSO AND "
    "SU.OID > 7 AND SU.SITUACAO = 1 AND SU.TERMINO IS NULL AND SA.ESTACAO = 'CAIXA01' AND "
    "SA.RAPLICATIVO != 30 AND SU.OID NOT IN (SELECT RSESSAODEUSO FROM SESSAOAPLICATIVO A WHERE "
    "A.ESTACAO = 'CAIXA01' AND A.RAPLICATIVO = 30 AND A.TERMINO IS NULL)";

TEST_P(IniciarSessaoUso, OpeningMakesItsCallsInTheirOrder) {
  const ScopedClock clock(kNow);
  EXPECT_THAT(
      calls_of([&] { return base().Iniciar_Sessao_Uso(kUsuario, "CAIXA01", kVendas); }),
      ElementsAre("execute " + std::string(kQuery), "begin", "call atualoid [null]", "commit",
                  "execute Select Delta from controlaoid", "describe sessaodeuso",
                  "execute insert into sessaodeuso (TERMINO,INICIO,SITUACAO,OID) values (?,?,?,?) "
                  "[null, 05/03/2008 14:07:09, 1, 1000]",
                  "describe sessaoaplicativo",
                  "execute insert into sessaoaplicativo (RSESSAODEUSO,RAPLICATIVO,RUSUARIO,"
                  "ESTACAO,INICIO,TERMINO,OID) values (?,?,?,?,?,?,?) [1000, 30, 9, 'CAIXA01', "
                  "05/03/2008 14:07:09, null, 1001]"));
  EXPECT_EQ(sSQL(), kQuery);
  EXPECT_EQ(conn().LastSQL(), "select * from sessaoaplicativo");
}

TEST_P(IniciarSessaoUso, JoiningAsksOnce) {
  add_open(800, 900, kEstoque);
  EXPECT_THAT(calls_of([&] { return base().Iniciar_Sessao_Uso(kUsuario, "CAIXA01", kVendas); }),
              ElementsAre("execute " + std::string(kQuery)));
}

class FinalizarSessaoUso : public UsageSessions {
 protected:
  void SetUp() override {
    UsageSessions::SetUp();
    if (IsSkipped()) return;
    add_open(800, 900, kVendas);
  }
};
PELM_ON_EVERY_ENGINE(FinalizarSessaoUso);

TEST_P(FinalizarSessaoUso, ClosesTheApplicationAndItsUsageSession) {
  const ScopedClock clock(kNow);
  EXPECT_TRUE(base().Finalizar_Sessao_Uso(900));
  EXPECT_THAT(usage(), ElementsAre("800|05/03/2008 08:00:00|05/03/2008 14:07:09|2"));
  EXPECT_THAT(applications(),
              ElementsAre("900|800|30|9|CAIXA01|" + std::string(kEight) + "|05/03/2008 14:07:09"));
  EXPECT_TRUE(is_idle());
}

TEST_P(FinalizarSessaoUso, StoresWhateverReasonItIsGiven) {
  base().Finalizar_Sessao_Uso(900, -32768);
  EXPECT_EQ(row("select SITUACAO from sessaodeuso"), "-32768");
}

TEST_P(FinalizarSessaoUso, AnUnknownOrClosedOneChangesNothing) {
  for (const Oid unknown : {999, 800, 0, -1}) {
    EXPECT_TRUE(base().Finalizar_Sessao_Uso(unknown));
    EXPECT_THAT(usage(), ElementsAre("800|05/03/2008 08:00:00|null|1"));
  }
  {
    const ScopedClock clock(kNow);
    base().Finalizar_Sessao_Uso(900, 3);
  }
  const std::vector<std::string> closed = usage();
  EXPECT_TRUE(base().Finalizar_Sessao_Uso(900, 4));
  EXPECT_EQ(usage(), closed);
  EXPECT_TRUE(is_idle());
}

TEST_P(FinalizarSessaoUso, ClosesTheUsageSessionThoughOtherApplicationsAreOpen) {
  add_application(800, 901, kEstoque);
  base().Finalizar_Sessao_Uso(900);
  EXPECT_EQ(row("select SITUACAO from sessaodeuso"), "2");
  EXPECT_EQ(row("select TERMINO from sessaoaplicativo where OID = 901"), "null");
}

TEST_P(FinalizarSessaoUso, AUsageSessionIsClosedOnce) {
  add_application(800, 901, kEstoque);
  base().Finalizar_Sessao_Uso(900, 3);
  const std::vector<std::string> closed = usage();
  EXPECT_TRUE(base().Finalizar_Sessao_Uso(901, 4));  // kept: its last Update is without a row
  EXPECT_EQ(usage(), closed);
  EXPECT_NE(row("select TERMINO from sessaoaplicativo where OID = 901"), "null");
  EXPECT_TRUE(is_idle());
}

TEST_P(FinalizarSessaoUso, ClearsTheSharedText) {
  MensagemErro() = "Aditivo inexistente.";
  base().Finalizar_Sessao_Uso(999);
  EXPECT_EQ(MensagemErro(), "");
}

TEST_P(FinalizarSessaoUso, ClearsTheSharedTextBeforeItFails) {
  MensagemErro() = "Aditivo inexistente.";
  run("drop table sessaoaplicativo");
  EXPECT_THAT(raised([&] { base().Finalizar_Sessao_Uso(900); }),
              Raised(error_number::kNoTable, of_base("Finalizar_Sessao_Uso"), testing::_));
  EXPECT_EQ(MensagemErro(), "");
}

TEST_P(FinalizarSessaoUso, WithoutAUsageSessionRaises94AndStaysOpen) {
  run("update sessaoaplicativo set RSESSAODEUSO = null");
  EXPECT_THAT(raised([&] { base().Finalizar_Sessao_Uso(900); }),
              Raised(error_number::kInvalidUseOfNull, of_base("Finalizar_Sessao_Uso")));
  EXPECT_EQ(row("select TERMINO from sessaoaplicativo"), "null");
  EXPECT_TRUE(is_idle());
}

TEST_P(FinalizarSessaoUso, NullsInWhatIsNotUsedRaiseNothing) {
  run("update sessaoaplicativo set RAPLICATIVO = null, ESTACAO = null, RUSUARIO = null");
  EXPECT_TRUE(base().Finalizar_Sessao_Uso(900));
  EXPECT_EQ(row("select SITUACAO from sessaodeuso"), "2");
}

TEST_P(FinalizarSessaoUso, WhatIsNotUsedIsReadAllTheSame) {
  for (const std::string column : {"RAPLICATIVO", "ESTACAO"}) {
    run("alter table sessaoaplicativo rename column " + column + " to OUTRA");
    EXPECT_THAT(raised([&] { base().Finalizar_Sessao_Uso(900); }),
                Raised(error_number::kItemNotFound, of_base("Finalizar_Sessao_Uso"), testing::_))
        << column;
    EXPECT_EQ(row("select TERMINO from sessaoaplicativo"), "null");
    EXPECT_TRUE(is_idle());
    run("alter table sessaoaplicativo rename column OUTRA to " + column);
  }
}

TEST_P(FinalizarSessaoUso, ReadsTheClockForEachRow) {
  int second = 0;
  const ScopedClock clock([&] { return Date::from_civil({2008, 3, 5, 14, 0, second++}); });
  base().Finalizar_Sessao_Uso(900);
  EXPECT_EQ(row("select TERMINO from sessaoaplicativo"), "05/03/2008 14:00:00");
  EXPECT_EQ(row("select TERMINO from sessaodeuso"), "05/03/2008 14:00:01");
}

TEST_P(FinalizarSessaoUso, MakesItsCallsInTheirOrder) {
  const ScopedClock clock(kNow);
  const std::vector<std::string> calls = calls_of([&] { return base().Finalizar_Sessao_Uso(900); });
  ASSERT_EQ(calls.size(), 6U);
  EXPECT_EQ(calls[0], "execute SELECT * FROM sessaoaplicativo WHERE TERMINO IS NULL AND OID = 900");
  EXPECT_THAT(calls[2],
              testing::StartsWith("execute update sessaoaplicativo set TERMINO = ? where OID = ?"));
  EXPECT_EQ(calls[3], "execute SELECT * FROM sessaodeuso WHERE oid = 800 AND TERMINO IS NULL");
  EXPECT_THAT(
      calls[5],
      testing::StartsWith("execute update sessaodeuso set TERMINO = ?, SITUACAO = ? where OID = "));
  EXPECT_EQ(sSQL(), "SELECT * FROM sessaodeuso WHERE oid = 800 AND TERMINO IS NULL");
}

TEST_P(FinalizarSessaoUso, AnUnknownOneAsksOnce) {
  EXPECT_THAT(
      calls_of([&] { return base().Finalizar_Sessao_Uso(-5); }),
      ElementsAre("execute SELECT * FROM sessaoaplicativo WHERE TERMINO IS NULL AND OID = -5"));
}

}  // namespace
}  // namespace pelm
