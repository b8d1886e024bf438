// The server's functions, as functions of the embedded engine.
#include "platform/ado/sqlite/functions.h"

#include "platform/ado/sqlite/collation.h"

namespace pelm::ado::sqlite {

void register_all_functions(sqlite3* db, SessionState& session) {
  register_collations(db);
  for (const auto table :
       {text_functions(), number_functions(), date_functions(), conversion_functions()}) {
    register_functions(db, table, session);
  }
}

}  // namespace pelm::ado::sqlite
