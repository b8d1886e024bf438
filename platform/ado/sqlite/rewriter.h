/// The state of one rewriting: a position in the tokens, and what has been learnt of the statement.
///
/// Private to dialect.h. Its functions stand in one source a subject.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/sqlite/dialect.h"

namespace pelm::ado::sqlite {

/// What is known of an operand's type without running it.
enum class Kind { Unknown, Number, Text, Date };

struct Operand {
  std::string sql;
  Kind kind = Kind::Unknown;
  bool literal = false;     ///< a single literal, bound or written out
  bool column = false;      ///< a plain column
  bool case_blind = false;  ///< a column of the collation PELM
  bool computed = false;    ///< has neither a column's type nor its collation
  bool collates = false;    ///< may be a text that has lost its collation
  bool numeric = false;     ///< a number that divides with a fraction though it may be kept whole
  bool integer = false;     ///< an integer column, or a function of one
  int slot = -1;            ///< of a bound literal
};

class Rewriter {
 public:
  Rewriter(std::span<const Token> tokens, const SchemaNames& schema);
  Translation run();

 private:
  // Reading (rewriter_reading.cpp).
  const Token& peek(std::size_t ahead = 0) const;
  bool at_end() const { return at_ >= tokens_.size(); }
  Token take();
  bool take_word(std::string_view capitals);
  bool take_symbol(std::string_view s);
  void expect(std::string_view symbol);
  bool starts_operand(std::size_t ahead = 0) const;
  bool at_clause_end() const;
  [[noreturn]] void refuse(const std::string& why) const;

  // Conditions (rewriter_conditions.cpp).
  struct Stops {
    bool comma = false;
    bool clause = false;    ///< before FROM, WHERE, UNION, …
    bool argument = false;  ///< what stands alone needs no collation
  };
  /// Rewrites up to the end, a ")" that closes what is open, or a stop. The operand is set when
  /// there was just one and nothing else.
  std::string sequence(Stops stops, Operand* only = nullptr);
  Operand condition(bool argument);
  Operand negation_or_range(Operand a);
  Operand member_of(Operand a, const std::string& negation);
  Operand like(const Operand& a, const std::string& negation);
  void relate(Operand& a, Operand& b);
  void read_as(Operand& operand, Slot::Reading reading);

  // Operands (rewriter_operands.cpp).
  Operand additive();
  Operand multiplicative();
  Operand unary();
  Operand primary();
  Operand parenthesis();
  Operand case_expression();
  Operand bound_literal(const Token& token);
  Operand system_variable(const Token& token);
  Operand escape();
  static Operand joined(const Operand& a, char sign, const Operand& b);
  int new_slot(Slot slot);
  std::string collation();

  // Calls and types (rewriter_calls.cpp).
  struct Type {
    std::string name;  ///< capital letters
    std::optional<long> length;
    std::optional<long> scale;
  };
  Operand call(const std::string& name);
  Operand call_with_part(const std::string& emitted, Kind kind);
  Operand convert();
  Operand cast();
  Operand converted(const Type& type, const Operand& value, const std::string& style) const;
  Type type();
  std::vector<Operand> arguments();
  bool skip_table_hint();

  // Queries (rewriter_query.cpp).
  struct Core {
    std::string sql;
    std::string limit;
  };
  std::string query();
  Core core(bool top_level);
  std::string limit();
  std::string select_list(bool top_level);
  std::string select_item(bool top_level);
  void select_into();

  // Statements (rewriter_statements.cpp).
  std::string statement();
  std::string rest();
  std::string verbatim();
  std::string insert();
  std::string rows_of_values();
  std::string delete_from();
  std::string update();
  std::string truncate();
  std::string create();
  std::string name();

  // CREATE TABLE (rewriter_table.cpp).
  using Definition = std::vector<Token>;
  std::string create_table(bool temporary);
  std::vector<Definition> definitions();

  // Names and columns (rewriter_columns.cpp).
  Operand path();
  void learn_columns();
  /// Null where no table of the statement is known to have it.
  const NamedColumn* known_column(const std::string& name) const;
  void refuse_row_number(const std::string& name) const;
  void set_target_aside();

  std::span<const Token> tokens_;
  std::size_t at_ = 0;
  const SchemaNames& schema_;
  Translation out_;
  std::size_t literals_ = 0;
  std::size_t values_ = 0;
  int depth_ = 0;
  int nesting_ = 0;
  bool star_seen_ = false;
  std::string into_;
  std::vector<bool> insert_dates_;
  std::vector<std::string> aliases_;  // names that the select lists so far gave
  bool assigning_ = false;            // between SET and WHERE of an UPDATE
  std::map<std::string, NamedColumn, std::less<>> columns_;  // by capitals of the name

  /// Guards the stack: no statement of a person nests so deep.
  class Deeper {
   public:
    explicit Deeper(Rewriter& rewriter) : rewriter_(rewriter) {
      if (++rewriter_.nesting_ > kDeepest) rewriter_.refuse("the statement is nested too deeply");
    }
    Deeper(const Deeper&) = delete;
    Deeper& operator=(const Deeper&) = delete;
    ~Deeper() { --rewriter_.nesting_; }

   private:
    static constexpr int kDeepest =
        200;  // the engine itself stops at 1000, on a larger stack frame
    Rewriter& rewriter_;
  };
};

/// Appends `piece`, parted from what stands before by a blank where `space` says so or where the
/// two would run together.
void put(std::string& out, std::string_view piece, bool space);

/// With the collation that a computed text needs to compare as the columns do.
std::string collated(const Operand& operand);

}  // namespace pelm::ado::sqlite
