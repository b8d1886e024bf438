// Finding a statement's table without reading its text again.
#include "platform/ado/known_targets.h"

#include <algorithm>

#include "platform/ado/update_target.h"

namespace pelm::ado {

std::shared_ptr<const UpdateTarget> KnownTargets::ByColumns::find(
    const ColumnList& columns) const noexcept {
  const auto found = std::ranges::find(known_, columns, &Known::columns);
  return found == known_.end() ? nullptr : found->target;
}

std::shared_ptr<const UpdateTarget> KnownTargets::ByColumns::keep(
    const ColumnList& columns, std::shared_ptr<const UpdateTarget> target) {
  known_[next_] = {columns, target};
  next_ = (next_ + 1) % kMost;
  return target;
}

std::shared_ptr<const UpdateTarget> KnownTargets::of_table(std::string_view table,
                                                           const ColumnList& columns) {
  if (auto known = tables_.find(columns)) return known;
  return tables_.keep(columns, std::make_shared<const UpdateTarget>(std::string(table), columns));
}

std::shared_ptr<const UpdateTarget> KnownTargets::find(ConnectionImpl& connection,
                                                       std::string_view sql,
                                                       const ColumnList& result,
                                                       std::int32_t timeout) {
  if (auto known = queries_.find(result)) return known;
  return queries_.keep(result,
                       std::make_shared<const UpdateTarget>(connection, sql, result, timeout));
}

}  // namespace pelm::ado
