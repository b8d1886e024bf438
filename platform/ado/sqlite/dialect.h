/// Rewrites a statement of the server's dialect into one that the embedded engine runs.
///
/// Works on tokens. What the engine knows passes unchanged; what it lacks is put in its terms:
/// TOP, CONVERT and CAST, "+" on texts and dates, ISNULL, LEFT, date parts, brackets, N'…', ODBC
/// escapes, @@identity, table hints, SELECT … INTO, DELETE and INSERT without FROM and INTO. The
/// functions themselves are in functions.h.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/sqlite/tokenizer.h"

namespace pelm::ado::sqlite {

/// What the rewriting needs to know of a value's type. Numeric is for money and decimals, whose
/// whole values the engine keeps as integers; to it those would divide as integers do.
enum class ValueType { Other, Date, Integer, Numeric };

struct NamedColumn {
  std::string name;
  ValueType type = ValueType::Other;
  bool case_blind = false;  ///< its texts compare and are sorted by the collation PELM
};

/// What the rewriting asks of the database's tables.
class SchemaNames {
 public:
  virtual ~SchemaNames() = default;
  /// The columns of a table or view, without case; null when there is none of that name.
  virtual const std::vector<NamedColumn>* find(std::string_view table) const = 0;
};

/// Where the value of a parameter of the rewritten statement comes from.
struct Slot {
  enum class Source { Literal, Value, Variable };
  enum class Reading { AsItIs, Date, Number };
  Source source = Source::Literal;
  std::size_t index = 0;              ///< which literal of the shape, or which "?"
  std::string name;                   ///< of a variable, with its @
  Reading reading = Reading::AsItIs;  ///< what a text is read as before it is bound
};

struct Translation {
  std::string sql;
  std::vector<Slot> slots;  ///< ?1, ?2, …
  /// Types of the select list's expressions, Other for plain columns. Items before a "*" count from
  /// the first column, those after it from the last.
  std::vector<ValueType> types_before_star;
  std::vector<ValueType> types_after_star;
  std::string inserted_table;  ///< of an INSERT
  bool leaves_traces = false;  ///< the session cannot be handed to another user afterwards
};

/// `tokens` of one statement's shape. Raises kErrorsInCommand for what cannot be rewritten.
Translation translate(std::span<const Token> tokens, const SchemaNames& schema);

/// Cuts tokens into statements: at ";" and, as the server does, before a word that can only begin
/// the next one. Empty statements are left out.
std::vector<std::span<const Token>> split_statements(std::span<const Token> tokens);

}  // namespace pelm::ado::sqlite
