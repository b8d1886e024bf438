/// Makes a chosen call of a database fail.
///
///     pelm::test::FaultyProvider faulty("SQLite");
///     for (std::size_t n = 1; ; ++n) {
///       faulty.fail_at(n, error);
///       if (try_operation() && !faulty.failed()) break;  // a run met no fault: all are covered
///     }
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "pelm/error.h"
#include "support/observed_provider.h"

namespace pelm::test {

/// Stands in for the registered provider of a name while it lives. Connecting, executing, fetching
/// a row, describing, calling and the three of transactions count, each as one. Any thread may use
/// it.
class FaultyProvider {
 public:
  explicit FaultyProvider(std::string_view name = "SQLite");
  ~FaultyProvider();

  enum class Lasting { Once, FromThenOn };
  /// The n-th call from now on fails, 1 being the next; counting begins anew.
  void fail_at(std::size_t n, Error error, Lasting lasting = Lasting::Once);
  /// No call fails any more; counting begins anew.
  void stop();
  /// Calls since counting began, the failed ones among them.
  std::size_t count() const;
  /// True when a call has failed since counting began.
  bool failed() const;
  /// The sessions opened so far tell that they are lost when they are next reset.
  void lose_sessions();

 private:
  class Fault;
  std::shared_ptr<Fault> fault_;
  ObservedProvider in_place_;
};

/// What a provider raises when a disk or a server fails.
Error provider_failure();

}  // namespace pelm::test
