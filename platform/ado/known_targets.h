/// What was found out about statements whose rows were changed before.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/ado/statement_texts.h"

namespace pelm::ado {

class ConnectionImpl;
class UpdateTarget;

/// Belongs to a session. A statement is known again when it differs from an earlier one in nothing
/// but its numbers and its rows have the very same list of columns.
class KnownTargets {
 public:
  /// The table is described each time, so that one that changed is seen. Raises what describing it
  /// raises.
  std::shared_ptr<const UpdateTarget> find(ConnectionImpl& connection, std::string_view sql,
                                           const ColumnList& result, std::int32_t timeout);
  /// Of a table opened as such, by the name it was given; `columns` were described just then.
  std::shared_ptr<const UpdateTarget> of_table(std::string_view table, const ColumnList& columns);

 private:
  static constexpr std::size_t kMost = 16;
  struct Known {
    std::string sql;
    ColumnList result;
    std::shared_ptr<const UpdateTarget> target;
  };
  /// The one to fill next, emptied: the places are taken in turn.
  Known& next_place() noexcept;

  std::array<Known, kMost> known_;
  std::size_t next_ = 0;
};

}  // namespace pelm::ado
