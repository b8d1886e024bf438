/// The component's shared objects of this thread, open on a database of a measurement.
#pragma once

#include <memory>

#include "bench/crm_database.h"
#include "frame/mod_principal.h"
#include "pelm/cmain.h"
#include "pelm/conn.h"

namespace pelm::bench {

/// Until the next call takes them. No range of OIDs is left from the one before.
inline std::shared_ptr<CMain> open_component(const CrmDatabase& database) {
  frame::Main();
  auto main = std::make_shared<CMain>();
  const auto conn = main->CConn();
  conn->CloseConn();
  conn->Conex(nullptr);
  conn->ConfigureConn(false, database.connection_string());
  conn->OpenConn();
  return main;
}

}  // namespace pelm::bench
