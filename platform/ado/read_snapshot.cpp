// Beginning and ending a stretch of reading.
#include "platform/ado/read_snapshot.h"

#include <utility>

#include "platform/ado/connection_impl.h"

namespace pelm::ado {

ReadSnapshot::ReadSnapshot(std::shared_ptr<Connection> connection) {
  if (connection == nullptr) return;
  ConnectionImpl& link = ConnectionImpl::of(*connection);
  if (link.begin_reading()) connection_ = std::move(connection);
}

ReadSnapshot::~ReadSnapshot() {
  if (connection_ != nullptr) ConnectionImpl::of(*connection_).end_reading();
}

}  // namespace pelm::ado
