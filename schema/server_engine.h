/// Whose scripts belong to an open database.
#pragma once

#include <string>

namespace pelm::ado {
class Connection;
}

namespace pelm {

/// One of `schema_engines()`, found by asking the database itself; empty where none fits.
std::string engine_of(ado::Connection& connection);

}  // namespace pelm
