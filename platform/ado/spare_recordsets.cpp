// Keeping the memory of record sets for the next.
#include "platform/ado/spare_recordsets.h"

#include <utility>

#include "platform/value/thread_spares.h"

namespace pelm::ado {
namespace {

using Spares = ThreadSpares<std::unique_ptr<RecordsetImpl>, 4>;

}  // namespace

std::shared_ptr<Recordset> make_recordset() {
  return std::allocate_shared<Recordset>(SpareMemory<Recordset>());
}

std::unique_ptr<RecordsetImpl> take_recordset_impl() {
  std::unique_ptr<RecordsetImpl> spare = Spares::take();
  return spare != nullptr ? std::move(spare) : std::make_unique<RecordsetImpl>();
}

void keep_recordset_impl(std::unique_ptr<RecordsetImpl> impl) noexcept {
  impl->renew();
  Spares::keep(std::move(impl));
}

}  // namespace pelm::ado
