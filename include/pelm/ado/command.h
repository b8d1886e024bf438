/// A statement, a table or a stored procedure to run on a connection.
///
///     pelm::ado::Command cmd;
///     cmd.ActiveConnection(connection);
///     cmd.CommandType(adCmdStoredProc);
///     cmd.CommandText("atualoid");
///     cmd.Append(cmd.CreateParameter("@novooid", adInteger, adParamOutput, 0));
///     cmd.Execute();
///     std::int32_t last = pelm::to_long(cmd.Parameters("@novooid").Value);
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "pelm/ado/constants.h"
#include "pelm/object.h"
#include "pelm/variant.h"

namespace pelm::ado {

class CommandImpl;
class Connection;
class Recordset;

/// One argument of a command. A plain value until it is appended.
struct Parameter : Object {
  std::string Name;
  DataTypeEnum Type = adVariant;
  ParameterDirectionEnum Direction = adParamInput;
  std::int32_t Size = 0;
  Variant Value;
};

class Command : public Object {
 public:
  Command();
  ~Command() override;

  /// Null detaches, and so does closing the connection. Raises 3709 for one that is closed.
  const std::shared_ptr<Connection>& ActiveConnection() const;
  void ActiveConnection(std::shared_ptr<Connection> connection);

  /// As the command will run it: a table command reports "select * from " and the table's name,
  /// a procedure reports its call form once run.
  std::string CommandText() const;
  void CommandText(std::string text);
  /// Default adCmdUnknown: a text that is nothing but a name is tried as a table, then as a
  /// procedure; any other runs as it is. Raises 3001 for an unknown type.
  CommandTypeEnum CommandType() const;
  void CommandType(CommandTypeEnum type);
  /// Seconds, 0 waits for ever; default 30, not taken from the connection. Raises 3001 below 0.
  std::int32_t CommandTimeout() const;
  void CommandTimeout(std::int32_t seconds);

  std::shared_ptr<Parameter> CreateParameter(std::string_view name = {},
                                             DataTypeEnum type = adVariant,
                                             ParameterDirectionEnum direction = adParamInput,
                                             std::int32_t size = 0, Variant value = {}) const;
  /// The n-th appended input parameter is the n-th `?` of a text. Raises 3001 for null.
  void Append(std::shared_ptr<Parameter> parameter);
  const std::vector<std::shared_ptr<Parameter>>& Parameters() const;
  /// By name without case. Raises 3265.
  Parameter& Parameters(std::string_view name) const;

  /// Runs it. Returns its rows (forward-only, read-only), or a closed record set when it has none;
  /// output parameters hold their results. Raises 3709 without an open connection, 3421 for a
  /// parameter whose value is not of its type.
  std::shared_ptr<Recordset> Execute(std::int32_t* records_affected = nullptr,
                                     std::int32_t options = adOptionUnspecified);

 private:
  friend class CommandImpl;
  std::unique_ptr<CommandImpl> impl_;
};

}  // namespace pelm::ado
