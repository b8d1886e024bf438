// Statements run directly on the connection start here.
#include "data/shared_connection.h"

#include "frame/thread_slots.h"
#include "pelm/conn.h"
#include "pelm/error.h"

namespace pelm::data {

ado::Connection& shared_conex() {
  const auto& connection = frame::shared_conn().Conex();
  if (!connection) raise_error(error_number::kObjectNotSet);
  return *connection;
}

}  // namespace pelm::data
