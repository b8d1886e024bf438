// Cursors of the embedded engine.
#include "platform/ado/sqlite/cursor.h"

#include <sqlite3.h>

#include <utility>

#include "platform/ado/sqlite/session.h"
#include "platform/ado/sqlite/values.h"

namespace pelm::ado::sqlite {
SqliteCursor::SqliteCursor(SqliteSession& session, StatementLease lease)
    : session_(session),
      lease_(std::move(lease)),
      columns_(lease_.prepared().columns ? lease_.prepared().columns : no_columns()) {}

void SqliteCursor::start() {
  if (sqlite3_stmt_readonly(lease_.get()) == 0) session_.about_to_write();
  const bool row = step();
  look_at_columns_again();
  if (row && !columns_->empty()) {
    place_ = Place::FirstRowReady;
    return;
  }
  while (place_ == Place::Running && step()) {
  }
}

// False at the end.
bool SqliteCursor::step() {
  session_.database().watchdog().restart();
  lease_.prepared().running = true;
  const int code = sqlite3_step(lease_.get());
  if (code == SQLITE_ROW) return true;
  place_ = Place::AtEnd;
  if (code != SQLITE_DONE) {
    session_.database().fail(code, lease_.plan().translation.sql);
  }
  finish();
  return false;
}

void SqliteCursor::finish() {
  const Plan& plan = lease_.plan();
  sqlite3* const db = session_.database().handle();
  if (plan.changes_rows) {
    affected_ = sqlite3_changes64(db);
    session_.state().rows = affected_;
  }
  if (!plan.translation.inserted_table.empty() && affected_ > 0) {
    session_.state().identity.reset();
    if (plan.gives_identity) session_.state().identity = sqlite3_last_insert_rowid(db);
  }
  if (plan.changes_schema) session_.definitions_changed();
  sqlite3_reset(lease_.get());  // lets go of what it read, and of its lock
  lease_.prepared().running = false;
}

// The engine prepares a statement anew by itself when the schema has changed under it.
void SqliteCursor::look_at_columns_again() {
  Prepared& prepared = lease_.prepared();
  const int preparations = sqlite3_stmt_status(lease_.get(), SQLITE_STMTSTATUS_REPREPARE, 0);
  if (preparations == prepared.preparations) return;
  prepared.preparations = preparations;
  if (sqlite3_column_count(lease_.get()) > 0) {
    prepared.columns = session_.catalog().result_columns(lease_.get(), lease_.plan().translation);
    columns_ = prepared.columns;
  }
  session_.cache().erase(&lease_.plan());  // what it knew of date columns may be out of date too
}

bool SqliteCursor::next() {
  switch (place_) {
    case Place::FirstRowReady:
      place_ = Place::Running;
      return true;
    case Place::Running:
      return step();
    case Place::AtEnd:
      break;
  }
  return false;
}

Variant SqliteCursor::value(std::size_t column) const {
  if (column >= columns_->size()) return Null{};
  return read_value(lease_.get(), static_cast<int>(column), (*columns_)[column].type);
}

KeptCursor::KeptCursor(Cursor& from) : columns_(from.columns()) {
  while (from.next()) {
    std::vector<Variant>& row = rows_.emplace_back();
    row.reserve(columns_->size());
    for (std::size_t i = 0; i < columns_->size(); ++i) row.push_back(from.value(i));
  }
  affected_ = from.rows_affected();
}

bool KeptCursor::next() {
  if (at_ >= rows_.size()) return false;
  ++at_;
  return true;
}

}  // namespace pelm::ado::sqlite
