/// The time limit of a statement, held also where the driver ignores it.
///
/// One thread of the process watches all sessions. When a limit passes it has the statement
/// cancelled from outside, each on a short-lived thread of its own: cancelling may itself wait for
/// the network.
#pragma once

#include <sql.h>

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>

namespace pelm::ado::odbc {

/// A session's place in the watch. One statement of it runs at a time.
class Watch {
 public:
  Watch();
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch();

  /// Cancels `statement` unless `disarm` comes within `seconds`, and again until it comes; 0 never
  /// cancels.
  void arm(SQLHSTMT statement, std::int32_t seconds);
  /// True when the limit had passed: the statement was cancelled, or was about to end when it was.
  /// Waits for the cancelling, so that the statement may go afterwards.
  bool disarm();

  struct Slot;

 private:
  std::shared_ptr<Slot> slot_;
};

}  // namespace pelm::ado::odbc
