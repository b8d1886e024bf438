/// A text to run, as a command or a page gave it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pelm/ado/constants.h"
#include "pelm/variant.h"
#include "platform/ado/provider.h"

namespace pelm::ado {

struct Statement {
  std::string_view text;  ///< a statement, or the name of a table or procedure
  CommandTypeEnum kind = adCmdUnknown;
  std::span<const Variant> values;         ///< for the `?` of a statement
  std::span<ProcedureArgument> arguments;  ///< of a procedure
  std::int32_t timeout = 30;               ///< seconds, 0 waits for ever
  bool keep_rows = true;
};

/// The CommandTypeEnum within an `options` argument; adCmdUnknown when it says none.
CommandTypeEnum command_type_of(std::int32_t options) noexcept;
bool has_option(std::int32_t options, std::int32_t option) noexcept;

/// The text as a command reports it: a table as the statement that reads it, a procedure that was
/// called as its call; any other unchanged.
std::string shown_text(std::string_view text, CommandTypeEnum kind,
                       std::span<const ProcedureArgument> called_with = {}, bool called = false);
/// The same into a text that is there already, of which `text` must be no part.
void show_text(std::string& shown, std::string_view text, CommandTypeEnum kind,
               std::span<const ProcedureArgument> called_with = {}, bool called = false);

}  // namespace pelm::ado
