/// Which table the rows of a SELECT come from, read from the statement's own text.
///
/// Catalogue calls and drivers do not tell it reliably; the text does, for the plain statements
/// whose rows a page changes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pelm::ado {

struct SelectSource {
  /// As written, qualifiers, brackets and quotes included. Empty when the rows are not plain rows
  /// of one table: several tables, a subquery, UNION, GROUP BY, DISTINCT, or no SELECT at all.
  std::string table;
  /// Names of result columns that the statement computes or renames: they are not stored.
  std::vector<std::string> computed;

  bool is_computed(std::string_view column) const noexcept;
};

SelectSource select_source(std::string_view sql);

/// True for a text that is nothing but the name of one object, qualified and quoted or not.
bool is_bare_name(std::string_view text);

}  // namespace pelm::ado
