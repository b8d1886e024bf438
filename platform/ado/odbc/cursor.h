/// Cursors: over a running statement, over nothing, over a single value.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/ado/odbc/session.h"
#include "platform/ado/odbc/statement.h"
#include "platform/ado/odbc/values.h"
#include "platform/ado/provider.h"

namespace pelm::ado::odbc {

/// Reads forward, a row at a time, each row whole.
class OdbcCursor final : public Cursor {
 public:
  OdbcCursor(OdbcSession& session, StatementLease lease, std::vector<Column> columns,
             std::vector<ResultColumn> how)
      : session_(session),
        lease_(std::move(lease)),
        columns_(std::make_shared<const Columns>(std::move(columns))),
        how_(std::move(how)),
        row_(columns_->size()) {}

  const ColumnList& columns() const override { return columns_; }
  bool next() override;
  Variant value(std::size_t column) const override {
    return column < row_.size() ? row_[column] : Variant(Null{});
  }
  std::int64_t rows_affected() const override { return -1; }

 private:
  OdbcSession& session_;
  StatementLease lease_;
  ColumnList columns_;
  std::vector<ResultColumn> how_;
  std::vector<Variant> row_;
  bool at_end_ = false;
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

/// One row of one column, of the provider's own making.
class SingleValueCursor final : public Cursor {
 public:
  SingleValueCursor(std::string name, Variant value)
      : columns_(std::make_shared<const Columns>(
            std::vector{Column{.name = std::move(name), .type = adBigInt}})),
        value_(std::move(value)) {}
  const ColumnList& columns() const override { return columns_; }
  bool next() override { return std::exchange(unread_, false); }
  Variant value(std::size_t) const override { return value_; }
  std::int64_t rows_affected() const override { return -1; }

 private:
  ColumnList columns_;
  Variant value_;
  bool unread_ = true;
};

}  // namespace pelm::ado::odbc
