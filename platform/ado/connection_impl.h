/// What a connection shares with the commands and record sets on it.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pelm/ado/connection.h"
#include "platform/ado/session_pool.h"

namespace pelm::ado {

/// What a connection tells before it closes: a record set on it closes, a command is detached.
class Attached {
 public:
  virtual void connection_closes() noexcept = 0;

 protected:
  ~Attached() = default;
};

class ConnectionImpl {
 public:
  static ConnectionImpl& of(const Connection& connection) { return *connection.impl_; }
  /// Raises 3709 with `source` unless `connection` is an open one.
  static ConnectionImpl& opened(const Connection* connection, std::string_view source);

  bool is_open() const noexcept { return static_cast<bool>(lease_); }
  void open(std::string_view user, std::string_view password);
  void close() noexcept;

  void attach(Attached& object) { attached_.push_back(&object); }
  void detach(const Attached& object) noexcept;

  /// `timeout`: seconds, 0 waits for ever.
  std::unique_ptr<Cursor> execute(std::string_view sql, std::span<const Variant> values,
                                  std::int32_t timeout);
  void call(std::string_view procedure, std::span<ProcedureArgument> arguments,
            std::int32_t timeout);
  ColumnList describe(std::string_view table, std::int32_t timeout);
  const Session& session() const noexcept { return lease_.session(); }
  StatementTexts& texts() const noexcept { return lease_.texts(); }
  KnownTargets& targets() const noexcept { return lease_.targets(); }
  /// Grows with every statement that may have changed something.
  std::uint64_t changes() const noexcept { return changes_; }

  /// False on a closed connection too.
  bool begin_reading() { return is_open() && lease_.session().begin_reading(); }
  void end_reading() noexcept {
    if (is_open()) lease_.session().end_reading();
  }

  std::string provider_name() const;
  void begin_transaction();
  void commit();
  void rollback();
  bool in_transaction() const noexcept { return in_transaction_; }

  // The properties, as a page set them.
  std::string connection_string;
  std::int32_t connection_timeout = 15;
  std::int32_t command_timeout = 30;
  ConnectModeEnum mode = adModeUnknown;
  CursorLocationEnum cursor_location = adUseServer;
  IsolationLevelEnum isolation_level = adXactReadCommitted;

 private:
  /// All that a session is opened from.
  std::string opening_words(std::string_view user, std::string_view password) const;
  SessionLease session_for(std::string_view user, std::string_view password,
                           std::string_view words) const;
  Session& session_with(std::int32_t timeout);

  SessionLease lease_;
  std::int32_t timeout_set_ = -1;  // unknown
  std::uint64_t changes_ = 0;
  bool in_transaction_ = false;
  std::vector<Attached*> attached_;
};

}  // namespace pelm::ado
