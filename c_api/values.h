/// Values on both sides of the C interface.
#pragma once

#include <cstddef>
#include <memory_resource>
#include <vector>

#include "automation/dispatch.h"
#include "pelm/pelm_c.h"
#include "pelm/variant.h"

namespace pelm::c_api {

/// Copies; absent for PELM_ABSENT. Raises type mismatch (13) for an unknown type, overflow (6) for
/// a number outside its type.
OptionalArg from_c(const pelm_value& value);
/// Into an empty vector, with room for `more` behind them.
void from_c(const pelm_value* values, std::size_t count, std::pmr::vector<OptionalArg>& result,
            std::size_t more = 0);

/// A value that its receiver owns and clears.
pelm_value to_c(const Variant& value);

/// Frees what `to_c` made.
void clear(pelm_value& value) noexcept;

}  // namespace pelm::c_api
