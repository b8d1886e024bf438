// The per-thread shared slots.
#include "frame/thread_slots.h"

#include "pelm/error.h"

namespace pelm::frame {

ThreadSlots& thread_slots() noexcept {
  thread_local ThreadSlots slots;
  return slots;
}

Conn& shared_conn() {
  const std::shared_ptr<Conn>& conn = thread_slots().conn;
  if (!conn) raise_error(error_number::kObjectNotSet);
  return *conn;
}

}  // namespace pelm::frame
