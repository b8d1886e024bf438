/// The component as a page's script uses it.
#pragma once

#include "bench/operations.h"

namespace pelm::bench {

/// Its `many` is a page that opens its connection, does the work and closes it; the other functions
/// are a page each.
Operations page_operations(const CrmDatabase& database);

}  // namespace pelm::bench
