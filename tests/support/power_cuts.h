/// What the disk would hold were the power cut, at every moment that makes a difference.
///
///     pelm::test::PowerCuts& cuts = pelm::test::PowerCuts::installed();  // before a file is
///     opened cuts.watch(); … work … for (const pelm::test::DiskImage& image : cuts.stop()) … open
///     the files of `image` …
///
/// A disk promises what was synchronised, nothing else. Of what was written since, it may hold
/// nothing, or some writes without those before them, and of a write some sectors.
#pragma once

#include <cstddef>
#include <map>
#include <mutex>
#include <random>
#include <string>
#include <vector>

#include "support/file_layer.h"

namespace pelm::test {

/// The files that were used, by their paths, with what they hold.
using DiskImage = std::map<std::string, std::string, std::less<>>;

/// Any thread may use it; there is one in a process.
class PowerCuts : public FileWatcher {
 public:
  static PowerCuts& installed();

  /// Begins; what the files hold now counts as synchronised.
  void watch();
  /// How many images there are so far.
  std::size_t taken() const;
  /// Ends. Two images of each moment before a write or a synchronisation, and of the end: without
  /// anything that was not synchronised, and with what chance left of it.
  std::vector<DiskImage> stop();

  int before(const FileCall& call) override;

 private:
  struct Change {
    std::size_t at;
    std::string data;
    bool truncates;  ///< to `at`
  };
  struct File {
    std::string synchronised;
    std::vector<Change> since;
  };

  PowerCuts() = default;

  static void make(const Change& change, std::string& content);
  void take_images();
  Change what_chance_leaves(Change change);

  mutable std::mutex mutex_;
  bool watching_ = false;
  std::map<std::string, File, std::less<>> files_;
  std::vector<DiskImage> images_;
  std::mt19937 chance_{20080305};  // the same in every run
};

}  // namespace pelm::test
