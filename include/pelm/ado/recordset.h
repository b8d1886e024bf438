/// Rows of a query or a table, read and changed one at a time.
///
///     auto rs = conn.RunSQL(sql);
///     while (!rs->Eof()) {
///       use(pelm::to_text(rs->Fields("NOME").Value()));
///       rs->MoveNext();
///     }
///     rs->Close();
///
/// A record set over a query holds all its rows once open, so that other statements can run while
/// it is read. One over a table (a table command) holds no row before it is asked to: adding
/// costs the same in a table of any size. One thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "pelm/ado/constants.h"
#include "pelm/object.h"
#include "pelm/variant.h"

namespace pelm::ado {

class Command;
class Connection;
class Recordset;
class RecordsetImpl;

/// One column of the current row. A handle: valid while its record set lives and stays open.
class Field {
 public:
  std::string_view Name() const;
  std::size_t Index() const noexcept { return index_; }  ///< 0-based
  DataTypeEnum Type() const;
  /// In characters for text, in bytes otherwise; 0 where the provider sets no limit.
  std::int32_t DefinedSize() const;
  /// Raises 3021 without a current row.
  Variant Value() const;
  /// Converts to the column's type at once: -2147217913 when it cannot, -2147217833 when too
  /// large. Raises 3021 without a current row, 3251 in a read-only record set.
  void Value(Variant v);
  /// As last read from the database.
  Variant OriginalValue() const;

  Field& operator=(Variant v);
  Field(const Field&) = default;
  Field& operator=(const Field&) = delete;  // copying a value is spelt Value()

 private:
  friend class Recordset;
  Field(RecordsetImpl& owner, std::size_t index) : owner_(&owner), index_(index) {}
  RecordsetImpl* owner_;
  std::size_t index_;
};

class Recordset : public Object {
 public:
  Recordset();
  ~Recordset() override;  ///< Pending edits are dropped in silence. Never throws.

  /// Default adUseServer. Assigning raises 3705 while open.
  CursorLocationEnum CursorLocation() const;
  void CursorLocation(CursorLocationEnum location);
  /// Default adOpenForwardOnly; adOpenStatic once open on the client's side. Assigning raises 3705
  /// while open.
  CursorTypeEnum CursorType() const;
  void CursorType(CursorTypeEnum type);
  /// Default adLockReadOnly. There are no batches here: adLockBatchOptimistic opens as
  /// adLockOptimistic. Assigning raises 3705 while open.
  LockTypeEnum LockType() const;
  void LockType(LockTypeEnum type);
  /// Rows of a page as `PageCount` and `AbsolutePage` count them; default 10. Raises 3001 below 1.
  std::int32_t PageSize() const;
  void PageSize(std::int32_t rows);
  /// Default 1. A hint, kept and reported. Raises 3001 below 1.
  std::int32_t CacheSize() const;
  void CacheSize(std::int32_t rows);
  /// 0 is no limit. Assigning raises 3705 while open, 3001 below 0.
  std::int32_t MaxRecords() const;
  void MaxRecords(std::int32_t rows);
  ObjectStateEnum State() const;
  /// The text it was opened from, as a command reports it. Assigning raises 3705 while open.
  std::string Source() const;
  void Source(std::string text);
  /// Kept when closed, so that it may be opened again. Assigning raises 3705 while open.
  std::shared_ptr<Connection> ActiveConnection() const;
  void ActiveConnection(std::shared_ptr<Connection> connection);

  /// From a command with its own connection. A statement that returns no rows leaves the record
  /// set closed. Raises 3705 when open, 3709 without an open connection, the provider's errors.
  void Open(const std::shared_ptr<Command>& source, CursorTypeEnum cursor_type = adOpenUnspecified,
            LockTypeEnum lock_type = adLockUnspecified, std::int32_t options = adOptionUnspecified);
  /// From a text; `options` may be a CommandTypeEnum. Null stands for `ActiveConnection`.
  void Open(std::string_view source, std::shared_ptr<Connection> connection,
            CursorTypeEnum cursor_type = adOpenUnspecified,
            LockTypeEnum lock_type = adLockUnspecified, std::int32_t options = adOptionUnspecified);
  /// From `Source` and `ActiveConnection`.
  void Open();
  /// Raises 3704 when closed, 3219 with an edit pending.
  void Close();

  /// Past the last row ("EOF" to late binding: it is a macro of the C library). 3704 when closed.
  bool Eof() const;
  /// Before the first row, or no row at all. 3704 when closed.
  bool Bof() const;
  /// Rows held; -1 for forward-only and dynamic cursors on the server's side, which do not count.
  std::int32_t RecordCount() const;
  /// Raises 3021 without a current row, except while a row is being added.
  EditModeEnum EditMode() const;

  /// Moves store a pending edit first, and fail as `Update` fails.
  void MoveFirst();     ///< 3021 when there is no row.
  void MoveLast();      ///< 3021 when there is no row.
  void MoveNext();      ///< 3021 when already past the last row.
  void MovePrevious();  ///< 3021 when already before the first row.

  /// 1 for the first row; adPosBOF, adPosEOF, adPosUnknown otherwise and where `RecordCount` does
  /// not count. Moving raises 3001 outside 1 to `RecordCount`.
  std::int32_t AbsolutePosition() const;
  void AbsolutePosition(std::int32_t position);
  /// Pages of `PageSize` rows; -1 where `RecordCount` does not count.
  std::int32_t PageCount() const;
  /// The page of the current row, from 1, or as `AbsolutePosition`. Moving goes to a page's first
  /// row; raises 3001 outside 1 to `PageCount`.
  std::int32_t AbsolutePage() const;
  void AbsolutePage(std::int32_t page);

  /// By name without case, or by 0-based position. Raises 3265.
  Field Fields(std::string_view name);
  Field Fields(std::size_t index);
  std::size_t FieldCount() const;  ///< 0 when closed.

  /// Begins a new row. Raises 3251 when read-only; stores a pending edit first.
  void AddNew();
  /// Stores what was assigned, in the order of the assignments. Nothing pending: does nothing, also
  /// without a current row. An added row becomes the current one. Raises -2147217864 when the row
  /// was changed or deleted by somebody else, -2147217887 for an added row without any value, 3251
  /// when read-only or when the rows are not those of one table; the edit stays pending after any
  /// failure.
  void Update();
  /// Drops the pending edit. Raises 3219 when nothing is pending.
  void CancelUpdate();
  /// Removes the current row from the database; it stays the current one, without values, until
  /// the next move. Raises 3219 with an edit pending, and what `Update` raises.
  void Delete();
  /// Ends an asynchronous opening; there is none here, so it does nothing.
  void Cancel();

 private:
  friend class RecordsetImpl;
  friend class ConnectionImpl;
  std::unique_ptr<RecordsetImpl> impl_;
};

}  // namespace pelm::ado
