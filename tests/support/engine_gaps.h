/// What an engine cannot do: tests/databases/gaps.txt, read by tests as they start.
#pragma once

#include <string>
#include <string_view>

namespace pelm::test {

/// Why the running test cannot pass on the engine; empty when it should. PELM_TEST_GAPS in the
/// environment makes every test run.
std::string gap_of_running_test(std::string_view engine);

}  // namespace pelm::test
