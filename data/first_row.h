/// The first row of a query of the component's own: for look-ups that read it and are done.
///
///     const data::FirstRow row(shared_conn(), sSQL, "rEscopo", "rListadeObjetos");
///     if (row.found()) use(row[0], row[1]);
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "pelm/conn.h"
#include "pelm/variant.h"

namespace pelm::data {

/// Runs as `Conn::RunSQL` with its defaults would, translation, LastSQL and errors alike, and
/// leaves nothing open. The columns are named in the order of the select list.
class FirstRow {
 public:
  static constexpr std::size_t kMostColumns = 2;

  template <std::convertible_to<std::string_view>... Columns>
  FirstRow(Conn& conn, std::string& sql, const Columns&... columns) {
    static_assert(sizeof...(columns) <= kMostColumns);
    read(conn, sql, std::array<std::string_view, sizeof...(columns)>{columns...});
  }

  bool found() const noexcept { return found_; }
  /// Of the columns that were named; empty when there is no row.
  const Variant& operator[](std::size_t column) const { return values_[column]; }

 private:
  void read(Conn& conn, std::string& sql, std::span<const std::string_view> columns);

  bool found_ = false;
  std::array<Variant, kMostColumns> values_;
};

}  // namespace pelm::data
