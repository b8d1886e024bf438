// Every call that the embedded engine makes of its files fails under every operation of Base: an
// error of the operation, the rows of one of its steps and no other, and the next page works.
#include <optional>
#include <string>

#include "business/sweep_test.h"
#include "support/faulty_disk.h"

namespace pelm {
namespace {

using test::FaultyDisk;
using test::raised;
using test::RaisedNothing;
using test::SweptOperation;
using Fault = FaultyDisk::Fault;

class DiskFaults : public test::SweepTest {
 protected:
  DiskFaults() : disk_(FaultyDisk::installed()) {}

  void sweep(const SweptOperation& operation, Fault fault);
  void sweep_all(Fault fault);

  FaultyDisk& disk_;
  std::size_t faults_ = 0;
  std::size_t errors_ = 0;
};
INSTANTIATE_TEST_SUITE_P(, DiskFaults, ::testing::Values(test::engines().front()),
                         [](const auto& engine) { return std::string(engine.param.name); });

void DiskFaults::sweep(const SweptOperation& operation, Fault fault) {
  constexpr std::size_t kManyCalls = 2000;
  // Each call up to the sixtieth; beyond, where they repeat page by page, every seventh.
  for (std::size_t n = 1; n < kManyCalls; n += n < 60 ? 1 : 7) {
    SCOPED_TRACE(std::string(operation.label) + ", call " + std::to_string(n));
    make(operation);
    disk_.fail_at(n, fault);
    const std::optional<Error> error = raised([&] { operation.act(base()); });
    const bool failed = disk_.failed();
    disk_.stop();

    expect_nothing_half_done(operation, error);
    if (error) ++errors_;
    if (!failed) {
      EXPECT_THAT(error, RaisedNothing());
      return;
    }
    ++faults_;
    expect_the_next_page_works();
    if (HasFailure()) return;
  }
  ADD_FAILURE() << operation.label << " never ends without a fault";
}

void DiskFaults::sweep_all(Fault fault) {
  const bool lasts = fault != Fault::IoError && fault != Fault::CorruptPage;
  for (const SweptOperation& operation : test::swept_operations()) {
    // kept: it tries the next number for ever while none can be stored
    if (operation.retries_storing && lasts) continue;
    sweep(operation, fault);
    if (HasFailure()) return;
  }
  EXPECT_GT(errors_, 20U);
  EXPECT_EQ(row("pragma integrity_check"), "ok");
  RecordProperty("faults", static_cast<int>(faults_));
  RecordProperty("errors", static_cast<int>(errors_));
}

TEST_P(DiskFaults, AnIoErrorAtEveryCallOfEveryOperation) { sweep_all(Fault::IoError); }
TEST_P(DiskFaults, ADiskThatFailsFromEveryCallOn) { sweep_all(Fault::LastingIo); }
TEST_P(DiskFaults, AFullDiskFromEveryWriteOn) { sweep_all(Fault::Full); }
TEST_P(DiskFaults, AReadOnlyFileFromEveryWriteOn) { sweep_all(Fault::ReadOnly); }
TEST_P(DiskFaults, ANonsensicalPageAtEveryRead) { sweep_all(Fault::CorruptPage); }

}  // namespace
}  // namespace pelm
