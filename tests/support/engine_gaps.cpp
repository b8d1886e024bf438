// Finding the running test in the table of gaps.
#include "support/engine_gaps.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace pelm::test {

std::string gap_of_running_test(std::string_view engine) {
  if (std::getenv("PELM_TEST_GAPS") != nullptr) return {};
  const ::testing::TestInfo& running = *::testing::UnitTest::GetInstance()->current_test_info();
  const std::string full = std::string(running.test_suite_name()) + "." + running.name();
  const std::string test = full.substr(0, full.rfind('/'));
  std::ifstream table(PELM_GAPS_FILE);
  if (!table) ADD_FAILURE() << "the table of gaps is not there: " << PELM_GAPS_FILE;
  for (std::string line; std::getline(table, line);) {
    std::istringstream words(line);
    std::string lacking;
    std::string lacked;
    words >> lacking >> lacked >> std::ws;
    if (lacking.starts_with('?')) lacking.erase(0, 1);
    std::string why;
    std::getline(words, why);
    if (lacking == engine && lacked == test) return why;
  }
  return {};
}

}  // namespace pelm::test
