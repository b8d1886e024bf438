/// What a connection string may say to the embedded engine.
#pragma once

#include <string>

#include "platform/ado/provider.h"

namespace pelm::ado::sqlite {

enum class Synchronous { Full, Normal, Off };

struct Options {
  std::string path;        ///< as given; ":memory:" is a database of this session alone
  bool read_only = false;  ///< Mode=Read, or adModeRead
  bool create = false;     ///< Create=True: a missing file becomes an empty database
  Synchronous synchronous = Synchronous::Full;
  std::int32_t connection_timeout = 15;

  bool in_memory() const { return path == ":memory:"; }
};

/// Raises kProviderFailure for a keyword or a value that the engine does not know, kLoginFailed
/// for a user or a password: the file's own permissions guard it.
Options read_options(const SessionSettings& settings);

}  // namespace pelm::ado::sqlite
