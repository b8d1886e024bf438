// Reading the rows of a running statement.
#include "platform/ado/odbc/cursor.h"

namespace pelm::ado::odbc {

bool OdbcCursor::next() {
  if (at_end_) return false;
  if (!session_.fetch(lease_)) {
    at_end_ = true;
    return false;
  }
  for (std::size_t i = 0; i < row_.size(); ++i) {
    if (!read_value(lease_.get(), i, how_[i], row_[i])) {
      at_end_ = true;
      session_.fail(lease_, {});
    }
  }
  return true;
}

}  // namespace pelm::ado::odbc
