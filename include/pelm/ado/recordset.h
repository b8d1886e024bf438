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
  DataTypeEnum Type() const;
  /// In characters for text, in bytes otherwise; 0 where the provider sets no limit.
  std::int32_t DefinedSize() const;
  /// Raises 3021 without a current row.
  Variant Value() const;
  /// Converts to the column's type at once: -2147217913 when it cannot, -2147217833 when too
  /// large. Raises 3021 without a current row, 3251 in a read-only record set.
  void Value(const Variant& v);
  /// As last read from the database.
  Variant OriginalValue() const;

  Field& operator=(const Variant& v) {
    Value(v);
    return *this;
  }
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
  CursorTypeEnum CursorType() const;
  void CursorType(CursorTypeEnum type);
  LockTypeEnum LockType() const;
  void LockType(LockTypeEnum type);
  /// Rows a page of a client-side record set; default 10. A hint, kept and reported.
  std::int32_t PageSize() const;
  void PageSize(std::int32_t rows);
  /// Default 1. A hint, kept and reported. Raises 3001 below 1.
  std::int32_t CacheSize() const;
  void CacheSize(std::int32_t rows);
  /// 0 is no limit. Assigning raises 3705 while open.
  std::int32_t MaxRecords() const;
  void MaxRecords(std::int32_t rows);
  ObjectStateEnum State() const;
  /// The text it was opened from.
  std::string Source() const;
  std::shared_ptr<Connection> ActiveConnection() const;

  /// From a command with its own connection. A statement that returns no rows leaves the record
  /// set closed. Raises 3705 when open, 3709 without an open connection, the provider's errors.
  void Open(std::shared_ptr<Command> source, CursorTypeEnum cursor_type = adOpenForwardOnly,
            LockTypeEnum lock_type = adLockReadOnly, std::int32_t options = adOptionUnspecified);
  /// From a text; `options` may be adCmdText, adCmdTable or adCmdUnknown.
  void Open(std::string_view source, std::shared_ptr<Connection> connection,
            CursorTypeEnum cursor_type = adOpenForwardOnly, LockTypeEnum lock_type = adLockReadOnly,
            std::int32_t options = adOptionUnspecified);
  /// Raises 3704 when closed, 3219 with an edit pending.
  void Close();

  /// Past the last row ("EOF" to late binding: it is a macro of the C library). 3704 when closed.
  bool Eof() const;
  /// Before the first row, or no row at all. 3704 when closed.
  bool Bof() const;
  /// Rows held; -1 for forward-only and dynamic cursors, which do not count.
  std::int32_t RecordCount() const;
  EditModeEnum EditMode() const;

  /// Moves store a pending edit first, and fail as `Update` fails.
  void MoveFirst();  ///< 3021 when there is no row.
  void MoveNext();   ///< 3021 when already past the last row.

  /// By name without case, or by 0-based position. Raises 3265.
  Field Fields(std::string_view name);
  Field Fields(std::size_t index);
  std::size_t FieldCount() const;  ///< 0 when closed.

  /// Begins a new row. Raises 3251 when read-only; stores a pending edit first.
  void AddNew();
  /// Stores what was assigned. Nothing pending: does nothing, also without a current row. Raises
  /// -2147217864 when the row was changed or deleted by somebody else; the edit stays pending
  /// after any failure.
  void Update();
  /// Drops the pending edit. Raises 3219 when nothing is pending.
  void CancelUpdate();
  /// Removes the current row from the database.
  void Delete();
  /// Ends an asynchronous opening; there is none here, so it does nothing.
  void Cancel();

 private:
  friend class RecordsetImpl;
  friend class ConnectionImpl;
  std::unique_ptr<RecordsetImpl> impl_;
};

}  // namespace pelm::ado
