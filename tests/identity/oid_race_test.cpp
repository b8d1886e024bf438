// Several processes drawing from one counter: no two ever hold a part of the same range.
#include <gtest/gtest.h>

#include <cstdint>
#include <list>
#include <string>
#include <unordered_map>

#include "support/component_fixture.h"
#include "support/printing_process.h"

namespace pelm {
namespace {

constexpr int kProcesses = 8;
constexpr int kOidsEach = 20000;
constexpr Oid kFirst = 1000;
constexpr std::int16_t kDelta = 100;

bool ends_a_range(Oid oid) { return (oid - kFirst + 1) % kDelta == 0; }

class OidRace : public test::ComponentFixture {};
PELM_ON_EVERY_ENGINE(OidRace);

TEST_P(OidRace, EightProcessesNeverShareARange) {
  oids_from(kFirst, kDelta);
  std::list<test::PrintingProcess> processes;
  for (int p = 0; p < kProcesses; ++p) {
    processes.emplace_back(std::string(PELM_OID_TAKER) + " '" + connection_string() + "' " +
                           std::to_string(kOidsEach));
  }

  std::unordered_map<Oid, int> holders;
  int process = 0;
  for (test::PrintingProcess& taker : processes) {
    const std::vector<std::int32_t> oids = taker.numbers();
    EXPECT_EQ(oids.size(), static_cast<std::size_t>(kOidsEach));
    for (const Oid oid : oids) {
      const auto [holder, first_time] = holders.emplace(oid, process);
      ASSERT_EQ(holder->second, process) << oid << " was given to two processes";
      // kept: the last OID of a range is given twice, to whoever holds the range
      ASSERT_TRUE(first_time || ends_a_range(oid)) << oid << " was given twice";
    }
    ++process;
  }
}

}  // namespace
}  // namespace pelm
