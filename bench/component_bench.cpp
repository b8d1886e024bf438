// The component beside the floor and beside what people would pick instead: the same records from
// C++, by names, from a page, by hand over the engine's C interface, and through other libraries.
// Before anything is timed, all of them must leave the same rows.
//
// Names are operation/storage/participant; "items_per_second" counts operations.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/operations.h"
#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "pelm/conversions.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace pelm::bench {
namespace {

/// Operations of one page, so that what a page itself costs is not what is measured.
constexpr int kTogether = 1000;

/// Every row that the operations write, without the moments, which differ.
std::string rows_of(const CrmDatabase& database) {
  ado::Connection connection;
  connection.Open(database.connection_string());
  std::string all;
  for (const char* query :
       {"select OID, CID, NOME, CODIGO, RESCOPO, CRIADOPOR, ATUALIZADOPOR, OBSERVACAO, EXCLUIDO, "
        "len(CRIADOEM), len(ATUALIZADOEM) from item order by oid",
        "select * from pessoa order by oid", "select * from pessoafisica order by oid",
        "select * from classificacao order by oid", "select * from agrupamento order by oid"}) {
    const auto rows = connection.Execute(query);
    for (; !rows->Eof(); rows->MoveNext()) {
      for (std::size_t i = 0; i < rows->FieldCount(); ++i) {
        const Variant value = rows->Fields(i).Value();
        all += (value.is_null() ? "null" : to_text(value)) + "|";
      }
      all += "\n";
    }
  }
  return all;
}

/// Ends the program when the participants do not do the same work.
void check_equality() {
  std::string first;
  for (const Participant& participant : participants()) {
    const CrmDatabase database(Storage::Memory, 100);
    {
      const Operations work = participant.make(database);
      for (int n = 0; n < 50; ++n) {
        for (const Operation& operation : operations()) perform(operation, work, n % 100, 1);
        work.insert_item(100 + n);
      }
    }
    const std::string rows = rows_of(database);
    if (first.empty()) first = rows;
    if (rows == first) continue;
    const auto here = std::mismatch(rows.begin(), rows.end(), first.begin(), first.end()).first;
    std::fprintf(stderr, "%s leaves other rows than %s, from here on: %.60s\n",
                 participant.name.data(), participants()[0].name.data(),
                 std::string(here, rows.end()).c_str());
    std::exit(1);
  }
}

void register_all() {
  for (const Storage storage : kStorages) {
    for (const Operation& operation : operations()) {
      for (const Participant& participant : participants()) {
        const std::string title = std::string(operation.name) + "/" +
                                  std::string(name_of(storage)) + "/" +
                                  std::string(participant.name);
        benchmark::RegisterBenchmark(title.c_str(), [=](benchmark::State& state) {
          // One database a series: a table of a million rows is another measurement.
          const CrmDatabase database(storage, kItems);
          const Operations work = participant.make(database);
          const int together = work.many ? kTogether : 1;
          int n = 0;
          for (; state.KeepRunningBatch(together); n += together)
            perform(operation, work, n, together);
          state.SetItemsProcessed(state.iterations());
        });
      }
    }
  }
}

}  // namespace
}  // namespace pelm::bench

int main(int argc, char** argv) {
  // Giving memory back to the system now and then would hide what is measured.
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  mallopt(M_TOP_PAD, 1 << 24);
  pelm::ado::sqlite::register_sqlite_provider();
  pelm::bench::check_equality();
  pelm::bench::register_all();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
