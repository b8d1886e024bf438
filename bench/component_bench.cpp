// The component beside the floor: the same records from C++, by names, from a page's script, and by
// hand over the engine's C interface. Before anything is timed, all of them must leave the same
// rows.
//
// Names are operation/storage/participant; "items_per_second" counts operations.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "automation/dispatch.h"
#include "bench/c_floor.h"
#include "bench/crm_database.h"
#include "frame/mod_principal.h"
#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "pelm/base.h"
#include "pelm/cmain.h"
#include "pelm/conn.h"
#include "pelm/conversions.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace pelm::bench {
namespace {

constexpr int kItems = 100'000;
constexpr int kPosition = 30;
constexpr int kCompany = 40;

/// What is measured, as each participant does it. Every call is given another number.
struct Operations {
  std::function<void(int)> insert_item;
  std::function<void(int)> change_item;
  std::function<std::string(int)> item_name;
  std::function<void(int)> insert_contact;
};

int existing(int n) { return CrmDatabase::kFirstItem + n % kItems; }
int fresh(int n) { return 10'000'000 + n; }
std::string name(int n) { return "Contrato número " + std::to_string(n); }

Operations floor_operations(const CrmDatabase& database) {
  auto floor = std::make_shared<CFloor>(database);
  return {[floor](int n) { floor->insert_item(fresh(n), name(n)); },
          [floor](int n) { floor->change_item(existing(n), name(n)); },
          [floor](int n) { return floor->item_name(existing(n)); },
          [floor](int n) { floor->insert_contact(name(n), kPosition, kCompany); }};
}

/// The shared objects of this thread, open on the database until the next one takes them; no range
/// of OIDs is left from the one before.
std::shared_ptr<CMain> opened(const CrmDatabase& database) {
  frame::Main();
  auto main = std::make_shared<CMain>();
  const auto conn = main->CConn();
  conn->CloseConn();
  conn->Conex(nullptr);
  conn->ConfigureConn(false, database.connection_string());
  conn->OpenConn();
  return main;
}

Operations direct_operations(const CrmDatabase& database) {
  const auto main = opened(database);
  const std::shared_ptr<Base> base = main->CBase();
  return {[main, base](int n) { base->cadastrar_item(1, name(n), 20, fresh(n)); },
          [base](int n) { base->alterar_item(existing(n), 1, Variant(name(n))); },
          [base](int n) { return base->fObterNomeItem(existing(n)); },
          [base](int n) { base->cadastrar_contato(name(n), kPosition, kCompany); }};
}

Operations named_operations(const CrmDatabase& database) {
  const auto main = opened(database);
  const ObjectRef base = main->CBase();
  const auto call = [base](std::string_view member, std::vector<OptionalArg> arguments) {
    return automation::call(*base, member, arguments);
  };
  return {[main, call](int n) {
            call("cadastrar_item", {Variant(1), Variant(name(n)), Variant(20), Variant(fresh(n))});
          },
          [call](int n) {
            call("alterar_item", {Variant(existing(n)), Variant(1), Variant(name(n))});
          },
          [call](int n) { return to_text(call("fObterNomeItem", {Variant(existing(n))})); },
          [call](int n) {
            call("cadastrar_contato", {Variant(name(n)), Variant(kPosition), Variant(kCompany)});
          }};
}

struct Participant {
  std::string_view name;
  Operations (*make)(const CrmDatabase&);
};
constexpr std::array kParticipants = {Participant{"c", floor_operations},
                                      Participant{"component", direct_operations},
                                      Participant{"by_name", named_operations}};

struct Operation {
  std::string_view name;
  void (*run)(const Operations&, int);
};
constexpr std::array kOperations = {
    Operation{"cadastrar_item", [](const Operations& o, int n) { o.insert_item(n); }},
    Operation{"alterar_item", [](const Operations& o, int n) { o.change_item(n); }},
    Operation{"fObterNomeItem",
              [](const Operations& o, int n) { benchmark::DoNotOptimize(o.item_name(n)); }},
    Operation{"cadastrar_contato", [](const Operations& o, int n) { o.insert_contact(n); }}};

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
  for (const Participant& participant : kParticipants) {
    const CrmDatabase database(Storage::Memory, 100);
    {
      const Operations operations = participant.make(database);
      for (int n = 0; n < 50; ++n) {
        for (const Operation& operation : kOperations) operation.run(operations, n % 100);
        operations.insert_item(100 + n);
      }
    }
    const std::string rows = rows_of(database);
    if (first.empty()) first = rows;
    if (rows == first) continue;
    const auto here = std::mismatch(rows.begin(), rows.end(), first.begin(), first.end()).first;
    std::fprintf(stderr, "%s leaves other rows than %s, from here on: %.60s\n",
                 participant.name.data(), kParticipants[0].name.data(),
                 std::string(here, rows.end()).c_str());
    std::exit(1);
  }
}

void register_all() {
  for (const Storage storage : kStorages) {
    for (const Operation& operation : kOperations) {
      for (const Participant& participant : kParticipants) {
        const std::string title = std::string(operation.name) + "/" +
                                  std::string(name_of(storage)) + "/" +
                                  std::string(participant.name);
        benchmark::RegisterBenchmark(title.c_str(), [=](benchmark::State& state) {
          // One database a series: a table of a million rows is another measurement.
          const CrmDatabase database(storage, kItems);
          const Operations operations = participant.make(database);
          int n = 0;
          for (auto _ : state) operation.run(operations, n++);
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
