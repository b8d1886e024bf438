/// What the sweeps over faults share: the world of an operation, and what a fault may leave of it.
#pragma once

#include <algorithm>
#include <optional>
#include <string>

#include "business/base_test.h"
#include "business/swept_operations.h"
#include "platform/ado/session_pool.h"

namespace pelm::test {

class SweepTest : public BaseTest {
 protected:
  /// Empty tables, then the rows that the operation meets.
  void make(const SweptOperation& operation) {
    run_together({emptied_world(), operation.world});
    begin_page();
  }
  /// Nothing pooled, no range of OIDs: the operation opens the database again.
  void begin_page() {
    thread().conn().CloseConn();
    ado::empty_session_pool();
    thread().reopen();
    thread().forget_oids();
  }
  std::string state(const SweptOperation& operation) {
    if (operation.probe.empty()) return row_counts();
    return row_counts() + ": " + row(operation.probe);
  }
  /// An error is the operation's own and leaves the rows of one of its steps; without one all is
  /// done.
  void expect_nothing_half_done(const SweptOperation& operation,
                                const std::optional<Error>& error) {
    EXPECT_TRUE(is_idle());
    const std::string left = state(operation);
    EXPECT_NE(std::ranges::find(operation.stages, left), operation.stages.end())
        << "left half done: " << left;
    if (!error) {
      EXPECT_EQ(left, operation.stages.back()) << "said to be done";
      return;
    }
    EXPECT_EQ(error->source(), of_base(operation.name));
    EXPECT_NE(error->number(), 0);
    EXPECT_FALSE(error->description().empty());
  }
  void expect_the_next_page_works() {
    begin_page();
    EXPECT_THAT(raised([&] { base().fObterNomeItem(8); }), RaisedNothing()) << "the next page";
  }
};

}  // namespace pelm::test
