// Reading the first row of a query on the main connection.
#include "data/first_row.h"

#include "frame/error_trap.h"
#include "platform/ado/first_row.h"

namespace pelm::data {

void FirstRow::read(Conn& conn, std::string& sql, std::span<const std::string_view> columns) {
  frame::error_trap("Conn", "RunSQL", [&] {
    conn.about_to_run(sql);
    found_ = ado::read_first_row(conn.Conex_, sql, columns, values_);
  });
}

}  // namespace pelm::data
