// Runs one operation many times, for an instrument that counts its instructions, and prints how
// many:
//
//   counted_operations PARTICIPANT OPERATION [memory|normal|full]
//
// What is counted stands in `counted`, after rounds that fill every cache. Beside the operations on
// records there are two menus of 100 options, by "c" and by "component": `Montar_Menu free`, for
// everybody, and `Montar_Menu restricted`, with every other option on a list.
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "bench/menu_work.h"
#include "bench/operations.h"
#include "pelm/error.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace pelm::bench {
namespace {

constexpr int kRounds = 1000;
constexpr int kWarmUp = 100;

constexpr int kMenuRounds = 20;

[[gnu::noinline]] void counted(const Operation& operation, const Operations& work) {
  for (int n = kWarmUp; n < kWarmUp + kRounds; ++n) operation.run(work, n);
}

[[gnu::noinline]] void counted_menus(const MenuWork& work, int person, bool component) {
  for (int n = 0; n < kMenuRounds; ++n) {
    if ((component ? work.by_component(person) : work.by_floor(person)).empty()) std::abort();
  }
}

int run_menu(std::string_view participant, int person, Storage storage) {
  if (participant != "c" && participant != "component") return 2;
  const MenuWork work(storage, 100);
  work.check(person);
  work.check(person);
  counted_menus(work, person, participant == "component");
  std::printf("%d\n", kMenuRounds);
  return 0;
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

std::optional<Storage> storage_named(std::string_view name) {
  for (const Storage storage : {Storage::Memory, Storage::Normal, Storage::Full}) {
    if (name == name_of(storage)) return storage;
  }
  std::fprintf(stderr, "counted_operations: there is no storage %.*s\n",
               static_cast<int>(name.size()), name.data());
  return std::nullopt;
}

int run(std::string_view participant, std::string_view operation, Storage storage) {
  if (operation == "Montar_Menu free") {
    return run_menu(participant, MenuWork::kEverybody, storage);
  }
  if (operation == "Montar_Menu restricted") {
    return run_menu(participant, MenuWork::kPerson, storage);
  }
  const Participant* const who = named(participants(), participant);
  const Operation* const what = named(operations(), operation);
  if (who == nullptr || what == nullptr) return 2;
  const CrmDatabase database(storage, 2000);
  const Operations work = who->make(database);
  for (int n = 0; n < kWarmUp; ++n) what->run(work, n);
  counted(*what, work);
  std::printf("%d\n", kRounds);
  return 0;
}

}  // namespace
}  // namespace pelm::bench

int main(int argc, char** argv) {
  if (argc != 3 && argc != 4) {
    std::fprintf(stderr, "usage: counted_operations PARTICIPANT OPERATION [memory|normal|full]\n");
    return 2;
  }
  const auto storage = pelm::bench::storage_named(argc == 4 ? argv[3] : "memory");
  if (!storage) return 2;
  pelm::ado::sqlite::register_sqlite_provider();
  try {
    return pelm::bench::run(argv[1], argv[2], *storage);
  } catch (const pelm::Error& error) {
    std::fprintf(stderr, "counted_operations: %s\n", error.description().c_str());
    return 1;
  }
}
