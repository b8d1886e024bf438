// The power is cut at every moment of every operation of Base, and while its log goes into the
// database: what is on the disk then opens, is whole, holds one of the operation's steps, and holds
// all of it once the operation has answered.
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <string>

#include "business/sweep_test.h"
#include "support/power_cuts.h"

namespace pelm {
namespace {

namespace fs = std::filesystem;
using test::DiskImage;
using test::PowerCuts;
using test::raised;
using test::RaisedNothing;
using test::SweptOperation;

/// As people have it, where the other tests' databases spare the disk.
class LastingDatabase final : public test::FreshDatabase {
 public:
  std::string connection_string() const override {
    std::string text = hasty_->connection_string();
    constexpr std::string_view kHaste = "Synchronous=Off;";
    text.erase(text.find(kHaste), kHaste.size());
    return text;
  }

 private:
  std::unique_ptr<test::FreshDatabase> hasty_ = test::engines().front().create();
};

test::Engine lasting_engine() {
  test::Engine engine = test::engines().front();
  engine.create = []() -> std::unique_ptr<test::FreshDatabase> {
    return std::make_unique<LastingDatabase>();
  };
  return engine;
}

class PowerCut : public test::SweepTest {
 protected:
  PowerCut() : cuts_(PowerCuts::installed()) {
    std::string pattern = (fs::temp_directory_path() / "pelm-power-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
  }
  ~PowerCut() override { fs::remove_all(folder_); }

  void sweep(const SweptOperation& operation);
  /// What the operation is seen to have left by who starts the machine again.
  std::string state_after(const DiskImage& image, const SweptOperation& operation);
  void put_the_log_away() { row("pragma wal_checkpoint(truncate)"); }

  PowerCuts& cuts_;
  fs::path folder_;
  std::size_t images_ = 0;
};
INSTANTIATE_TEST_SUITE_P(, PowerCut, ::testing::Values(lasting_engine()),
                         [](const auto& engine) { return std::string(engine.param.name); });

std::string PowerCut::state_after(const DiskImage& image, const SweptOperation& operation) {
  for (const auto& [path, content] : image) {
    std::ofstream(folder_ / fs::path(path).filename(), std::ios::binary) << content;
  }
  const fs::path database = fs::path(image.begin()->first).filename();  // its log's name is longer
  inspect("Provider=SQLite;Data Source=" + (folder_ / database).string());
  EXPECT_EQ(row("pragma integrity_check"), "ok");
  const std::string left = state(operation);
  inspect(connection_string());
  ado::empty_session_pool();  // whose sessions have these files open
  for (const auto& file : fs::directory_iterator(folder_)) fs::remove(file);
  return left;
}

void PowerCut::sweep(const SweptOperation& operation) {
  make(operation);
  put_the_log_away();
  cuts_.watch();
  EXPECT_THAT(raised([&] { operation.act(base()); }), RaisedNothing());
  const std::size_t until_answered = cuts_.taken();
  put_the_log_away();
  const std::vector<DiskImage> images = cuts_.stop();

  // Most writes leave the same images as the one before.
  std::set<DiskImage> seen;
  for (std::size_t n = 0; n < images.size(); ++n) {
    const bool answered = n >= until_answered;
    if (n == until_answered) seen.clear();
    if (!seen.insert(images[n]).second) continue;
    SCOPED_TRACE(std::string(operation.label) + ", image " + std::to_string(n) + " of " +
                 std::to_string(images.size()));
    ++images_;
    const std::string left = state_after(images[n], operation);
    EXPECT_NE(std::ranges::find(operation.stages, left), operation.stages.end())
        << "left half done: " << left;
    if (answered) {
      EXPECT_EQ(left, operation.stages.back()) << "was answered, and is lost";
    }
    if (HasFailure()) return;
  }
}

TEST_P(PowerCut, LosesNothingThatWasAnswered) {
  for (const SweptOperation& operation : test::swept_operations()) {
    sweep(operation);
    if (HasFailure()) return;
  }
  EXPECT_GT(images_, 200U);
  RecordProperty("images", static_cast<int>(images_));
}

}  // namespace
}  // namespace pelm
