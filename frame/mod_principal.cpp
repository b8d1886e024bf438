// Start-up of a thread: the OID allocator is there before the first object is.
#include "frame/mod_principal.h"

#include <memory>

#include "frame/thread_slots.h"
#include "identity/manipula_oid.h"

namespace pelm::frame {

void start_thread() {
  if (!thread_slots().oid_allocator) Main();
}

void Main() { thread_slots().oid_allocator = std::make_shared<identity::ManipulaOID>(); }

}  // namespace pelm::frame
