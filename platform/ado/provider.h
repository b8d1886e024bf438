/// The seam between the database objects and a database engine: provider, session, cursor.
///
/// A provider knows statements, values, keys and procedures. It has never heard of AddNew, of
/// current rows or of optimistic locking: those are written once, above this line. Every failure
/// leaves as `pelm::Error` with a number of `error_number`, the provider's name as source, the
/// engine's own text and diagnostics.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "pelm/ado/constants.h"
#include "pelm/variant.h"
#include "platform/ado/columns.h"
#include "platform/ado/connection_string.h"

namespace pelm::ado {

/// A running statement. Values are read before the next `next`.
class Cursor {
 public:
  virtual ~Cursor() = default;
  /// None for a statement that returns no rows. The very same list again stands for the same
  /// statement, the values of its literals apart, on tables that have not changed in between: a
  /// provider that cannot vouch for that hands out a list of its own each time.
  virtual const ColumnList& columns() const = 0;
  /// False at the end, and then for ever.
  virtual bool next() = 0;
  /// Of the current row: null, Long (Integer for adSmallInt), Double, Boolean, Date or text.
  virtual Variant value(std::size_t column) const = 0;
  /// Of an INSERT, UPDATE or DELETE that has run to its end; -1 for others.
  virtual std::int64_t rows_affected() const = 0;
};

/// A procedure's argument; `value` is read for input and written for output.
struct ProcedureArgument {
  std::string name = {};
  DataTypeEnum type = adVariant;
  ParameterDirectionEnum direction = adParamInput;
  std::int32_t size = 0;
  Variant value = {};
};

/// One conversation with a database. One thread at a time; may move between threads while idle.
class Session {
 public:
  virtual ~Session() = default;

  /// Seconds for each statement from now on; 0 waits for ever.
  virtual void command_timeout(std::int32_t seconds) = 0;

  /// Runs a statement in the dialect pages write (SQL Server's), `?` standing for the values in
  /// order. A statement without rows has run to its end on return. The cursor must go before the
  /// session does.
  virtual std::unique_ptr<Cursor> execute(std::string_view sql,
                                          std::span<const Variant> values = {}) = 0;

  /// The columns of a table or view, without reading a row of it; one call of the database at
  /// most. `table` as a statement may name it: qualified, between brackets or quotes. Raises
  /// kNoTable. Shared, so that record sets may keep it; the very same list again stands for the
  /// same table, unchanged.
  virtual ColumnList describe(std::string_view table) = 0;

  /// An identifier as it must stand in a statement of ours.
  virtual std::string quoted(std::string_view identifier) const = 0;

  /// A condition with one `?` that holds while a column has the value (never null) that was read
  /// from it. Overridden where plain equality would miss: texts too long to compare, fractions of
  /// a second that a Date has lost.
  virtual std::string same_value(const Column& column) const {
    return quoted(column.name) + " = ?";
  }

  virtual void call(std::string_view procedure, std::span<ProcedureArgument> arguments) = 0;

  virtual void begin(IsolationLevelEnum level) = 0;
  virtual void commit() = 0;
  virtual void rollback() = 0;

  /// From here to `end_reading`, or to the first statement that writes, what is read may all be as
  /// the first statement found it, which spares an engine a lock for each one. False where nothing
  /// has begun and nothing is to be ended: in a transaction, and with an engine that gains nothing.
  virtual bool begin_reading() { return false; }
  virtual void end_reading() noexcept {}

  /// When a session is given back: rolls back what is open and drops what its user left. Costs next
  /// to nothing where there is nothing to do. False when the session is lost and must go.
  virtual bool reset() noexcept = 0;
  /// When it is handed out again: false when it was lost in the meantime.
  virtual bool still_good() noexcept = 0;
};

/// What a session is opened with.
struct SessionSettings {
  ConnectionString properties;
  std::int32_t connection_timeout = 15;  ///< seconds, 0 waits for ever
  ConnectModeEnum mode = adModeUnknown;
};

class Provider {
 public:
  virtual ~Provider() = default;
  virtual std::string_view name() const = 0;
  virtual std::unique_ptr<Session> connect(const SessionSettings& settings) = 0;
  /// Sessions with equal keys may stand in for one another; "" is never pooled.
  virtual std::string pool_key(const SessionSettings& settings) const = 0;
};

/// Registers under the provider's name, without case, replacing an earlier one of that name.
/// Thread-safe; done once at start-up, never by a static initialiser.
void register_provider(std::shared_ptr<Provider> provider);
/// Null when there is none of that name.
std::shared_ptr<Provider> find_provider(std::string_view name);

}  // namespace pelm::ado
