// Running SQL text and opening tables on the main connection.
#include <memory>

#include "data/sql_translation.h"
#include "frame/error_trap.h"
#include "frame/mensagem_erro.h"
#include "pelm/conn.h"
#include "platform/ado/open_as_command.h"
#include "platform/ado/spare_recordsets.h"
#include "platform/ado/statement.h"

namespace pelm {
namespace {

constexpr std::int16_t kOracle = 2;

}  // namespace

// Translated, its connection looked at, and noted, in this order.
void Conn::about_to_run(std::string& query) {
  if (Database_ == kOracle && !traduzsql(query, "Oracle")) frame::raise_mensagem_erro();
  ado::check_command_connection(Conex_.get());
  LastSQL_ = query;
}

std::shared_ptr<ado::Recordset> Conn::RunSQL(std::string& Query, ado::CursorTypeEnum CursorType,
                                             ado::LockTypeEnum LockType,
                                             ado::CursorLocationEnum CursorLocation,
                                             std::int32_t MaxRecords, std::int32_t CacheSize,
                                             std::int32_t PageSize) {
  return frame::error_trap("Conn", "RunSQL", [&] {
    about_to_run(Query);
    auto records = ado::make_recordset();
    records->CursorLocation(CursorLocation);
    if (CursorLocation == ado::adUseClient) {
      records->PageSize(PageSize);
      records->CacheSize(CacheSize);
    }
    records->MaxRecords(MaxRecords);
    ado::open_as_command(*records, Conex_, ado::adCmdText, Query, CursorType, LockType);
    return records;
  });
}

std::shared_ptr<ado::Recordset> Conn::OpenTable(std::string_view pTableName,
                                                ado::CursorTypeEnum pCursorType,
                                                ado::LockTypeEnum pLockType) {
  return frame::error_trap("Conn", "OpenTable", [&] {
    auto records = ado::make_recordset();
    ado::check_command_connection(Conex_.get());
    ado::show_text(LastSQL_, pTableName, ado::adCmdTable);
    ado::open_as_command(*records, Conex_, ado::adCmdTable, pTableName, pCursorType, pLockType);
    return records;
  });
}

bool Conn::traduzsql(std::string& psqlstat, std::string_view pservidor) {
  return frame::error_trap("Conn", "traduzsql",
                           [&] { return data::translate_sql(psqlstat, pservidor); });
}

}  // namespace pelm
