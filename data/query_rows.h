/// The rows of a query of the component's own, for look-ups that read them and are done.
///
///     const data::FirstRow row(shared_conn(), sSQL, "rEscopo", "rListadeObjetos");
///     if (row.found()) use(row[0], row[1]);
///
///     const data::AllRows rows(shared_conn(), sSQL, "id", "Nome");
///     for (std::size_t i = 0; i < rows.size(); ++i) use(rows[i][0], rows[i][1]);
///
/// Both run as `Conn::RunSQL` with its defaults would, translation, LastSQL and errors alike, and
/// leave nothing open. The columns are named in the order of the select list.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pelm/conn.h"
#include "pelm/variant.h"

namespace pelm::data {

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

class AllRows {
 public:
  /// The values of the columns that were named.
  using Row = std::span<const Variant>;

  template <std::convertible_to<std::string_view>... Columns>
  AllRows(Conn& conn, std::string& sql, const Columns&... columns) : width_(sizeof...(columns)) {
    static_assert(sizeof...(columns) > 0);
    read(conn, sql, std::array<std::string_view, sizeof...(columns)>{columns...});
  }

  std::size_t size() const noexcept { return values_.size() / width_; }
  Row operator[](std::size_t row) const { return {values_.data() + row * width_, width_}; }

 private:
  void read(Conn& conn, std::string& sql, std::span<const std::string_view> columns);

  std::size_t width_;
  std::vector<Variant> values_;
};

}  // namespace pelm::data
