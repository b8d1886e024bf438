/// An argument that does not convert, on its way to whoever knows the argument's name.
#pragma once

#include <cstddef>

#include "pelm/error.h"

namespace pelm::automation {

struct BadArgument {
  std::size_t index;
  Error error;
};

}  // namespace pelm::automation
