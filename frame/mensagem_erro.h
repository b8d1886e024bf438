/// The component's own error 1001 and the shared text that describes it.
#pragma once

#include <string_view>

namespace pelm::frame {

/// Puts `description` into the thread's `MensagemErro` and raises 1001 with it, without a source:
/// the trap of the operation gives it one.
[[noreturn]] void raise_own_error(std::string_view description);

/// Raises 1001 described by `MensagemErro` as it stands, which may be an older text or none.
[[noreturn]] void raise_mensagem_erro();

}  // namespace pelm::frame
