/// What was found out about statements whose rows were changed before.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string_view>

#include "platform/ado/statement_texts.h"

namespace pelm::ado {

class ConnectionImpl;
class UpdateTarget;

/// Belongs to a session. A statement is known again by the list of its columns: a provider that
/// hands out the very same list twice vouches for the statement and for its tables
/// (`Cursor::columns`, `Session::describe`).
class KnownTargets {
 public:
  /// Of a query. Raises what describing its table raises.
  std::shared_ptr<const UpdateTarget> find(ConnectionImpl& connection, std::string_view sql,
                                           const ColumnList& result, std::int32_t timeout);
  /// Of a table opened as such, by the name it was given.
  std::shared_ptr<const UpdateTarget> of_table(std::string_view table, const ColumnList& columns);

 private:
  class ByColumns {
   public:
    /// Null when it is not known.
    std::shared_ptr<const UpdateTarget> find(const ColumnList& columns) const noexcept;
    /// The places are taken in turn.
    std::shared_ptr<const UpdateTarget> keep(const ColumnList& columns,
                                             std::shared_ptr<const UpdateTarget> target);

   private:
    static constexpr std::size_t kMost = 16;
    struct Known {
      ColumnList columns;
      std::shared_ptr<const UpdateTarget> target;
    };
    std::array<Known, kMost> known_;
    std::size_t next_ = 0;
  };

  ByColumns queries_;
  ByColumns tables_;
};

}  // namespace pelm::ado
