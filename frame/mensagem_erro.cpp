// Raising the component's own error.
#include "frame/mensagem_erro.h"

#include "frame/thread_slots.h"
#include "pelm/error.h"

namespace pelm::frame {

void raise_own_error(std::string_view description) {
  thread_slots().MensagemErro = description;
  raise_mensagem_erro();
}

void raise_mensagem_erro() {
  throw Error(error_number::kComponent, {}, thread_slots().MensagemErro);
}

}  // namespace pelm::frame
