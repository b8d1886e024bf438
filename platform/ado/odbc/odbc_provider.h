/// Database servers through ODBC as a provider, for the folders above it.
#pragma once

#include "pelm/odbc.h"  // IWYU pragma: export
