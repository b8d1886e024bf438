// Every call of the database that an operation of Base makes fails once: the error leaves with the
// operation's source, its scratch record set is gone, and just the rows stored before it stay.
#include <optional>
#include <string>

#include "business/sweep_test.h"
#include "support/faulty_provider.h"

namespace pelm {
namespace {

using test::of_base;
using test::raised;
using test::Raised;
using test::RaisedNothing;
using test::SweptOperation;

class FailureSweep : public test::SweepTest {
 protected:
  void sweep(const SweptOperation& operation);
};
PELM_ON_EVERY_ENGINE(FailureSweep);

void FailureSweep::sweep(const SweptOperation& operation) {
  constexpr std::size_t kManyCalls = 100;
  test::FaultyProvider faulty(GetParam().provider);
  std::size_t stage = 0;
  for (std::size_t n = 1; n < kManyCalls; ++n) {
    SCOPED_TRACE(std::string(operation.label) + ", call " + std::to_string(n));
    make(operation);
    const auto number = static_cast<std::int32_t>(50000 + n);
    const std::string description = "falha " + std::to_string(n);
    faulty.fail_at(n, Error(number, "Test provider", description));
    const std::optional<Error> error = raised([&] { operation.act(base()); });
    const bool failed = faulty.failed();
    faulty.stop();

    EXPECT_TRUE(is_idle());
    const std::string left = state(operation);
    if (left != operation.stages[stage]) {
      ASSERT_LT(++stage, operation.stages.size()) << left;
      ASSERT_EQ(left, operation.stages[stage]);
    }
    if (!failed || (operation.retries_storing && !error)) {
      EXPECT_THAT(error, RaisedNothing());
      EXPECT_EQ(stage + 1, operation.stages.size());
      if (failed) continue;
      EXPECT_GT(n, 1U);
      return;
    }
    EXPECT_THAT(error, Raised(number, of_base(operation.name), description));
  }
  ADD_FAILURE() << operation.label << " never ends without a fault";
}

TEST_P(FailureSweep, EveryCallOfEveryOperation) {
  for (const SweptOperation& operation : test::swept_operations()) {
    sweep(operation);
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace pelm
