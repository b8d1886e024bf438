// The standard error trap: only the source of a failure is replaced.
#include "frame/error_trap.h"

#include <string>

namespace pelm::frame {

void raise_trapped(const Error& pending, std::string_view class_word, std::string_view procedure) {
  std::string source(kProjectSource);
  source.append(".").append(class_word).append(".").append(procedure);
  throw pending.with_source(std::move(source));
}

}  // namespace pelm::frame
