/// The embedded database engine as a provider, for the folders above it.
#pragma once

#include "pelm/sqlite.h"  // IWYU pragma: export
