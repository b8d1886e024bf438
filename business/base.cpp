// What every business operation rests on: the object itself and new OIDs.
#include "pelm/base.h"

#include "frame/mod_principal.h"
#include "frame/thread_slots.h"
#include "identity/manipula_oid.h"

namespace pelm {

Base::Base() { frame::start_thread(); }

Oid Base::Gerar_Oid() {
  // Started here, as the object may have come from another thread.
  identity::ManipulaOID& allocator = *frame::start_thread().oid_allocator;
  if (allocator.TemOID()) return allocator.IncrementaOID();
  return allocator.ObtemFaixaOID() ? allocator.OID() : 0;
}

}  // namespace pelm
