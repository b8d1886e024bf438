// Opening, closing, running statements and transactions.
#include "pelm/ado/connection.h"

#include <algorithm>
#include <array>
#include <utility>

#include "pelm/ado/recordset.h"
#include "pelm/error.h"
#include "platform/ado/connection_impl.h"
#include "platform/ado/connection_string.h"
#include "platform/ado/error_source.h"
#include "platform/ado/name_compare.h"
#include "platform/ado/recordset_impl.h"
#include "platform/ado/spare_recordsets.h"

namespace pelm::ado {
namespace {

constexpr std::string_view kOdbcProvider = "MSDASQL";

[[noreturn]] void no_such_provider(const ConnectionString& properties) {
  const std::string* const named = properties.find("Provider");
  const std::string hint_pt = "escreva Provider=SQLite;Data Source=CAMINHO.";
  const std::string hint_en = "write Provider=SQLite;Data Source=PATH.";
  const std::string given = properties.for_display();
  raise_error(
      error_number::kProviderNotFound, kConnectionSource,
      named != nullptr
          ? in_language("O provedor \"" + *named + "\" não existe neste programa; " + hint_pt,
                        "There is no provider \"" + *named + "\" in this program; " + hint_en)
          : in_language("A string de conexão \"" + given +
                            "\" não tem Provider=SQLite, e ODBC não está disponível neste "
                            "programa; " +
                            hint_pt,
                        "The connection string \"" + given +
                            "\" has no Provider=SQLite, and ODBC is not available in this "
                            "program; " +
                            hint_en));
}

void check_closed(const ConnectionImpl& c) {
  if (c.is_open()) raise_error(error_number::kObjectOpen, kConnectionSource);
}

void check_open(const ConnectionImpl& c) {
  if (!c.is_open()) raise_error(error_number::kObjectClosed, kConnectionSource);
}

void check_argument(bool good) {
  if (!good) raise_error(error_number::kWrongArguments, kConnectionSource);
}

}  // namespace

ConnectionImpl& ConnectionImpl::opened(const Connection* connection, std::string_view source) {
  if (connection == nullptr || !of(*connection).is_open()) {
    raise_error(error_number::kInvalidConnection, source);
  }
  return of(*connection);
}

void ConnectionImpl::open(std::string_view user, std::string_view password) {
  const std::string words = opening_words(user, password);
  lease_ = acquire_session_again(words);
  if (!lease_) lease_ = session_for(user, password, words);
  timeout_set_ = -1;
  in_transaction_ = false;
}

std::string ConnectionImpl::opening_words(std::string_view user, std::string_view password) const {
  constexpr char kEnd = '\0';
  std::string words;
  words.reserve(connection_string.size() + user.size() + password.size() + 8);
  words += connection_string;
  for (const std::string_view word : {user, password}) (words += kEnd) += word;
  (words += kEnd) += std::to_string(mode);
  return words;
}

SessionLease ConnectionImpl::session_for(std::string_view user, std::string_view password,
                                         std::string_view words) const {
  SessionSettings settings;
  settings.properties = ConnectionString::parse(connection_string);
  settings.connection_timeout = connection_timeout;
  settings.mode = mode;
  const std::string name = settings.properties.get("Provider", kOdbcProvider);
  const std::shared_ptr<ado::Provider> provider = find_provider(name);
  if (provider == nullptr) no_such_provider(settings.properties);
  const bool odbc = same_name(name, kOdbcProvider);
  if (!user.empty()) settings.properties.set(odbc ? "UID" : "User ID", std::string(user));
  if (!password.empty()) settings.properties.set(odbc ? "PWD" : "Password", std::string(password));
  return acquire_session(provider, settings, words);
}

void ConnectionImpl::close() noexcept {
  while (!attached_.empty()) {
    Attached* const last = attached_.back();
    attached_.pop_back();
    last->connection_closes();
  }
  lease_.give_back();  // rolls back what is open
  in_transaction_ = false;
}

void ConnectionImpl::detach(const Attached& object) noexcept {
  const auto last = std::find(attached_.rbegin(), attached_.rend(), &object);
  if (last != attached_.rend()) attached_.erase(std::next(last).base());
}

Session& ConnectionImpl::session_with(std::int32_t timeout) {
  Session& session = lease_.session();
  if (timeout != timeout_set_) {
    session.command_timeout(timeout);
    timeout_set_ = timeout;
  }
  return session;
}

std::unique_ptr<Cursor> ConnectionImpl::execute(std::string_view sql,
                                                std::span<const Variant> values,
                                                std::int32_t timeout) {
  std::unique_ptr<Cursor> cursor = session_with(timeout).execute(sql, values);
  if (cursor->columns()->empty()) ++changes_;
  return cursor;
}

ColumnList ConnectionImpl::describe(std::string_view table, std::int32_t timeout) {
  return session_with(timeout).describe(table);
}

void ConnectionImpl::call(std::string_view procedure, std::span<ProcedureArgument> arguments,
                          std::int32_t timeout) {
  ++changes_;
  session_with(timeout).call(procedure, arguments);
}

std::string ConnectionImpl::provider_name() const {
  if (is_open()) return std::string(lease_.provider().name());
  try {
    return ConnectionString::parse(connection_string).get("Provider", kOdbcProvider);
  } catch (const Error&) {
    return std::string(kOdbcProvider);  // opening tells what is wrong with the string
  }
}

void ConnectionImpl::begin_transaction() {
  session_with(command_timeout).begin(isolation_level);
  in_transaction_ = true;
}

void ConnectionImpl::commit() {
  session_with(command_timeout).commit();
  in_transaction_ = false;
}

void ConnectionImpl::rollback() {
  session_with(command_timeout).rollback();
  in_transaction_ = false;
}

Connection::Connection() : impl_(std::make_unique<ConnectionImpl>()) {}

Connection::~Connection() { impl_->close(); }

const std::string& Connection::ConnectionString() const { return impl_->connection_string; }

void Connection::ConnectionString(std::string value) {
  check_closed(*impl_);
  impl_->connection_string = std::move(value);
}

std::int32_t Connection::ConnectionTimeout() const { return impl_->connection_timeout; }

void Connection::ConnectionTimeout(std::int32_t seconds) {
  check_closed(*impl_);
  check_argument(seconds >= 0);
  impl_->connection_timeout = seconds;
}

std::int32_t Connection::CommandTimeout() const { return impl_->command_timeout; }

void Connection::CommandTimeout(std::int32_t seconds) {
  check_argument(seconds >= 0);
  impl_->command_timeout = seconds;
}

ConnectModeEnum Connection::Mode() const { return impl_->mode; }

void Connection::Mode(ConnectModeEnum mode) {
  check_closed(*impl_);
  check_argument(mode >= 0);
  impl_->mode = mode;
}

CursorLocationEnum Connection::CursorLocation() const { return impl_->cursor_location; }

void Connection::CursorLocation(CursorLocationEnum location) {
  check_argument(location == adUseServer || location == adUseClient);
  impl_->cursor_location = location;
}

IsolationLevelEnum Connection::IsolationLevel() const { return impl_->isolation_level; }

void Connection::IsolationLevel(IsolationLevelEnum level) {
  static constexpr std::array kLevels = {adXactUnspecified,     adXactChaos,
                                         adXactReadUncommitted, adXactReadCommitted,
                                         adXactRepeatableRead,  adXactSerializable};
  check_argument(std::ranges::find(kLevels, level) != kLevels.end());
  impl_->isolation_level = level;
}

std::string Connection::Provider() const { return impl_->provider_name(); }

std::string Connection::Version() const { return "2.5"; }

ObjectStateEnum Connection::State() const { return impl_->is_open() ? adStateOpen : adStateClosed; }

void Connection::Open(std::string_view connection_string, std::string_view user,
                      std::string_view password, std::int32_t /*options*/) {
  check_closed(*impl_);
  if (!connection_string.empty()) impl_->connection_string = connection_string;
  impl_->open(user, password);
}

void Connection::Close() {
  check_open(*impl_);
  if (impl_->in_transaction()) raise_error(error_number::kInTransaction, kConnectionSource);
  const pelm::ObjectRef self = weak_from_this().lock();  // a record set may hold the last reference
  impl_->close();
}

std::shared_ptr<Recordset> Connection::Execute(std::string_view command_text,
                                               std::int32_t* records_affected,
                                               std::int32_t options) {
  ConnectionImpl& c = ConnectionImpl::opened(this, kConnectionSource);
  Statement statement;
  statement.text = command_text;
  statement.kind = command_type_of(options);
  statement.timeout = c.command_timeout;
  statement.keep_rows = !has_option(options, adExecuteNoRecords);
  auto result = make_recordset();
  auto self = std::static_pointer_cast<Connection>(weak_from_this().lock());
  const std::int32_t affected = RecordsetImpl::of(*result).run(c, std::move(self), statement);
  if (records_affected != nullptr) *records_affected = affected;
  return result;
}

std::int32_t Connection::BeginTrans() {
  check_open(*impl_);
  impl_->begin_transaction();
  return 1;
}

void Connection::CommitTrans() {
  check_open(*impl_);
  impl_->commit();
}

void Connection::RollbackTrans() {
  check_open(*impl_);
  impl_->rollback();
}

}  // namespace pelm::ado
