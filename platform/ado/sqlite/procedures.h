/// Stored procedures: scripts kept in the database itself.
///
/// They are rows of a table:
///
///     pelm_procedure(name, parameters, script)
///
/// `parameters` as a procedure's head declares them: "@de INTEGER, @novooid INTEGER OUTPUT".
/// `script`: statements parted by ";", in which @name is the value of an input. An output takes
/// the value of the result column of its name (with or without @) from the last statement that has
/// one. A call is all done or not at all.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "platform/ado/provider.h"

namespace pelm::ado::sqlite {

class SqliteSession;

/// Arguments are taken by name when each is named as a parameter, else in their order. Raises
/// kErrorsInCommand for a procedure that is missing and for arguments that do not fit.
void call_procedure(SqliteSession& session, std::string_view procedure,
                    std::span<ProcedureArgument> arguments);

/// EXEC name value, @name = value … and { call name(value, ?) }: gives the first rows there are.
std::unique_ptr<Cursor> call_from_text(SqliteSession& session, std::string_view sql,
                                       std::span<const Variant> values);

}  // namespace pelm::ado::sqlite
