/// The INSERT, UPDATE and DELETE texts that store a row, composed once for each shape.
///
/// A shape is the table as it was named, the columns in the order they were assigned, and the
/// columns that find the row. Values stand as `?`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/ado/provider.h"

namespace pelm::ado {

using ColumnIndex = std::uint16_t;

/// One column's part in finding a row: it has the value read from it, or it is null.
struct RowCondition {
  ColumnIndex column;
  bool is_null;
};

/// How the row is found.
struct RowSearch {
  std::span<const RowCondition> conditions;
  /// The conditions are no key: the statement must touch nothing unless exactly one row meets
  /// them. Their values are then bound twice.
  bool only_if_single;
};

class StatementTexts {
 public:
  /// References hold until the next call.
  const std::string& insert(const Session& session, std::string_view table,
                            const ColumnList& columns, std::span<const ColumnIndex> assigned);
  const std::string& update(const Session& session, std::string_view table,
                            const ColumnList& columns, std::span<const ColumnIndex> assigned,
                            const RowSearch& search);
  const std::string& remove(const Session& session, std::string_view table,
                            const ColumnList& columns, const RowSearch& search);

 private:
  struct Text {
    ColumnList columns;  // a table that changed has another list
    std::string sql;
  };
  Text& find(char kind, std::string_view table, std::span<const ColumnIndex> assigned,
             const RowSearch& search);

  std::unordered_map<std::string, Text> texts_;
  std::string key_;  // kept between calls for its memory
};

}  // namespace pelm::ado
