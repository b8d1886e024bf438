/// SET statements: the server's session settings, accepted or refused by one table.
#pragma once

#include <span>

#include "platform/ado/sqlite/session_state.h"
#include "platform/ado/sqlite/tokenizer.h"

namespace pelm::ado::sqlite {

/// `tokens` begin with SET. Language and date format take effect; settings that an embedded engine
/// fulfils anyway are accepted; those that would change results are refused with kErrorsInCommand.
void apply_setting(std::span<const Token> tokens, SessionState& session);

}  // namespace pelm::ado::sqlite
