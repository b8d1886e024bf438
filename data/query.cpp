// Running SQL text and opening tables on the main connection.
#include <memory>
#include <utility>

#include "data/sql_translation.h"
#include "frame/error_trap.h"
#include "frame/mensagem_erro.h"
#include "pelm/ado/command.h"
#include "pelm/conn.h"

namespace pelm {
namespace {

constexpr std::int16_t kOracle = 2;

std::shared_ptr<ado::Command> command_on(const std::shared_ptr<ado::Connection>& connection,
                                         ado::CommandTypeEnum type, std::string text) {
  auto command = std::make_shared<ado::Command>();
  command->ActiveConnection(connection);
  command->CommandType(type);
  command->CommandText(std::move(text));
  return command;
}

}  // namespace

std::shared_ptr<ado::Recordset> Conn::RunSQL(std::string& Query, ado::CursorTypeEnum CursorType,
                                             ado::LockTypeEnum LockType,
                                             ado::CursorLocationEnum CursorLocation,
                                             std::int32_t MaxRecords, std::int32_t CacheSize,
                                             std::int32_t PageSize) {
  return frame::error_trap("Conn", "RunSQL", [&] {
    if (Database_ == kOracle && !traduzsql(Query, "Oracle")) {
      frame::raise_mensagem_erro();
    }
    auto records = std::make_shared<ado::Recordset>();
    const auto command = command_on(Conex_, ado::adCmdText, Query);
    LastSQL_ = Query;
    records->CursorLocation(CursorLocation);
    if (CursorLocation == ado::adUseClient) {
      records->PageSize(PageSize);
      records->CacheSize(CacheSize);
    }
    records->MaxRecords(MaxRecords);
    records->Open(command, CursorType, LockType, ado::adOptionUnspecified);
    return records;
  });
}

std::shared_ptr<ado::Recordset> Conn::OpenTable(std::string_view pTableName,
                                                ado::CursorTypeEnum pCursorType,
                                                ado::LockTypeEnum pLockType) {
  return frame::error_trap("Conn", "OpenTable", [&] {
    auto records = std::make_shared<ado::Recordset>();
    const auto command = command_on(Conex_, ado::adCmdTable, std::string(pTableName));
    LastSQL_ = command->CommandText();
    records->Open(command, pCursorType, pLockType, ado::adOptionUnspecified);
    return records;
  });
}

bool Conn::traduzsql(std::string& psqlstat, std::string_view pservidor) {
  return frame::error_trap("Conn", "traduzsql",
                           [&] { return data::translate_sql(psqlstat, pservidor); });
}

}  // namespace pelm
