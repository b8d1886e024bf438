// Lending statement handles.
#include "platform/ado/odbc/statement.h"

#include <algorithm>
#include <exception>

namespace pelm::ado::odbc {
namespace {

/// The shapes that pages write; a server has a limit of open statements for each connection.
constexpr std::size_t kMostIdle = 32;

}  // namespace

StatementHandle::~StatementHandle() { SQLFreeHandle(SQL_HANDLE_STMT, handle); }

StatementLease::~StatementLease() {
  if (statement_ == nullptr || spoiled_) return;
  const SQLHSTMT handle = statement_->handle;
  const bool reusable = SQL_SUCCEEDED(SQLFreeStmt(handle, SQL_CLOSE)) &&
                        SQL_SUCCEEDED(SQLFreeStmt(handle, SQL_RESET_PARAMS));
  if (reusable) pool_->give_back(std::move(statement_));
}

std::unique_ptr<StatementHandle> StatementPool::take(SQLHDBC connection, std::string_view text) {
  const auto found =
      std::ranges::find_if(idle_, [&](const auto& idle) { return idle->text == text; });
  if (found != idle_.end()) {
    std::unique_ptr<StatementHandle> statement = std::move(*found);
    idle_.erase(found);
    return statement;
  }
  SQLHSTMT handle = SQL_NULL_HSTMT;
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, connection, &handle))) return nullptr;
  return std::make_unique<StatementHandle>(handle);
}

void StatementPool::give_back(std::unique_ptr<StatementHandle> statement) noexcept {
  try {
    idle_.push_back(std::move(statement));
  } catch (const std::exception&) {
    return;  // no memory to keep it
  }
  if (idle_.size() > kMostIdle) idle_.pop_front();
}

}  // namespace pelm::ado::odbc
