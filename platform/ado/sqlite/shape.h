/// Splits a statement into its shape and its literals, so that statements that differ only in
/// their values share one prepared statement.
///
/// Whole numbers, texts and date escapes after WHERE, SET, VALUES and ON become parameters.
/// Everything whose meaning depends on being written out stays: select lists, ORDER BY and GROUP
/// BY positions, LIKE patterns, TOP, the types and styles of CONVERT and CAST, and statements that
/// define objects. Numbers with decimals stay too: the engine's reading of them is the one that
/// counts.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/sqlite/literal.h"
#include "platform/ado/sqlite/seen_texts.h"
#include "platform/ado/sqlite/tokenizer.h"

namespace pelm::ado::sqlite {

/// Kept by a session and filled anew for each statement, so that it allocates nothing.
class Shape {
 public:
  Shape() = default;
  Shape(const Shape&) = delete;
  Shape& operator=(const Shape&) = delete;

  /// Raises kErrorsInCommand for a character that no statement can hold.
  void read(std::string_view sql);

  /// The statement with a mark of tokenizer.h for each literal. Stands until the next `read`.
  const std::string& text() const { return known_->shape; }
  std::span<const Literal> literals() const {
    return found_ ? seen_.literals() : std::span<const Literal>(literals_);
  }
  /// What is kept for texts like this one, for the caller to set; null at first. Stands until the
  /// next `read`.
  std::shared_ptr<Plan>& plan() { return known_->plan; }

 private:
  enum class Call { Other, Convert, Cast };
  struct Frame {
    bool bind = false;
    bool pattern = false;  ///< right of LIKE
    bool outer_bind = false;
    Call call = Call::Other;
    int argument = 0;
  };
  void read_tokens(std::string_view sql);
  void word(const Token& token);
  void symbol(const Token& token);
  std::optional<Literal> literal(const Token& token) const;

  SeenTexts seen_;
  SeenTexts::Known unseen_;  // of a statement that was read token by token
  SeenTexts::Known* known_ = &unseen_;
  bool found_ = false;             // among the seen ones
  std::vector<Literal> literals_;  // of a statement that was read token by token
  std::vector<Frame> frames_;
  Call next_call_ = Call::Other;
  bool statement_start_ = true;
  bool never_ = false;
};

}  // namespace pelm::ado::sqlite
