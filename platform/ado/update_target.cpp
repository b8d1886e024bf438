// Storing, finding and reading again a single row.
#include "platform/ado/update_target.h"

#include <algorithm>

#include "pelm/error.h"
#include "platform/ado/error_source.h"
#include "platform/ado/table_name.h"

namespace pelm::ado {
namespace {

constexpr int kNowhere = -1;

int number_in(const Columns& columns, std::string_view name) noexcept {
  const auto found = columns.find(name);
  return found ? static_cast<int>(*found) : kNowhere;
}

[[noreturn]] void no_stored_column() {
  raise_error(error_number::kProviderCannot, kRecordsetSource,
              in_language("A consulta não traz nenhuma coluna da tabela; inclua a chave.",
                          "The query returns no column of the table; include its key."));
}

/// Anything but one row is somebody else's doing.
void check_one_row(Cursor& cursor) {
  if (cursor.rows_affected() != 1) {
    raise_error(error_number::kConcurrencyViolation, kRecordsetSource);
  }
}

}  // namespace

/// What finds a row: conditions on columns of the table, and their values.
struct UpdateTarget::Search {
  std::vector<RowCondition> conditions;
  std::vector<Variant> values;
  bool only_if_single = false;

  void add(ColumnIndex column, const Variant& value) {
    conditions.push_back({column, value.is_null()});
    if (!value.is_null()) values.push_back(value);
  }
  void append_values_to(std::vector<Variant>& bound) const {
    for (int times = only_if_single ? 2 : 1; times > 0; --times) {
      bound.insert(bound.end(), values.begin(), values.end());
    }
  }
  RowSearch shape() const { return {conditions, only_if_single}; }
};

UpdateTarget::UpdateTarget(std::string table, ColumnList columns)
    : table_(std::move(table)), columns_(std::move(columns)), same_numbers_(true) {
  find_key();
}

UpdateTarget::UpdateTarget(ConnectionImpl& connection, std::string_view sql,
                           const ColumnList& result, std::int32_t timeout) {
  SelectSource source = select_source(sql);
  if (source.table.empty()) return;
  columns_ = connection.describe(source.table, timeout);
  table_ = std::move(source.table);
  in_table_.reserve(result->size());
  in_result_.assign(columns_->size(), kNowhere);
  for (const Column& c : *result) {
    const int found = source.is_computed(c.name) ? kNowhere : number_in(*columns_, c.name);
    if (found != kNowhere) {
      in_result_[static_cast<std::size_t>(found)] = static_cast<int>(in_table_.size());
    }
    in_table_.push_back(found);
  }
  find_key();
}

void UpdateTarget::find_key() {
  for (std::size_t i = 0; i < columns_->size(); ++i) {
    if ((*columns_)[i].key) key_.push_back(static_cast<ColumnIndex>(i));
  }
}

int UpdateTarget::in_table(std::size_t result_column) const noexcept {
  if (same_numbers_) return static_cast<int>(result_column);
  return result_column < in_table_.size() ? in_table_[result_column] : kNowhere;
}

int UpdateTarget::in_result(std::size_t table_column) const noexcept {
  return same_numbers_ ? static_cast<int>(table_column) : in_result_[table_column];
}

const Column* UpdateTarget::column(ColumnIndex index) const noexcept {
  const int found = in_table(index);
  return found == kNowhere ? nullptr : &(*columns_)[static_cast<std::size_t>(found)];
}

void UpdateTarget::check_storable() const {
  if (!table_.empty()) return;
  raise_error(error_number::kProviderCannot, kRecordsetSource,
              in_language("As linhas não são de uma só tabela (junção, união, agrupamento ou "
                          "subconsulta); grave com um comando UPDATE, INSERT ou DELETE.",
                          "The rows are not those of one table (join, union, grouping or "
                          "subquery); write with an UPDATE, INSERT or DELETE statement."));
}

std::span<const ColumnIndex> UpdateTarget::all_in_table(std::span<const ColumnIndex> columns,
                                                        std::vector<ColumnIndex>& room) const {
  if (same_numbers_) return columns;
  room.reserve(columns.size());
  for (const ColumnIndex i : columns) {
    const int found = in_table(i);
    if (found == kNowhere) {
      const std::string number = std::to_string(i + 1);
      raise_error(error_number::kProviderCannot, kRecordsetSource,
                  in_language("A coluna " + number +
                                  " da consulta é calculada ou renomeada e não existe na tabela " +
                                  table_ + ".",
                              "Column " + number +
                                  " of the query is computed or renamed and does not exist in "
                                  "table " +
                                  table_ + "."));
    }
    room.push_back(static_cast<ColumnIndex>(found));
  }
  return room;
}

/// A key finds its row only where the record set has all of it and none of it is null.
bool UpdateTarget::has_key_in(const RowStore& rows, std::size_t row) const {
  return !key_.empty() && std::ranges::all_of(key_, [&](ColumnIndex k) {
    const int result = in_result(k);
    return result != kNowhere && !rows.value(row, static_cast<std::size_t>(result)).is_null();
  });
}

UpdateTarget::Search UpdateTarget::search_for(const RowStore& rows, std::size_t row,
                                              std::span<const ColumnIndex> assigned) const {
  Search search;
  search.only_if_single = !has_key_in(rows, row);
  const auto add = [&](ColumnIndex column) {
    const int result = in_result(column);
    if (result != kNowhere) search.add(column, rows.value(row, static_cast<std::size_t>(result)));
  };
  if (search.only_if_single) {
    for (std::size_t i = 0; i < columns_->size(); ++i) add(static_cast<ColumnIndex>(i));
    if (search.conditions.empty()) no_stored_column();
    return search;
  }
  search.conditions.reserve(key_.size() + assigned.size());
  search.values.reserve(key_.size() + assigned.size());
  for (const ColumnIndex k : key_) add(k);
  for (const ColumnIndex a : assigned) {
    if (std::ranges::find(key_, a) == key_.end()) add(a);
  }
  return search;
}

void UpdateTarget::insert(ConnectionImpl& connection, const EditBuffer& edit,
                          std::int32_t timeout) const {
  check_storable();
  std::vector<ColumnIndex> room;
  const std::span<const ColumnIndex> assigned = all_in_table(edit.columns(), room);
  const std::string& sql =
      connection.texts().insert(connection.session(), table_, columns_, assigned);
  connection.execute(sql, edit.values(), timeout);
}

void UpdateTarget::update(ConnectionImpl& connection, const EditBuffer& edit, const RowStore& rows,
                          std::size_t row, std::int32_t timeout) const {
  check_storable();
  std::vector<ColumnIndex> room;
  const std::span<const ColumnIndex> assigned = all_in_table(edit.columns(), room);
  const Search search = search_for(rows, row, assigned);
  std::vector<Variant> bound;
  bound.reserve(edit.values().size() + 2 * search.values.size());
  bound.assign(edit.values().begin(), edit.values().end());
  search.append_values_to(bound);
  const std::string& sql =
      connection.texts().update(connection.session(), table_, columns_, assigned, search.shape());
  check_one_row(*connection.execute(sql, bound, timeout));
}

void UpdateTarget::remove(ConnectionImpl& connection, const RowStore& rows, std::size_t row,
                          std::int32_t timeout) const {
  check_storable();
  const Search search = search_for(rows, row, {});
  std::vector<Variant> bound;
  search.append_values_to(bound);
  const std::string& sql =
      connection.texts().remove(connection.session(), table_, columns_, search.shape());
  check_one_row(*connection.execute(sql, bound, timeout));
}

void UpdateTarget::read_added_row(ConnectionImpl& connection, RowStore& rows, std::size_t row,
                                  std::span<const ColumnIndex> assigned, bool identity_is_ours,
                                  std::int32_t timeout) const {
  const Session& session = connection.session();
  Search search;
  std::string where;
  for (const ColumnIndex k : key_) {
    const Column& column = (*columns_)[k];
    const int result = in_result(k);
    Variant value = Null{};
    if (result != kNowhere && std::ranges::find(assigned, result) != assigned.end()) {
      value = rows.value(row, static_cast<std::size_t>(result));
    } else if (column.auto_number && identity_is_ours) {
      const auto cursor = connection.execute("select @@identity", {}, timeout);
      if (cursor->next()) value = cursor->value(0);
    }
    if (value.is_null()) return;
    where += (where.empty() ? " where " : " and ") + session.same_value(column);
    search.add(k, value);
  }
  if (where.empty()) return;

  std::string sql;
  std::vector<std::size_t> read;  // columns of the record set
  for (std::size_t i = 0; i < columns_->size(); ++i) {
    if (in_result(i) == kNowhere) continue;
    sql += sql.empty() ? "select " : ", ";
    sql += session.quoted((*columns_)[i].name);
    read.push_back(static_cast<std::size_t>(in_result(i)));
  }
  if (read.empty()) return;
  const auto cursor = connection.execute(sql + " from " + table_ + where, search.values, timeout);
  if (!cursor->next()) return;
  for (std::size_t i = 0; i < read.size(); ++i) rows.set(row, read[i], cursor->value(i));
}

}  // namespace pelm::ado
