/// Cursors of the embedded engine: over a running statement, over rows kept, over nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/ado/provider.h"
#include "platform/ado/sqlite/catalog.h"
#include "platform/ado/sqlite/statement_cache.h"
#include "platform/value/thread_spares.h"

namespace pelm::ado::sqlite {

class SqliteSession;

class SqliteCursor final : public Cursor {
 public:
  SqliteCursor(SqliteSession& session, StatementLease lease);
  static void* operator new(std::size_t) { return SpareMemory<SqliteCursor>().allocate(1); }
  static void operator delete(void* memory) noexcept {
    SpareMemory<SqliteCursor>().deallocate(static_cast<SqliteCursor*>(memory), 1);
  }

  /// Runs to the first row, or to the end of a statement without rows. Raises.
  void start();

  const ColumnList& columns() const override { return columns_; }
  bool next() override;
  Variant value(std::size_t column) const override;
  std::int64_t rows_affected() const override { return affected_; }

 private:
  enum class Place { FirstRowReady, Running, AtEnd };
  bool step();
  void finish();
  void look_at_columns_again();

  SqliteSession& session_;
  StatementLease lease_;
  ColumnList columns_;
  std::int64_t affected_ = -1;
  Place place_ = Place::Running;
};

/// Rows read out of another cursor.
class KeptCursor final : public Cursor {
 public:
  explicit KeptCursor(Cursor& from);
  const ColumnList& columns() const override { return columns_; }
  bool next() override;
  void rewind() { at_ = 0; }
  Variant value(std::size_t column) const override { return rows_[at_ - 1][column]; }
  std::int64_t rows_affected() const override { return affected_; }

 private:
  ColumnList columns_;
  std::vector<std::vector<Variant>> rows_;
  std::size_t at_ = 0;
  std::int64_t affected_ = -1;
};

/// Of a statement that has run and gave no rows.
class FinishedCursor final : public Cursor {
 public:
  explicit FinishedCursor(std::int64_t affected) : affected_(affected) {}
  const ColumnList& columns() const override { return no_columns(); }
  bool next() override { return false; }
  Variant value(std::size_t) const override { return Null{}; }
  std::int64_t rows_affected() const override { return affected_; }

 private:
  std::int64_t affected_;
};

}  // namespace pelm::ado::sqlite
