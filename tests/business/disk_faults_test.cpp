// Every call that the embedded engine makes of its files fails under every operation of Base: an
// error of the operation, the rows of one of its steps and no other, and the next page works.
#include <algorithm>
#include <optional>
#include <string>

#include "business/base_test.h"
#include "business/swept_operations.h"
#include "platform/ado/session_pool.h"
#include "support/faulty_disk.h"

namespace pelm {
namespace {

using test::FaultyDisk;
using test::of_base;
using test::raised;
using test::RaisedNothing;
using test::SweptOperation;
using Fault = FaultyDisk::Fault;

class DiskFaults : public test::BaseTest {
 protected:
  DiskFaults() : disk_(FaultyDisk::installed()) {}

  void make(const SweptOperation& operation) {
    run("begin transaction; " + std::string(test::emptied_world()) + ";" +
        std::string(operation.world) + "; commit transaction");
    begin_page();
  }
  /// Nothing pooled, no range of OIDs: the operation opens the file again.
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

    EXPECT_TRUE(is_idle());
    const std::string left = state(operation);
    EXPECT_NE(std::find(operation.stages.begin(), operation.stages.end(), left),
              operation.stages.end())
        << "left half done: " << left;
    if (error) {
      ++errors_;
      EXPECT_EQ(error->source(), of_base(operation.name));
      EXPECT_NE(error->number(), 0);
      EXPECT_FALSE(error->description().empty());
    } else {
      EXPECT_EQ(left, operation.stages.back()) << "said to be done";
    }
    if (!failed) {
      EXPECT_THAT(error, RaisedNothing());
      return;
    }
    ++faults_;
    begin_page();
    EXPECT_THAT(raised([&] { base().fObterNomeItem(8); }), RaisedNothing()) << "the next page";
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
