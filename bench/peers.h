/// The libraries that people would pick instead, per call as their users write them and with their
/// statements reused. Which of them there are is the build's affair.
#pragma once

#include "bench/operations.h"

namespace pelm::bench {

Operations soci_per_call(const CrmDatabase& database);
Operations soci_reused(const CrmDatabase& database);
Operations poco_per_call(const CrmDatabase& database);
Operations poco_reused(const CrmDatabase& database);
Operations qt_per_call(const CrmDatabase& database);
Operations qt_reused(const CrmDatabase& database);
Operations sqlitecpp_per_call(const CrmDatabase& database);
Operations sqlitecpp_reused(const CrmDatabase& database);

}  // namespace pelm::bench
