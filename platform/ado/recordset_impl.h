/// The record set's state: its rows, its position, its pending edit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pelm/ado/recordset.h"
#include "platform/ado/connection_impl.h"
#include "platform/ado/edit_buffer.h"
#include "platform/ado/row_store.h"
#include "platform/ado/statement.h"
#include "platform/ado/update_target.h"

namespace pelm::ado {

/// What a page may set and ask back.
struct RecordsetProperties {
  std::optional<CursorLocationEnum> cursor_location;  // unset: the connection's
  CursorTypeEnum cursor_type = adOpenForwardOnly;
  LockTypeEnum lock_type = adLockReadOnly;
  std::int32_t page_size = 10;
  std::int32_t cache_size = 1;
  std::int32_t max_records = 0;
  std::string source;
  std::shared_ptr<Connection> connection;

  /// Its fields as one object, for callers by name: kept without being owned, so that it is the
  /// same one for as long as somebody holds it.
  std::weak_ptr<Object> fields_by_name;
};

/// A query's rows are read when it opens. A table's are not read before somebody asks where the
/// record set stands or what a row holds; until then `unread_` is true, and the rows held are
/// those added meanwhile.
class RecordsetImpl final : public RecordsetProperties, private Attached {
 public:
  static RecordsetImpl& of(const Recordset& recordset) { return *recordset.impl_; }

  RecordsetImpl() = default;
  RecordsetImpl(const RecordsetImpl&) = delete;
  RecordsetImpl& operator=(const RecordsetImpl&) = delete;
  ~RecordsetImpl();
  /// As new, but for the memory it has grown.
  void renew() noexcept;

  // Opening and closing.
  /// Runs a statement and holds its rows; stays closed where there are none. Returns the count of
  /// changed rows, -1 where the statement changes none. `connection` may be null for one that no
  /// shared_ptr owns.
  std::int32_t run(ConnectionImpl& link, std::shared_ptr<Connection> connection,
                   const Statement& statement);
  void close();
  bool is_open() const noexcept { return link_ != nullptr; }
  void check_open(std::string_view source) const;
  void check_closed() const;
  /// Takes over what `Open` was given; unspecified keeps what is set.
  void set_types(CursorTypeEnum cursor, LockTypeEnum lock);

  // Position. All of them check that the record set is open.
  bool at_end();
  bool at_begin();
  std::int32_t count();
  void move_first();
  void move_last();
  void move_next();
  void move_previous();
  std::int32_t position();
  void move_to(std::int32_t position);

  // Columns and values.
  /// Raises 3265.
  std::size_t find_column(std::string_view name) const;
  std::size_t column_count() const noexcept { return columns_ == nullptr ? 0 : columns_->size(); }
  const Column& column(std::size_t index) const;
  Variant value(std::size_t column);
  Variant original_value(std::size_t column);
  void assign(std::size_t column, Variant&& value);

  // Editing.
  EditModeEnum edit_mode();
  void add_new();
  void update();
  void cancel_update();
  void remove();

 private:
  /// A row added here, of which only the assigned columns are known.
  struct AddedRow {
    std::size_t row;
    std::uint64_t change;  // the connection's count when it was stored
    std::size_t assigned;  // where its columns begin in added_columns_
    std::size_t assignments;
  };

  void connection_closes() noexcept override;
  void release() noexcept;
  std::int32_t run_by_kind(ConnectionImpl& link, const Statement& statement);
  std::int32_t run_query(ConnectionImpl& link, const Statement& statement);
  void open_table(ConnectionImpl& link, std::string_view table);
  void read_table();
  std::size_t row_limit() const noexcept { return static_cast<std::size_t>(max_records); }

  bool counts_rows() const noexcept;
  std::int32_t count_in_database();
  void start_move();
  /// Reads the rows of a table; raises 3021 where there are none.
  void require_rows();
  /// Reads the rows of a table when the answer depends on them.
  void settle();
  bool has_row() const noexcept;
  void check_row(std::string_view source);
  void check_writable(std::string_view source) const;
  void store_pending();
  const UpdateTarget& target();
  void keep_values(std::size_t row);
  void keep_added_row();
  void complete_added_row(std::optional<ColumnIndex> asked);
  void forget_added_rows() noexcept;

  ConnectionImpl* link_ = nullptr;  // null: closed
  std::int32_t timeout_ = 30;
  ColumnList columns_;
  std::string table_;  // of a table record set, as it was named; else empty
  bool unread_ = false;
  RowStore rows_;
  std::ptrdiff_t row_ = 0;  // -1 before the first; rows_.size() after the last
  EditBuffer edit_;
  std::shared_ptr<const UpdateTarget> target_;
  std::vector<AddedRow> added_;  // by row
  std::vector<ColumnIndex> added_columns_;
};

}  // namespace pelm::ado
