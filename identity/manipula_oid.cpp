// Reserving ranges of OIDs and handing them out one by one.
#include "identity/manipula_oid.h"

#include <array>
#include <memory>
#include <string_view>

#include "frame/error_trap.h"
#include "frame/thread_slots.h"
#include "pelm/ado/command.h"
#include "pelm/ado/connection.h"
#include "pelm/conn.h"
#include "pelm/conversions.h"
#include "pelm/error.h"
#include "pelm/variant.h"
#include "platform/ado/read_rows.h"

namespace pelm::identity {
namespace {

/// UltimoOID - Delta + 1 in 32 bits, step by step as the platform reckons.
pelm::Oid first_of_range(pelm::Oid last, std::int16_t size) {
  pelm::Oid result = 0;
  if (__builtin_sub_overflow(last, size, &result) || __builtin_add_overflow(result, 1, &result)) {
    raise_error(error_number::kOverflow);
  }
  return result;
}

/// A connection of the allocator's own: independent of what the page does on `Conex`. Its
/// transaction, if still open, is rolled back when it goes.
std::shared_ptr<ado::Connection> private_connection(ado::ConnectModeEnum mode) {
  auto connection = std::make_shared<ado::Connection>();
  connection->ConnectionString(frame::shared_conn().ODBC_STR());
  connection->Mode(mode);
  connection->CursorLocation(ado::adUseServer);
  return connection;
}

pelm::Oid run_atualoid(const std::shared_ptr<ado::Connection>& connection) {
  ado::Command command;
  command.ActiveConnection(connection);
  command.CommandType(ado::adCmdStoredProc);
  command.CommandText("atualoid");
  command.Append(command.CreateParameter("@novooid", ado::adInteger, ado::adParamOutput, 0));
  command.Execute();
  return to_long(command.Parameters("@novooid").Value);
}

}  // namespace

pelm::Oid ManipulaOID::IncrementaOID() {
  if (UltimoOID_ > OID_) return ++OID_;
  if (UltimoOID_ == OID_) {
    TemOID_ = false;
    return OID_;  // kept: the last OID of a range is handed out twice
  }
  return 0;
}

bool ManipulaOID::ObtemFaixaOID() {
  return frame::error_trap("ManipulaOID", "ObtemFaixaOID", [&] {
    const auto connection = private_connection(ado::adModeReadWrite);
    connection->IsolationLevel(ado::adXactReadCommitted);
    connection->Open();
    connection->BeginTrans();

    UltimoOID_ = run_atualoid(connection);
    if (UltimoOID_ > 0) {
      connection->CommitTrans();
    } else {
      connection->RollbackTrans();
    }

    bool reserved = false;
    if (ObtemDelta()) {
      OID_ = first_of_range(UltimoOID_, Delta_);
      TemOID_ = true;
      reserved = true;
    }
    connection->Close();
    return reserved;
  });
}

bool ManipulaOID::ObtemDelta() {
  return frame::error_trap("ManipulaOID", "ObtemDelta", [&] {
    const auto connection = private_connection(ado::adModeRead);
    connection->Open();
    static constexpr std::array<std::string_view, 1> kColumns = {"Delta"};
    Variant size;
    const bool found =
        ado::read_first_row(connection, "Select Delta from controlaoid", kColumns, {&size, 1});
    if (found) Delta_ = to_integer(size);
    connection->Close();
    return found;
  });
}

}  // namespace pelm::identity
