/// Which column of a result a name means.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "platform/ado/provider.h"

namespace pelm::ado {

/// Raises 3265 with the name.
[[noreturn]] void raise_no_such_column(std::string_view name);

/// The number of the first column of that name, without case. Raises 3265.
std::size_t column_named(std::span<const Column> columns, std::string_view name);

}  // namespace pelm::ado
