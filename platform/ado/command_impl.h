/// What a command shares with the record set that is opened from it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "pelm/ado/command.h"
#include "platform/ado/connection_impl.h"
#include "platform/ado/statement.h"

namespace pelm::ado {

class RecordsetImpl;

class CommandImpl final : private Attached {
 public:
  static CommandImpl& of(const Command& command) { return *command.impl_; }
  static constexpr std::int32_t kDefaultTimeout = 30;  ///< seconds

  CommandImpl() = default;
  CommandImpl(const CommandImpl&) = delete;
  CommandImpl& operator=(const CommandImpl&) = delete;
  ~CommandImpl() { detach(); }

  void attach(std::shared_ptr<Connection> connection);
  const std::shared_ptr<Connection>& connection() const noexcept { return connection_; }

  /// Runs the command and puts its rows into a closed record set; output parameters receive their
  /// values. Returns the count of changed rows or -1. Raises 3709 with `asked` as source.
  std::int32_t run_into(RecordsetImpl& rows, std::string_view asked,
                        std::int32_t options = adOptionUnspecified);

  std::string shown() const;

  // The properties, as a page set them.
  std::string text;
  CommandTypeEnum type = adCmdUnknown;
  std::int32_t timeout = kDefaultTimeout;
  std::vector<std::shared_ptr<Parameter>> parameters;
  bool has_run = false;  // with this text and type

 private:
  void connection_closes() noexcept override { connection_.reset(); }
  void detach() noexcept;
  std::vector<ProcedureArgument> arguments() const;
  void take_output(const std::vector<ProcedureArgument>& arguments) const;

  std::shared_ptr<Connection> connection_;
};

}  // namespace pelm::ado
