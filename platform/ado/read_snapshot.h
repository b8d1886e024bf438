/// A stretch of reading under one view of the database.
#pragma once

#include <memory>

#include "pelm/ado/connection.h"

namespace pelm::ado {

/// While it lives, what is read over a connection may all be as the first statement found it: the
/// embedded engine then takes its lock once and not for each statement. Whatever writes over the
/// connection, or begins a transaction on it, ends that view first. Nothing happens on a database
/// server, whose statements go on one at a time, within a transaction, within another snapshot,
/// and on a connection that is null or closed. Held for the length of an operation, never while
/// anybody is waited for.
class ReadSnapshot {
 public:
  /// Raises what the engine raises.
  explicit ReadSnapshot(std::shared_ptr<Connection> connection);
  ReadSnapshot(const ReadSnapshot&) = delete;
  ReadSnapshot& operator=(const ReadSnapshot&) = delete;
  ~ReadSnapshot();

 private:
  std::shared_ptr<Connection> connection_;  // null: there is nothing to end
};

}  // namespace pelm::ado
