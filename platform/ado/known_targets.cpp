// Finding a statement's table without reading its text again.
#include "platform/ado/known_targets.h"

#include <algorithm>

#include "platform/ado/update_target.h"

namespace pelm::ado {
namespace {

bool is_digit(char c) noexcept { return c >= '0' && c <= '9'; }

bool same_but_for_numbers(std::string_view a, std::string_view b) noexcept {
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < a.size() && j < b.size()) {
    if (is_digit(a[i]) && is_digit(b[j])) {
      while (i < a.size() && is_digit(a[i])) ++i;
      while (j < b.size() && is_digit(b[j])) ++j;
    } else if (a[i++] != b[j++]) {
      return false;
    }
  }
  return i == a.size() && j == b.size();
}

}  // namespace

KnownTargets::Known& KnownTargets::next_place() noexcept {
  Known& place = known_[next_];
  next_ = (next_ + 1) % kMost;
  place.target = nullptr;
  return place;
}

std::shared_ptr<const UpdateTarget> KnownTargets::of_table(std::string_view table,
                                                           const ColumnList& columns) {
  const auto known = std::ranges::find_if(known_, [&](const Known& k) {
    return k.result == columns && k.target != nullptr && k.sql.empty() &&
           k.target->table() == table;
  });
  if (known != known_.end()) return known->target;
  auto target = std::make_shared<const UpdateTarget>(std::string(table), columns);
  Known& place = next_place();
  place = {{}, columns, target};
  return target;
}

std::shared_ptr<const UpdateTarget> KnownTargets::find(ConnectionImpl& connection,
                                                       std::string_view sql,
                                                       const ColumnList& result,
                                                       std::int32_t timeout) {
  auto known = std::ranges::find_if(known_, [&](const Known& k) {
    return k.result == result && k.target != nullptr && same_but_for_numbers(k.sql, sql);
  });
  if (known != known_.end()) {
    const UpdateTarget& target = *known->target;
    if (target.table().empty()) return known->target;
    if (connection.describe(target.table(), timeout) == target.columns()) return known->target;
    known->target = nullptr;
  } else {
    known = &next_place();
  }
  auto target = std::make_shared<const UpdateTarget>(connection, sql, result, timeout);
  *known = {std::string(sql), result, target};
  return target;
}

}  // namespace pelm::ado
