/// The floor: the same records written by hand over the engine's C interface, with statements
/// prepared once and values bound.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>

#include "bench/crm_database.h"

namespace pelm::bench {

class CFloor {
 public:
  explicit CFloor(const CrmDatabase& database);

  void insert_item(int oid, const std::string& name);
  /// Reads the row, then writes its name, updater and update time.
  void change_item(int oid, const std::string& name);
  std::string item_name(int oid);
  /// An item, a person, a natural person, a classification and a position: five rows, three
  /// numbers of the counter. Returns the item's.
  int insert_contact(const std::string& name, int position, int company);
  /// From a range of 1000; the counter is asked for the next range when it is used up.
  int next_oid();

 private:
  struct Closer {
    void operator()(sqlite3* db) const noexcept { sqlite3_close_v2(db); }
    void operator()(sqlite3_stmt* s) const noexcept { sqlite3_finalize(s); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Closer>;

  void run(const char* sql);
  Statement prepare(const char* sql);
  void step(sqlite3_stmt* s);
  void insert_row(int oid, int cid, const std::string& name);

  std::unique_ptr<sqlite3, Closer> db_;
  Statement insert_item_, read_item_, change_item_, item_name_, insert_person_, insert_natural_,
      insert_classification_, insert_position_, reserve_, reserved_;
  int next_ = 0;
  int last_ = -1;
};

}  // namespace pelm::bench
