// Commands: their text as reported, their parameters, running them.
#include "pelm/ado/command.h"

#include <algorithm>
#include <array>
#include <utility>

#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "pelm/error.h"
#include "platform/ado/command_impl.h"
#include "platform/ado/error_source.h"
#include "platform/ado/field_conversion.h"
#include "platform/ado/name_compare.h"
#include "platform/ado/recordset_impl.h"
#include "platform/ado/spare_recordsets.h"

namespace pelm::ado {
namespace {

void check_argument(bool good) {
  if (!good) raise_error(error_number::kWrongArguments, kCommandSource);
}

bool is_input(ParameterDirectionEnum direction) noexcept {
  return direction == adParamInput || direction == adParamInputOutput;
}

Column as_column(const Parameter& p) {
  return {.name = p.Name, .type = p.Type, .size = std::max(p.Size, 0)};
}

Variant input_value(const Parameter& p) {
  if (!is_input(p.Direction) || p.Value.is_empty()) return Null{};
  try {
    return converted_for(as_column(p), p.Value);
  } catch (const Error& e) {
    const bool wrong_value =
        e.number() == error_number::kCantConvertValue || e.number() == error_number::kDataOverflow;
    if (!wrong_value) throw;
    raise_error(error_number::kWrongValueType, kCommandSource, "(" + p.Name + ")");
  }
}

/// A driver may return a number as text: the parameter's own type decides, where it fits.
Variant output_value(const Parameter& p, const Variant& returned) {
  try {
    return converted_for({.name = p.Name, .type = p.Type}, returned);
  } catch (const Error&) {
    return returned;
  }
}

}  // namespace

void CommandImpl::attach(std::shared_ptr<Connection> connection) {
  if (connection != nullptr) {
    ConnectionImpl::opened(connection.get(), kCommandSource).attach(*this);
  }
  detach();
  connection_ = std::move(connection);
}

void CommandImpl::detach() noexcept {
  if (connection_ != nullptr) ConnectionImpl::of(*connection_).detach(*this);
}

std::vector<ProcedureArgument> CommandImpl::arguments() const {
  std::vector<ProcedureArgument> result;
  result.reserve(parameters.size());
  for (const auto& p : parameters) {
    result.push_back({p->Name, p->Type, p->Direction, p->Size, input_value(*p)});
  }
  return result;
}

void CommandImpl::take_output(const std::vector<ProcedureArgument>& arguments) const {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    Parameter& p = *parameters[i];
    if (p.Direction != adParamInput) p.Value = output_value(p, arguments[i].value);
  }
}

std::int32_t CommandImpl::run_into(RecordsetImpl& rows, std::string_view asked,
                                   std::int32_t options) {
  ConnectionImpl& link = ConnectionImpl::opened(connection_.get(), asked);
  std::vector<ProcedureArgument> arguments = this->arguments();
  std::vector<Variant> values;
  for (const ProcedureArgument& a : arguments) {
    if (is_input(a.direction)) values.push_back(a.value);
  }
  Statement statement;
  statement.text = text;
  statement.kind = type;
  if (type == adCmdUnknown) statement.kind = command_type_of(options);
  statement.values = values;
  statement.arguments = arguments;
  statement.timeout = timeout;
  statement.keep_rows = !has_option(options, adExecuteNoRecords);
  const std::int32_t affected = rows.run(link, connection_, statement);
  has_run = true;
  take_output(arguments);
  return affected;
}

std::string CommandImpl::shown() const {
  if (type != adCmdStoredProc || !has_run) return shown_text(text, type);
  std::vector<ProcedureArgument> shapes;
  shapes.reserve(parameters.size());
  for (const auto& p : parameters) shapes.push_back({.direction = p->Direction});
  return shown_text(text, type, shapes, true);
}

Command::Command() : impl_(std::make_unique<CommandImpl>()) {}

Command::~Command() = default;

const std::shared_ptr<Connection>& Command::ActiveConnection() const { return impl_->connection(); }

void Command::ActiveConnection(std::shared_ptr<Connection> connection) {
  impl_->attach(std::move(connection));
}

std::string Command::CommandText() const { return impl_->shown(); }

void Command::CommandText(std::string text) {
  impl_->text = std::move(text);
  impl_->has_run = false;
}

CommandTypeEnum Command::CommandType() const { return impl_->type; }

void Command::CommandType(CommandTypeEnum type) {
  static constexpr std::array kTypes = {adCmdText, adCmdTable, adCmdStoredProc, adCmdUnknown,
                                        adCmdTableDirect};
  check_argument(std::ranges::find(kTypes, type) != kTypes.end());
  impl_->type = type;
  impl_->has_run = false;
}

std::int32_t Command::CommandTimeout() const { return impl_->timeout; }

void Command::CommandTimeout(std::int32_t seconds) {
  check_argument(seconds >= 0);
  impl_->timeout = seconds;
}

std::shared_ptr<Parameter> Command::CreateParameter(std::string_view name, DataTypeEnum type,
                                                    ParameterDirectionEnum direction,
                                                    std::int32_t size, Variant value) const {
  auto parameter = std::make_shared<Parameter>();
  parameter->Name = name;
  parameter->Type = type;
  parameter->Direction = direction;
  parameter->Size = size;
  parameter->Value = std::move(value);
  return parameter;
}

void Command::Append(std::shared_ptr<Parameter> parameter) {
  check_argument(parameter != nullptr);
  impl_->parameters.push_back(std::move(parameter));
}

const std::vector<std::shared_ptr<Parameter>>& Command::Parameters() const {
  return impl_->parameters;
}

Parameter& Command::Parameters(std::string_view name) const {
  for (const auto& p : impl_->parameters) {
    if (same_name(p->Name, name)) return *p;
  }
  raise_error(error_number::kItemNotFound, kCommandSource, "(" + std::string(name) + ")");
}

std::shared_ptr<Recordset> Command::Execute(std::int32_t* records_affected, std::int32_t options) {
  auto rows = make_recordset();
  const std::int32_t affected = impl_->run_into(RecordsetImpl::of(*rows), kCommandSource, options);
  if (records_affected != nullptr) *records_affected = affected;
  return rows;
}

}  // namespace pelm::ado
