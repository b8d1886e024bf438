// A driver's connection.
#include "platform/ado/odbc/link.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <utility>

#include "pelm/error.h"
#include "platform/ado/error_source.h"
#include "platform/ado/odbc/attribute.h"
#include "platform/ado/odbc/driver_string.h"
#include "platform/ado/odbc/errors.h"
#include "platform/ado/odbc/opening.h"
#include "platform/ado/odbc/wide_text.h"

namespace pelm::ado::odbc {
namespace {

struct Level {
  IsolationLevelEnum asked;
  SQLUINTEGER odbc;
};

// From the weakest; a server that lacks one gets the next.
constexpr std::array kLevels = {Level{adXactReadUncommitted, SQL_TXN_READ_UNCOMMITTED},
                                Level{adXactReadCommitted, SQL_TXN_READ_COMMITTED},
                                Level{adXactRepeatableRead, SQL_TXN_REPEATABLE_READ},
                                Level{adXactSerializable, SQL_TXN_SERIALIZABLE}};

std::atomic<std::uint64_t>& losses_so_far() {
  static std::atomic<std::uint64_t> count{0};
  return count;
}

}  // namespace

Link::Link(const SessionSettings& settings) try
    : dbc_(open_link(driver_string(settings), settings.properties.for_display(),
                     settings.connection_timeout, settings.mode == adModeRead)) {
  learn();
} catch (...) {
  ++losses_so_far();
}

Link::~Link() {
  if (in_transaction_) SQLEndTran(SQL_HANDLE_DBC, dbc_, SQL_ROLLBACK);
  SQLDisconnect(dbc_);
  SQLFreeHandle(SQL_HANDLE_DBC, dbc_);
}

void Link::learn() {
  kind_ = server_kind_of(info_text(SQL_DBMS_NAME));
  quote_ = info_text(SQL_IDENTIFIER_QUOTE_CHAR);
  if (quote_ == " ") quote_.clear();
  SQLGetInfoW(dbc_, SQL_TXN_ISOLATION_OPTION, &isolation_offered_, sizeof isolation_offered_,
              nullptr);
  SQLGetInfoW(dbc_, SQL_DEFAULT_TXN_ISOLATION, &isolation_, sizeof isolation_, nullptr);
}

std::string Link::info_text(SQLUSMALLINT what) const {
  std::array<char16_t, 128> text{};
  SQLSMALLINT bytes = 0;
  if (!SQL_SUCCEEDED(SQLGetInfoW(dbc_, what, text.data(), sizeof text, &bytes))) return {};
  const std::size_t most = text.size() - 1;
  const auto size = std::min(most, static_cast<std::size_t>(std::max<int>(bytes, 0)) / 2);
  return utf8({text.data(), size});
}

void Link::fail(std::string_view what) {
  std::vector<DiagnosticRecord> records = diagnostics_of(SQL_HANDLE_DBC, dbc_);
  bool lost = known_dead();
  for (const DiagnosticRecord& r : records) lost = lost || says_lost(kind_, r);
  if (lost) lose();
  throw error_of(kind_, std::move(records), what);
}

void Link::lose() noexcept {
  if (!std::exchange(lost_, true)) ++losses_so_far();
}

std::uint64_t Link::losses() noexcept { return losses_so_far().load(); }

void Link::set_attribute(SQLINTEGER attribute, std::uintptr_t value, std::string_view what) {
  const SQLRETURN rc = SQLSetConnectAttrW(dbc_, attribute, attribute_value(value), SQL_IS_UINTEGER);
  if (!SQL_SUCCEEDED(rc)) fail(what);
}

void Link::isolation(IsolationLevelEnum level) {
  auto it = std::ranges::find(kLevels, level, &Level::asked);
  while (it != kLevels.end() && (it->odbc & isolation_offered_) == 0) ++it;
  if (it == kLevels.end() || it->odbc == isolation_) return;
  set_attribute(SQL_ATTR_TXN_ISOLATION, it->odbc, "set transaction isolation level");
  isolation_ = it->odbc;
}

void Link::begin() {
  if (in_transaction_) {
    raise_provider_error(error_number::kProviderFailure,
                         in_language("Já há uma transação aberta nesta conexão.",
                                     "A transaction is open on this connection already."));
  }
  set_attribute(SQL_ATTR_AUTOCOMMIT, SQL_AUTOCOMMIT_OFF, "begin transaction");
  in_transaction_ = true;
}

void Link::end(SQLSMALLINT how) {
  const std::string_view what = how == SQL_COMMIT ? "commit" : "rollback";
  if (!in_transaction_) {
    raise_provider_error(error_number::kProviderFailure,
                         in_language("Não há transação aberta nesta conexão.",
                                     "No transaction is open on this connection."));
  }
  if (!SQL_SUCCEEDED(SQLEndTran(SQL_HANDLE_DBC, dbc_, how))) fail(what);
  in_transaction_ = false;
  set_attribute(SQL_ATTR_AUTOCOMMIT, SQL_AUTOCOMMIT_ON, what);
}

bool Link::known_dead() const noexcept {
  SQLUINTEGER dead = 0;
  const SQLRETURN rc =
      SQLGetConnectAttrW(dbc_, SQL_ATTR_CONNECTION_DEAD, &dead, sizeof dead, nullptr);
  return SQL_SUCCEEDED(rc) && dead == SQL_CD_TRUE;
}

void Link::forget_settings() noexcept {
  if (kind_ != ServerKind::SqlServer) return;
  SQLSetConnectAttrW(dbc_, SQL_ATTR_RESET_CONNECTION, attribute_value(SQL_RESET_CONNECTION_YES),
                     SQL_IS_UINTEGER);
}

}  // namespace pelm::ado::odbc
