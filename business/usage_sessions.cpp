// Usage sessions: who uses which application from which workstation.
#include <string>

#include "business/scratch_recordset.h"
#include "frame/error_trap.h"
#include "frame/thread_slots.h"
#include "pelm/base.h"
#include "pelm/conn.h"
#include "pelm/conversions.h"
#include "platform/value/clock.h"

namespace pelm {

using business::ScratchRecordset;
using frame::error_trap;
using frame::shared_conn;

namespace {

constexpr std::int16_t kSessaoAberta = 1;

std::string joinable_session_query(std::string_view workstation, Oid application) {
  const std::string station(workstation);  // kept: not escaped
  const std::string number = std::to_string(application);
  return "SELECT SU.OID "
         "FROM SESSAODEUSO SU, SESSAOAPLICATIVO SA "
         "WHERE "
         "SU.OID = SA.RSESSAODEUSO "
         "AND SU.OID > 7 "
         "AND SU.SITUACAO = 1 "
         "AND SU.TERMINO IS NULL "
         "AND SA.ESTACAO = '" +
         station +
         "' "
         "AND SA.RAPLICATIVO != " +
         number +
         " "
         "AND SU.OID NOT IN (SELECT RSESSAODEUSO "
         "FROM SESSAOAPLICATIVO A "
         "WHERE "
         "A.ESTACAO = '" +
         station +
         "' "
         "AND A.RAPLICATIVO = " +
         number +
         " "
         "AND A.TERMINO IS NULL)";
}

}  // namespace

Oid Base::Iniciar_Sessao_Uso(Oid rUsuario, std::string_view Estacao, Oid OidAplicativo) {
  return error_trap("Base", "Iniciar_Sessao_Uso", [&] {
    sSQL = joinable_session_query(Estacao, OidAplicativo);
    {
      const ScratchRecordset open_session(rsBase, shared_conn().RunSQL(sSQL));
      if (!open_session->Eof()) {
        const Oid joined = to_long(open_session->Fields("oid").Value());
        open_session->Close();
        return joined;  // kept: here the usage session's OID, below the application session's
      }
      open_session->Close();
    }

    const Oid usage_session = Gerar_Oid();
    {
      const ScratchRecordset sessaodeuso(
          rsBase,
          shared_conn().OpenTable("sessaodeuso", ado::adOpenDynamic, ado::adLockOptimistic));
      sessaodeuso->AddNew();
      sessaodeuso->Fields("TERMINO") = Null{};
      sessaodeuso->Fields("INICIO") = clock_now();
      sessaodeuso->Fields("SITUACAO") = kSessaoAberta;
      sessaodeuso->Fields("OID") = usage_session;
      sessaodeuso->Update();
      sessaodeuso->Close();
    }

    const Oid application_session = Gerar_Oid();
    const ScratchRecordset sessaoaplicativo(
        rsBase,
        shared_conn().OpenTable("sessaoaplicativo", ado::adOpenDynamic, ado::adLockOptimistic));
    sessaoaplicativo->AddNew();
    sessaoaplicativo->Fields("RSESSAODEUSO") = usage_session;
    sessaoaplicativo->Fields("rAplicativo") = OidAplicativo;
    sessaoaplicativo->Fields("RUSUARIO") = rUsuario;
    sessaoaplicativo->Fields("ESTACAO") = Estacao;
    sessaoaplicativo->Fields("INICIO") = clock_now();
    sessaoaplicativo->Fields("TERMINO") = Null{};
    sessaoaplicativo->Fields("OID") = application_session;
    sessaoaplicativo->Update();
    sessaoaplicativo->Close();
    return application_session;
  });
}

bool Base::Finalizar_Sessao_Uso(Oid OIDSessaoApp, std::int16_t Motivo) {
  return error_trap("Base", "Finalizar_Sessao_Uso", [&] {
    frame::thread_slots().MensagemErro.clear();

    Oid usage_session = 0;
    sSQL =
        "SELECT * FROM sessaoaplicativo "
        "WHERE "
        "TERMINO IS NULL "
        "AND OID = " +
        std::to_string(OIDSessaoApp);
    {
      const ScratchRecordset application_session(
          rsBase, shared_conn().RunSQL(sSQL, ado::adOpenDynamic, ado::adLockOptimistic));
      if (application_session->Eof()) {
        application_session->Close();
        return true;
      }
      application_session->Fields("TERMINO") = clock_now();
      // kept: the application and the workstation are read, and used for nothing
      static_cast<void>(application_session->Fields("RAPLICATIVO").Value());
      usage_session = to_long(application_session->Fields("RSESSAODEUSO").Value());
      static_cast<void>(application_session->Fields("ESTACAO").Value());
      application_session->Update();
      application_session->Close();
    }

    sSQL =
        "SELECT * FROM sessaodeuso "
        "WHERE "
        "oid = " +
        std::to_string(usage_session) + " AND TERMINO IS NULL";
    const ScratchRecordset whole_session(
        rsBase, shared_conn().RunSQL(sSQL, ado::adOpenDynamic, ado::adLockOptimistic));
    if (!whole_session->Eof()) {
      whole_session->Fields("TERMINO") = clock_now();
      whole_session->Fields("SITUACAO") = Motivo;
    }
    whole_session->Update();  // kept: also without a row, where it does nothing
    whole_session->Close();
    return true;
  });
}

}  // namespace pelm
