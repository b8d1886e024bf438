/// The server's functions, as functions of the embedded engine.
#pragma once

#include <span>

#include "platform/ado/sqlite/function_call.h"

namespace pelm::ado::sqlite {

/// Each subject's table.
std::span<const Function> text_functions();
std::span<const Function> number_functions();
std::span<const Function> date_functions();
std::span<const Function> conversion_functions();

/// All of them and the collations, on one connection. `session` must outlive it.
void register_all_functions(sqlite3* db, SessionState& session);

}  // namespace pelm::ado::sqlite
