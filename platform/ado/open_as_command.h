/// Opens a record set from a text as a command made for that text alone would, without making one:
/// nearly every query of a page is such a text.
#pragma once

#include <memory>
#include <string_view>

#include "pelm/ado/constants.h"

namespace pelm::ado {

class Connection;
class Recordset;

/// What assigning `Command::ActiveConnection` checks: null passes, one that is closed raises 3709.
void check_command_connection(const Connection* connection);

/// `records` is closed, `kind` adCmdText or adCmdTable. The time limit is a new command's own, not
/// the connection's. Raises as `Recordset::Open` from a command.
void open_as_command(Recordset& records, const std::shared_ptr<Connection>& connection,
                     CommandTypeEnum kind, std::string_view text, CursorTypeEnum cursor_type,
                     LockTypeEnum lock_type);

}  // namespace pelm::ado
