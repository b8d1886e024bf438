// Finding and running the scripts.
#include "schema/schema.h"

#include <memory>
#include <string>

#include "pelm/ado/connection.h"
#include "pelm/error.h"
#include "schema/batches.h"

namespace pelm {
namespace {

std::string known_engines() {
  std::string out;
  for (const std::string_view engine : schema_engines()) {
    out += (out.empty() ? "" : ", ") + std::string(engine);
  }
  return out;
}

void run(ado::Connection& connection, const SchemaScript& script) {
  try {
    for (const std::string& batch : batches(script.text)) connection.Execute(batch);
  } catch (const Error& e) {
    throw Error(e.number(), e.source(), std::string(script.name) + ": " + e.description(),
                e.diagnostics() == nullptr ? nullptr
                                           : std::make_shared<const Diagnostics>(*e.diagnostics()));
  }
}

// What made it necessary says more than what it may meet itself.
void roll_back(ado::Connection& connection) noexcept {
  try {
    connection.RollbackTrans();
  } catch (const Error&) {
    return;
  }
}

}  // namespace

void create_schema(ado::Connection& connection, std::string_view engine) {
  const auto scripts = schema_scripts(engine);
  if (scripts.empty()) {
    raise_error(error_number::kInvalidCall, kProjectSource,
                "engine \"" + std::string(engine) + "\"; known: " + known_engines());
  }
  if (connection.State() != ado::adStateOpen) raise_error(error_number::kInvalidConnection);
  connection.BeginTrans();
  try {
    for (const SchemaScript& script : scripts) run(connection, script);
    connection.CommitTrans();
  } catch (...) {
    roll_back(connection);
    throw;
  }
}

}  // namespace pelm
