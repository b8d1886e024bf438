/// The open connection of the thread, for the statements that are run on it directly.
#pragma once

namespace pelm::ado {
class Connection;
}

namespace pelm::data {

/// `Conex` of the thread's shared `Conn`. Raises 91 when either is missing.
ado::Connection& shared_conex();

}  // namespace pelm::data
