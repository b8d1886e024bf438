/// The component's tables on an engine.
#pragma once

#include "pelm/ado/connection.h"
#include "support/engine.h"

namespace pelm::test {

/// Makes what is not there yet: tables, views, procedures and the first rows.
void make_tables(ado::Connection& connection, const Engine& engine);

/// As if made anew, but for the tables, which stay.
void empty_tables(ado::Connection& connection, const Engine& engine);

}  // namespace pelm::test
