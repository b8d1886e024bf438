/// SQL Server SQL into Oracle SQL, by plain text surgery.
///
/// Contents: `translate_sql`, `translation_ends`, `endless_form`.
///
///     std::string sql = "select isnull(a,0) from t";
///     pelm::data::translate_sql(sql, "Oracle");   // "SELECT NVL(A,0) FROM T"
///
/// Not a parser: it finds fixed forms, cuts at the first closing text that follows and replaces,
/// inside quoted texts too. docs/translation.md tells the forms, the blind spots and the texts
/// whose translation never ends.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pelm::data {

/// Rewrites `sql` for Oracle unless `server` is exactly "SQLSERVER"; always returns True.
/// Positions and losses are counted in characters. Time is linear in the text.
///
/// Does not return for a text that `endless_form` names a form of: kept as it is, and the thread
/// sleeps between the rounds.
/// Raises invalid call (5) for a text that begins with "=*", for a "*=" behind the place where
/// its term should end, and for a "Left(" without a comma after it. `sql` then holds what had been
/// rewritten so far; for "Left(", the text before any "Left(" was rewritten.
bool translate_sql(std::string& sql, std::string_view server);

/// The opening form at which the translation of `sql` for Oracle would stay for ever, in capitals
/// ("GETDATE("); nothing when the translation ends, be it in an error. Does not loop.
std::optional<std::string_view> endless_form(std::string_view sql);

/// Whether the translation of `sql` for Oracle ends, be it in an error.
bool translation_ends(std::string_view sql);

}  // namespace pelm::data
