/// A program that runs beside the test and prints whole numbers.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace pelm::test {

class PrintingProcess {
 public:
  explicit PrintingProcess(const std::string& command) : output_(popen(command.c_str(), "re")) {
    if (output_ == nullptr) throw std::runtime_error("cannot start " + command);
  }
  PrintingProcess(const PrintingProcess&) = delete;
  PrintingProcess& operator=(const PrintingProcess&) = delete;
  ~PrintingProcess() {
    if (output_ != nullptr) pclose(output_);
  }

  /// Waits for its end, which must be a good one.
  std::vector<std::int32_t> numbers() {
    std::string printed;
    std::array<char, 4096> piece{};
    while (const std::size_t size = fread(piece.data(), 1, piece.size(), output_)) {
      printed.append(piece.data(), size);
    }
    EXPECT_EQ(pclose(std::exchange(output_, nullptr)), 0);
    std::istringstream lines(printed);
    return {std::istream_iterator<std::int32_t>(lines), {}};
  }

 private:
  FILE* output_;
};

}  // namespace pelm::test
