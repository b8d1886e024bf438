/// The floor of the menu: the statements that the component runs, prepared and bound by hand, and
/// the same text.
#pragma once

#include <sqlite3.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "bench/crm_database.h"

namespace pelm::bench {

class MenuFloor {
 public:
  /// `header` is what stands before the first entry of the first level.
  MenuFloor(const CrmDatabase& database, std::string header);

  /// The menu's text for a person; 0 is everybody.
  std::string write(int menu, int person);
  int statements() const { return statements_; }

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* s) const noexcept { sqlite3_finalize(s); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;
  struct Option {
    int id;
    std::string name, link;
    int list;  // 0: none
  };

  Statement prepare(const char* sql);
  /// Runs a statement with one or two keys; its rows are read with `next`.
  sqlite3_stmt* start(const Statement& statement, int key, int second = 0);
  bool next(sqlite3_stmt* statement);
  std::vector<Option> options_of(const Statement& statement, int parent);
  bool visible(const Option& option, int person);
  bool allowed(int person, int list);
  void write_level(const Statement& statement, int parent, const std::string& array, bool first,
                   int person);

  SqliteHandle db_;
  std::string header_;
  Statement first_level_, level_, below_, user_, holders_, permission_;
  std::string text_;
  int statements_ = 0;
};

}  // namespace pelm::bench
