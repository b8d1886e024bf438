// Runs one operation a thousand times, for an instrument that counts its instructions:
//
//   counted_operations PARTICIPANT OPERATION
//
// What is counted stands in `counted`, after a hundred rounds that fill every cache.
#include <cstdio>
#include <string_view>

#include "bench/operations.h"
#include "pelm/error.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace pelm::bench {
namespace {

constexpr int kRounds = 1000;
constexpr int kWarmUp = 100;

[[gnu::noinline]] void counted(const Operation& operation, const Operations& work) {
  for (int n = kWarmUp; n < kWarmUp + kRounds; ++n) operation.run(work, n);
}

template <class Row>
const Row* named(std::span<const Row> rows, std::string_view name) {
  for (const Row& row : rows) {
    if (row.name == name) return &row;
  }
  std::fprintf(stderr, "counted_operations: there is no %.*s\n", static_cast<int>(name.size()),
               name.data());
  return nullptr;
}

int run(std::string_view participant, std::string_view operation) {
  const Participant* const who = named(participants(), participant);
  const Operation* const what = named(operations(), operation);
  if (who == nullptr || what == nullptr) return 2;
  const CrmDatabase database(Storage::Memory, 2000);
  const Operations work = who->make(database);
  for (int n = 0; n < kWarmUp; ++n) what->run(work, n);
  counted(*what, work);
  return 0;
}

}  // namespace
}  // namespace pelm::bench

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: counted_operations PARTICIPANT OPERATION\n");
    return 2;
  }
  pelm::ado::sqlite::register_sqlite_provider();
  try {
    return pelm::bench::run(argv[1], argv[2]);
  } catch (const pelm::Error& error) {
    std::fprintf(stderr, "counted_operations: %s\n", error.description().c_str());
    return 1;
  }
}
