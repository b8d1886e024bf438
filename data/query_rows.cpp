// Reading the rows of a query on the main connection.
#include "data/query_rows.h"

#include "frame/error_trap.h"
#include "platform/ado/read_rows.h"

namespace pelm::data {

void FirstRow::read(Conn& conn, std::string& sql, std::span<const std::string_view> columns) {
  frame::error_trap("Conn", "RunSQL", [&] {
    conn.about_to_run(sql);
    found_ = ado::read_first_row(conn.Conex_, sql, columns, values_);
  });
}

void AllRows::read(Conn& conn, std::string& sql, std::span<const std::string_view> columns) {
  frame::error_trap("Conn", "RunSQL", [&] {
    conn.about_to_run(sql);
    values_ = ado::read_all_rows(conn.Conex_, sql, columns);
  });
}

}  // namespace pelm::data
