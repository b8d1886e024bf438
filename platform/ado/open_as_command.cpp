// A text opened as its own command would open it.
#include "platform/ado/open_as_command.h"

#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "platform/ado/command_impl.h"
#include "platform/ado/connection_impl.h"
#include "platform/ado/error_source.h"
#include "platform/ado/recordset_impl.h"

namespace pelm::ado {

void check_command_connection(const Connection* connection) {
  if (connection != nullptr) ConnectionImpl::opened(connection, kCommandSource);
}

void open_as_command(Recordset& records, const std::shared_ptr<Connection>& connection,
                     CommandTypeEnum kind, std::string_view text, CursorTypeEnum cursor_type,
                     LockTypeEnum lock_type) {
  RecordsetImpl& rows = RecordsetImpl::of(records);
  rows.check_closed();
  rows.set_types(cursor_type, lock_type);
  ConnectionImpl& link = ConnectionImpl::opened(connection.get(), kRecordsetSource);
  Statement statement;
  statement.text = text;
  statement.kind = kind;
  statement.timeout = CommandImpl::kDefaultTimeout;
  rows.run(link, connection, statement);
}

}  // namespace pelm::ado
