// A folder of pages that goes away with the test.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace pelm::host::testing {

class TemporarySite {
 public:
  TemporarySite() {
    std::string pattern = (std::filesystem::temp_directory_path() / "pelm-site-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    folder_ = pattern;
    std::filesystem::create_directory(root());
  }
  TemporarySite(const TemporarySite&) = delete;
  TemporarySite& operator=(const TemporarySite&) = delete;
  ~TemporarySite() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::filesystem::path root() const { return folder_ / "root"; }
  /// Beside the root, where no page may reach.
  std::filesystem::path outside() const { return folder_; }

  void write(std::string_view path, std::string_view text) const {
    const auto file = root() / path;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
  }

 private:
  std::filesystem::path folder_;
};

}  // namespace pelm::host::testing
