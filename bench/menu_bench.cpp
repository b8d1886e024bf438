// The menu's script beside the floor that runs the same statements: 100, 1,000 and 10,000 options,
// for everybody and with every other option restricted. Both must write the same text first.
//
// Names are operation/storage/participant.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <string>

#include "bench/menu_work.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace pelm::bench {
namespace {

void measure(benchmark::State& state, Storage storage, int options, int person, bool component) {
  const MenuWork work(storage, options);
  work.check(person);
  for (auto _ : state) {
    benchmark::DoNotOptimize(component ? work.by_component(person) : work.by_floor(person));
  }
  state.counters["statements"] = work.floor->statements();
}

void register_all() {
  for (const Storage storage : {Storage::Memory, Storage::Normal}) {
    for (const int options : {100, 1'000, 10'000}) {
      for (const bool restricted : {false, true}) {
        for (const bool component : {false, true}) {
          const std::string title =
              "Montar_Menu " + std::to_string(options) + (restricted ? " restricted/" : " free/") +
              std::string(name_of(storage)) + (component ? "/component" : "/c");
          benchmark::RegisterBenchmark(title.c_str(), [=](benchmark::State& state) {
            measure(state, storage, options, restricted ? MenuWork::kPerson : MenuWork::kEverybody,
                    component);
          })->Unit(benchmark::kMillisecond);
        }
      }
    }
  }
}

}  // namespace
}  // namespace pelm::bench

int main(int argc, char** argv) {
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  mallopt(M_TOP_PAD, 1 << 24);
  pelm::ado::sqlite::register_sqlite_provider();
  pelm::bench::register_all();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
