// Start-up of a thread: the OID allocator is there before the first object is.
#include "frame/mod_principal.h"

#include <memory>

#include "frame/thread_slots.h"
#include "identity/manipula_oid.h"

namespace pelm::frame {

ThreadSlots& start_thread() {
  ThreadSlots& slots = thread_slots();
  if (!slots.oid_allocator) Main();
  return slots;
}

void Main() { thread_slots().oid_allocator = std::make_shared<identity::ManipulaOID>(); }

}  // namespace pelm::frame
