// How a record set opens, moves, reads and writes.
#include "platform/ado/recordset_impl.h"

#include <algorithm>
#include <limits>
#include <span>
#include <utility>

#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/ado/error_source.h"
#include "platform/ado/field_conversion.h"
#include "platform/ado/table_name.h"

namespace pelm::ado {
namespace {

// What a record set that has gone may leave to the next.
constexpr std::size_t kLongestSourceKept = 1024;
constexpr std::size_t kMostAddedKept = 1024;  // columns of added rows

std::int32_t clipped(std::int64_t n) noexcept {
  using Long = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(n, Long::min(), Long::max()));
}

}  // namespace

RecordsetImpl::~RecordsetImpl() {
  if (link_ != nullptr) link_->detach(*this);
}

void RecordsetImpl::renew() noexcept {
  if (link_ != nullptr) {
    link_->detach(*this);
    release();
  }
  if (source.capacity() > kLongestSourceKept) std::string().swap(source);
  static_cast<RecordsetProperties&>(*this) = {};
}

void RecordsetImpl::check_open(std::string_view asked) const {
  if (!is_open()) raise_error(error_number::kObjectClosed, asked);
}

void RecordsetImpl::check_closed() const {
  if (is_open()) raise_error(error_number::kObjectOpen, kRecordsetSource);
}

void RecordsetImpl::set_types(CursorTypeEnum cursor, LockTypeEnum lock) {
  const bool good =
      cursor >= adOpenUnspecified && cursor <= adOpenStatic &&
      (lock == adLockUnspecified || (lock >= adLockReadOnly && lock <= adLockBatchOptimistic));
  if (!good) raise_error(error_number::kWrongArguments, kRecordsetSource);
  if (cursor != adOpenUnspecified) cursor_type = cursor;
  if (lock != adLockUnspecified) lock_type = lock;
}

std::int32_t RecordsetImpl::run(ConnectionImpl& link, std::shared_ptr<Connection> owner,
                                const Statement& statement) {
  timeout_ = statement.timeout;
  const std::int32_t affected = run_by_kind(link, statement);
  show_text(source, statement.text, statement.kind, statement.arguments, true);
  connection = std::move(owner);
  if (columns_ == nullptr) return affected;
  link.attach(*this);
  link_ = &link;
  if (cursor_location.value_or(link.cursor_location) == adUseClient) cursor_type = adOpenStatic;
  if (lock_type == adLockBatchOptimistic) lock_type = adLockOptimistic;
  return affected;
}

std::int32_t RecordsetImpl::run_by_kind(ConnectionImpl& link, const Statement& statement) {
  switch (statement.kind) {
    case adCmdTable:
    case adCmdTableDirect:
      open_table(link, statement.text);
      return -1;
    case adCmdStoredProc:
      link.call(statement.text, statement.arguments, statement.timeout);
      return -1;
    case adCmdText:
      return run_query(link, statement);
    case adCmdUnknown:
      break;
  }
  if (!is_bare_name(statement.text)) return run_query(link, statement);
  try {
    open_table(link, statement.text);
  } catch (const Error& e) {
    if (e.number() != error_number::kNoTable) throw;
    link.call(statement.text, statement.arguments, statement.timeout);
  }
  return -1;
}

std::int32_t RecordsetImpl::run_query(ConnectionImpl& link, const Statement& statement) {
  const auto cursor = link.execute(statement.text, statement.values, statement.timeout);
  if (!cursor->columns()->empty() && statement.keep_rows) {
    ColumnList columns = cursor->columns();
    rows_.reset(columns->size());
    rows_.read(*cursor, row_limit());
    row_ = 0;
    table_.clear();
    unread_ = false;
    columns_ = std::move(columns);
  }
  return clipped(cursor->rows_affected());
}

void RecordsetImpl::open_table(ConnectionImpl& link, std::string_view table) {
  ColumnList columns = link.describe(table, timeout_);
  rows_.reset(columns->size());
  row_ = 0;
  table_ = table;
  unread_ = true;
  columns_ = std::move(columns);
}

void RecordsetImpl::read_table() {
  const auto cursor = link_->execute("select * from " + table_, {}, timeout_);
  if (cursor->columns()->size() != columns_->size()) {  // altered since it was opened
    columns_ = cursor->columns();
    target_.reset();
  }
  RowStore read;
  read.reset(columns_->size());
  read.read(*cursor, row_limit());
  rows_ = std::move(read);
  forget_added_rows();
  row_ = 0;
  unread_ = false;
}

void RecordsetImpl::close() {
  check_open(kRecordsetSource);
  if (edit_.pending()) raise_error(error_number::kNotAllowedInContext, kRecordsetSource);
  link_->detach(*this);
  release();
}

void RecordsetImpl::connection_closes() noexcept {
  release();
  connection.reset();
}

void RecordsetImpl::release() noexcept {
  link_ = nullptr;
  edit_.drop();
  rows_.reset(0);
  columns_.reset();
  target_.reset();
  forget_added_rows();
  unread_ = false;
}

void RecordsetImpl::settle() {
  if (unread_ && rows_.size() == 0 && !edit_.adding()) read_table();
}

bool RecordsetImpl::has_row() const noexcept {
  return row_ >= 0 && rows_.is_live(static_cast<std::size_t>(row_));
}

void RecordsetImpl::check_row(std::string_view asked) {
  settle();
  if (!has_row()) raise_error(error_number::kNoCurrentRecord, asked);
}

void RecordsetImpl::check_writable(std::string_view asked) const {
  if (lock_type == adLockReadOnly) raise_error(error_number::kProviderCannot, asked);
}

bool RecordsetImpl::at_end() {
  check_open(kRecordsetSource);
  settle();
  return !edit_.adding() && row_ >= static_cast<std::ptrdiff_t>(rows_.size());
}

bool RecordsetImpl::at_begin() {
  check_open(kRecordsetSource);
  settle();
  if (edit_.adding()) return false;
  return row_ < 0 || (rows_.live() == 0 && row_ >= static_cast<std::ptrdiff_t>(rows_.size()));
}

bool RecordsetImpl::counts_rows() const noexcept {
  return cursor_type == adOpenKeyset || cursor_type == adOpenStatic;
}

std::int32_t RecordsetImpl::count() {
  check_open(kRecordsetSource);
  if (!counts_rows()) return -1;
  if (unread_ && (rows_.size() > 0 || edit_.adding())) {
    return count_in_database();  // reading the table now would lose the added row's place
  }
  settle();
  return clipped(static_cast<std::int64_t>(rows_.live()));
}

std::int32_t RecordsetImpl::count_in_database() {
  const auto cursor = link_->execute("select count(*) from " + table_, {}, timeout_);
  if (!cursor->next()) return -1;
  const std::int32_t all = to_long(cursor->value(0));
  return max_records == 0 ? all : std::min(all, max_records);
}

void RecordsetImpl::start_move() {
  check_open(kRecordsetSource);
  store_pending();
}

void RecordsetImpl::require_rows() {
  if (unread_) read_table();
  if (rows_.live() == 0) raise_error(error_number::kNoCurrentRecord, kRecordsetSource);
}

void RecordsetImpl::move_first() {
  start_move();
  require_rows();
  row_ = static_cast<std::ptrdiff_t>(rows_.next_live(0));
}

void RecordsetImpl::move_last() {
  start_move();
  require_rows();
  row_ = rows_.previous_live(static_cast<std::ptrdiff_t>(rows_.size()) - 1);
}

void RecordsetImpl::move_next() {
  start_move();
  settle();
  if (row_ >= static_cast<std::ptrdiff_t>(rows_.size())) {
    raise_error(error_number::kNoCurrentRecord, kRecordsetSource);
  }
  row_ = static_cast<std::ptrdiff_t>(rows_.next_live(static_cast<std::size_t>(row_ + 1)));
}

void RecordsetImpl::move_previous() {
  start_move();
  settle();
  if (row_ < 0) raise_error(error_number::kNoCurrentRecord, kRecordsetSource);
  if (unread_) {  // back from the added rows: what stands before them is not read yet
    move_last();
    return;
  }
  if (rows_.live() == 0) raise_error(error_number::kNoCurrentRecord, kRecordsetSource);
  row_ = rows_.previous_live(row_ - 1);
}

std::int32_t RecordsetImpl::position() {
  check_open(kRecordsetSource);
  if (!counts_rows() || edit_.adding()) return adPosUnknown;
  settle();
  if (unread_ || rows_.live() == 0) return adPosUnknown;
  if (row_ < 0) return adPosBOF;
  if (row_ >= static_cast<std::ptrdiff_t>(rows_.size())) return adPosEOF;
  std::int32_t before = 0;
  for (std::size_t i = 0; i < static_cast<std::size_t>(row_); ++i) before += rows_.is_live(i);
  return before + 1;
}

void RecordsetImpl::move_to(std::int32_t position) {
  start_move();
  if (!counts_rows()) raise_error(error_number::kProviderCannot, kRecordsetSource);
  require_rows();
  if (position < 1 || static_cast<std::size_t>(position) > rows_.live()) {
    raise_error(error_number::kWrongArguments, kRecordsetSource);
  }
  std::size_t row = rows_.next_live(0);
  for (std::int32_t n = 1; n < position; ++n) row = rows_.next_live(row + 1);
  row_ = static_cast<std::ptrdiff_t>(row);
}

std::size_t RecordsetImpl::find_column(std::string_view name) const {
  if (columns_ == nullptr) raise_no_such_column(name);
  return columns_->named(name);
}

const Column& RecordsetImpl::column(std::size_t index) const {
  if (index >= column_count()) raise_error(error_number::kObjectClosed, kFieldSource);
  return (*columns_)[index];
}

Variant RecordsetImpl::value(std::size_t index) {
  column(index);
  const Variant* const assigned = edit_.find(static_cast<ColumnIndex>(index));
  if (assigned != nullptr) return *assigned;
  return original_value(index);
}

Variant RecordsetImpl::original_value(std::size_t index) {
  column(index);
  if (edit_.adding()) return Null{};
  check_row(kFieldSource);
  complete_added_row(static_cast<ColumnIndex>(index));
  return rows_.value(static_cast<std::size_t>(row_), index);
}

void RecordsetImpl::assign(std::size_t index, Variant&& value) {
  const Column& shown = column(index);
  check_writable(kFieldSource);
  if (!edit_.adding()) check_row(kFieldSource);
  if (!edit_.pending()) complete_added_row(std::nullopt);
  const Column* const stored = target().column(static_cast<ColumnIndex>(index));
  convert_for(stored != nullptr ? *stored : shown, value);
  edit_.assign(static_cast<ColumnIndex>(index), std::move(value));
}

EditModeEnum RecordsetImpl::edit_mode() {
  check_open(kRecordsetSource);
  if (!edit_.adding()) check_row(kRecordsetSource);
  return edit_.mode();
}

void RecordsetImpl::add_new() {
  check_open(kRecordsetSource);
  check_writable(kRecordsetSource);
  store_pending();
  edit_.begin_add(column_count());
}

void RecordsetImpl::store_pending() {
  if (edit_.pending()) update();
}

void RecordsetImpl::update() {
  check_open(kRecordsetSource);
  check_writable(kRecordsetSource);
  if (!edit_.pending()) return;  // kept: passes also without a current row, pages rely on it
  if (edit_.adding()) {
    if (edit_.columns().empty()) {
      throw Error(error_number::kErrorsOccurred, std::string(kRecordsetSource),
                  in_language("Não é possível inserir uma linha vazia: atribua valor a pelo menos "
                              "uma coluna.",
                              "Cannot insert an empty row - must have at least one column value "
                              "set."));
    }
    target().insert(*link_, edit_, timeout_);
    keep_added_row();
  } else {
    const auto row = static_cast<std::size_t>(row_);
    target().update(*link_, edit_, rows_, row, timeout_);
    keep_values(row);
  }
  edit_.drop();
}

void RecordsetImpl::keep_values(std::size_t row) {
  const std::span<const ColumnIndex> columns = edit_.columns();
  for (std::size_t i = 0; i < columns.size(); ++i) rows_.set(row, columns[i], edit_.take_value(i));
}

void RecordsetImpl::keep_added_row() {
  const std::size_t row = rows_.append();
  keep_values(row);
  row_ = static_cast<std::ptrdiff_t>(row);
  const std::span<const ColumnIndex> assigned = edit_.columns();
  if (assigned.size() < column_count()) {
    added_.push_back({row, link_->changes(), added_columns_.size(), assigned.size()});
    added_columns_.insert(added_columns_.end(), assigned.begin(), assigned.end());
  }
}

/// Reads what the database made of the current row when it was added here and `asked` was not
/// assigned; any column when null.
void RecordsetImpl::complete_added_row(std::optional<ColumnIndex> asked) {
  const auto row = static_cast<std::size_t>(row_);
  const auto added = std::ranges::lower_bound(added_, row, {}, &AddedRow::row);
  if (added == added_.end() || added->row != row) return;
  const auto assigned =
      std::span<const ColumnIndex>(added_columns_).subspan(added->assigned, added->assignments);
  if (asked && std::ranges::find(assigned, *asked) != assigned.end()) return;
  target().read_added_row(*link_, rows_, row, assigned, link_->changes() == added->change,
                          timeout_);
  added_.erase(added);
}

void RecordsetImpl::forget_added_rows() noexcept {
  added_.clear();
  added_columns_.clear();
  if (added_columns_.capacity() <= kMostAddedKept) return;
  std::vector<AddedRow>().swap(added_);
  std::vector<ColumnIndex>().swap(added_columns_);
}

void RecordsetImpl::cancel_update() {
  check_open(kRecordsetSource);
  if (!edit_.pending()) raise_error(error_number::kNotAllowedInContext, kRecordsetSource);
  edit_.drop();
}

void RecordsetImpl::remove() {
  check_open(kRecordsetSource);
  check_writable(kRecordsetSource);
  if (edit_.pending()) raise_error(error_number::kNotAllowedInContext, kRecordsetSource);
  check_row(kRecordsetSource);
  complete_added_row(std::nullopt);
  const auto row = static_cast<std::size_t>(row_);
  target().remove(*link_, rows_, row, timeout_);
  rows_.erase(row);
}

const UpdateTarget& RecordsetImpl::target() {
  if (target_ == nullptr) {
    target_ = table_.empty() ? link_->targets().find(*link_, source, columns_, timeout_)
                             : link_->targets().of_table(table_, columns_);
  }
  return *target_;
}

}  // namespace pelm::ado
