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
  /// From a range of 1000. The next one is reserved as the component has to: in a transaction on a
  /// connection that stays open, and its size asked for on another one.
  int next_oid();

 private:
  struct Closer {
    void operator()(sqlite3* db) const noexcept { sqlite3_close_v2(db); }
    void operator()(sqlite3_stmt* s) const noexcept { sqlite3_finalize(s); }
  };
  using Connection = std::unique_ptr<sqlite3, Closer>;
  using Statement = std::unique_ptr<sqlite3_stmt, Closer>;

  static Connection opened(const CrmDatabase& database);
  Statement prepare(const char* sql);
  void step(sqlite3_stmt* s);
  void insert_row(int oid, int cid, const std::string& name);

  Connection db_, sizes_;
  Statement insert_item_, read_item_, change_item_, item_name_, insert_person_, insert_natural_,
      insert_classification_, insert_position_, begin_, reserve_, reserved_, commit_, range_size_;
  int next_ = 0;
  int last_ = -1;
};

}  // namespace pelm::bench
