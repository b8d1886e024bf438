/// How a page failed: what its error answer and the log say.
#pragma once

#include <cstdint>
#include <string>

#include "host/page_source.h"

namespace pelm::host {

/// Numbers of failures that no component raises, as the old platform gave them.
inline constexpr std::int32_t kScriptTimedOut = 113;
inline constexpr std::int32_t kScriptSyntaxError = 1002;
inline constexpr std::int32_t kScriptUndefinedName = 5009;
inline constexpr std::int32_t kScriptThrownValue = 5022;  ///< anything else that a script throws

/// The source of a failure of the script itself.
inline constexpr const char* kScriptSource = "Script";

struct PageFailure {
  std::int32_t number = 0;
  std::string source;
  std::string description;
  SourcePlace place;
};

}  // namespace pelm::host
