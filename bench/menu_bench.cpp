// The menu's script beside the floor that runs the same statements: 100, 1,000 and 10,000 options,
// for everybody and with every other option restricted. Both must write the same text first.
//
// Names are operation/storage/participant.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/menu_floor.h"
#include "bench/open_component.h"
#include "pelm/ado/connection.h"
#include "pelm/menus.h"
#include "pelm/page_scope.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace pelm::bench {
namespace {

constexpr int kMenu = 5;
constexpr int kPerson = CrmDatabase::kFirstItem;
constexpr int kGroup = kPerson + 1;
constexpr int kOptionsEach = 10;  // below each option that has any

/// A tree of options, ten below each; every other one on a list that a group of the person's may
/// use or not, by turns.
void plant(const CrmDatabase& database, int options) {
  ado::Connection connection;
  connection.Open(database.connection_string());
  connection.BeginTrans();
  const auto number = [](int n) { return std::to_string(n); };
  connection.Execute("insert into item (OID, CID, NOME) values (1, 2, 'Todos')");
  connection.Execute("insert into usuario (OID) values (" + number(kPerson) + ")");
  connection.Execute("insert into agrupamento (OID, RPAPEL, RGRUPO, RITEM) values (1, 2, " +
                     number(kGroup) + ", " + number(kPerson) + ")");
  for (int list = 0; list < 20; ++list) {
    connection.Execute("insert into permissao (OID, RUSUARIO, RESCOPO, ACESSO) values (" +
                       number(list + 1) + ", " + number(kGroup) + ", " + number(9000 + list) +
                       ", " + number(list % 4 == 3 ? 0 : 1) + ")");
  }
  constexpr int kFirst = 100;
  for (int i = 0; i < options; ++i) {
    const int parent = i < kOptionsEach ? kMenu : kFirst + (i / kOptionsEach) - 1;
    const std::string list = i % 2 == 0 ? "null" : number(9000 + i % 20);
    connection.Execute(
        "insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) "
        "values (" +
        number(kFirst + i) + ", 'Opção " + number(i) + "', 'itens/lista.page?n=" + number(i) +
        "', " + number(parent) + ", " + list + ", " + number(i % kOptionsEach + 1) + ")");
  }
  connection.CommitTrans();
}

std::string written_by(Menus& menu, int person) {
  std::string text;
  const PageScope page(nullptr, [&](std::string_view piece) { text += piece; });
  menu.OIDFuncionario = person;
  menu.Montar_Menu(kMenu, 1);
  return text;
}

struct Work {
  Work(Storage storage, int options) : database(storage, 100) {
    plant(database, options);
    main = open_component(database);
    menu = main->Menu();
    const std::string text = written_by(*menu, 0);
    floor = std::make_unique<MenuFloor>(database, text.substr(0, text.find("[\"&nbsp;")));
  }
  void check(int person) const {
    if (written_by(*menu, person) == floor->write(kMenu, person)) return;
    std::fprintf(stderr, "the component and the floor write different menus\n");
    std::exit(1);
  }
  CrmDatabase database;
  std::shared_ptr<CMain> main;
  std::shared_ptr<Menus> menu;
  std::unique_ptr<MenuFloor> floor;
};

void measure(benchmark::State& state, Storage storage, int options, int person, bool component) {
  const Work work(storage, options);
  work.check(person);
  for (auto _ : state) {
    benchmark::DoNotOptimize(component ? written_by(*work.menu, person)
                                       : work.floor->write(kMenu, person));
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
            measure(state, storage, options, restricted ? kPerson : 0, component);
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
