// The tree of options, and the same text from both.
#include "bench/menu_work.h"

#include <cstdio>
#include <cstdlib>

#include "bench/open_component.h"
#include "frame/thread_slots.h"
#include "pelm/ado/connection.h"
#include "platform/page/object_context.h"
#include "platform/page/response.h"

namespace pelm::bench {
namespace {

constexpr int kMenu = MenuWork::kMenu;
constexpr int kPerson = MenuWork::kPerson;
constexpr int kGroup = kPerson + 1;
constexpr int kOptionsEach = 10;  // below each option that has any

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

}  // namespace

MenuWork::MenuWork(Storage storage, int options) : database(storage, 100) {
  plant(database, options);
  main = open_component(database);
  menu = main->Menu();
  const std::string text = by_component(kEverybody);
  floor = std::make_unique<MenuFloor>(database, text.substr(0, text.find("[\"&nbsp;")));
}

void MenuWork::check(int person) const {
  if (by_component(person) == by_floor(person)) return;
  std::fprintf(stderr, "the component and the floor write different menus\n");
  std::exit(1);
}

std::string MenuWork::by_component(int person) const {
  const auto context = std::make_shared<page::ScriptingContext>();
  context->Response = std::make_shared<page::Response>();
  const page::ScopedObjectContext page(context);
  frame::thread_slots().response.reset();  // that of the menu before
  menu->OIDFuncionario = person;
  menu->Montar_Menu(kMenu, 1);
  return context->Response->body();
}

}  // namespace pelm::bench
