/// What time it is, as the component sees it; a thread may be given another clock.
///
///     const pelm::ScopedClock fixed([] { return Date::from_civil({2008, 3, 5, 14, 7, 9}); });
///     clock_now();   // 5 March 2008 14:07:09 on this thread, until `fixed` goes
#pragma once

#include <functional>

#include "pelm/date.h"

namespace pelm {

/// Local date and time, whole seconds.
Date clock_now();
/// The day of `clock_now()` at midnight.
Date clock_today();
/// The time of `clock_now()` on day zero.
Date clock_time();

/// Replaces this thread's clock for its lifetime; nests. A fraction of a second in a reading is
/// rounded. A reading must not throw; the clock goes on the thread that it came on, last come
/// first.
class ScopedClock {
 public:
  using Reading = std::function<Date()>;
  explicit ScopedClock(Reading reading);
  explicit ScopedClock(Date always);
  ScopedClock(const ScopedClock&) = delete;
  ScopedClock& operator=(const ScopedClock&) = delete;
  ~ScopedClock();

 private:
  Reading previous_;
};

}  // namespace pelm
