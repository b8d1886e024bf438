/// A page whose objects are the caller's own callbacks.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "pelm/object.h"
#include "pelm/page_scope.h"
#include "pelm/pelm_c.h"

namespace pelm::c_api {

/// From `begin` to `end` the thread serves it; pages nest.
class CallbackPage : public Object {
 public:
  /// The number of a page that this thread serves from now on.
  static std::uint64_t begin(const pelm_page_callbacks& callbacks);

  explicit CallbackPage(const pelm_page_callbacks& callbacks);

  /// Raises invalid call (5) unless it is the thread's innermost page.
  void end();

 private:
  std::optional<PageScope> scope_;
  std::shared_ptr<CallbackPage> outer_;
};

}  // namespace pelm::c_api
