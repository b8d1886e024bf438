/// A menu to be written by the component and by the floor.
#pragma once

#include <memory>
#include <string>

#include "bench/crm_database.h"
#include "bench/menu_floor.h"
#include "pelm/cmain.h"
#include "pelm/menus.h"

namespace pelm::bench {

struct MenuWork {
  static constexpr int kMenu = 5;
  static constexpr int kEverybody = 0;
  /// For whom every other option is on a list that a group of theirs may use or not, by turns.
  static constexpr int kPerson = CrmDatabase::kFirstItem;

  /// Plants a tree of options, ten below each.
  MenuWork(Storage storage, int options);
  /// Ends the program where the component and the floor do not write the same text.
  void check(int person) const;

  /// As a host's page writes it, into the buffer of its response.
  std::string by_component(int person) const;
  std::string by_floor(int person) const { return floor->write(kMenu, person); }

  CrmDatabase database;
  std::shared_ptr<CMain> main;
  std::shared_ptr<Menus> menu;
  std::unique_ptr<MenuFloor> floor;
};

}  // namespace pelm::bench
