// Options of statements and the texts that commands report.
#include "platform/ado/statement.h"

namespace pelm::ado {

CommandTypeEnum command_type_of(std::int32_t options) noexcept {
  if (options == adOptionUnspecified) return adCmdUnknown;
  for (const CommandTypeEnum kind : {adCmdText, adCmdTable, adCmdStoredProc, adCmdTableDirect}) {
    if ((options & kind) != 0) return kind;
  }
  return adCmdUnknown;
}

bool has_option(std::int32_t options, std::int32_t option) noexcept {
  return options != adOptionUnspecified && (options & option) != 0;
}

std::string shown_text(std::string_view text, CommandTypeEnum kind,
                       std::span<const ProcedureArgument> called_with, bool called) {
  std::string shown;
  show_text(shown, text, kind, called_with, called);
  return shown;
}

void show_text(std::string& shown, std::string_view text, CommandTypeEnum kind,
               std::span<const ProcedureArgument> called_with, bool called) {
  if (kind == adCmdTable) {
    constexpr std::string_view kAll = "select * from ";
    shown.reserve(kAll.size() + text.size());
    shown.assign(kAll).append(text);
    return;
  }
  if (kind != adCmdStoredProc || !called) {
    shown = text;
    return;
  }
  const bool returns = !called_with.empty() && called_with[0].direction == adParamReturnValue;
  shown = returns ? "{ ? = call " : "{ call ";
  shown += text;
  std::string_view separator = "(";
  for (std::size_t i = returns ? 1 : 0; i < called_with.size(); ++i) {
    shown += separator;
    shown += '?';
    separator = ", ";
  }
  if (separator == ", ") shown += ')';
  shown += " }";
}

}  // namespace pelm::ado
