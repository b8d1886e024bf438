/// Statements seen before, so that one that differs in nothing but its values need not be read
/// token by token.
///
/// The component writes its numbers into its texts: "… where oid = 4711". What stands between two
/// literals is compared byte by byte with an earlier text; where all of it is the same and the
/// literals are of the same plain form, reading would come to the same shape.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/sqlite/literal.h"

namespace pelm::ado::sqlite {

struct Plan;

class SeenTexts {
 public:
  /// What all texts that are alike have in common.
  struct Known {
    std::string shape;
    std::shared_ptr<Plan> plan;  ///< the caller's; null at first
  };

  /// Null when no earlier text is like this one. What is found stands until the next `remember`.
  Known* find(std::string_view sql);
  /// Of the text last found, whose parts their texts are.
  std::span<const Literal> literals() const {
    return std::span<const Literal>(literals_).first(literal_count_);
  }

  /// After `sql` was read: its literals, in their order, and its shape. Null when it is not kept:
  /// long texts, and texts whose literals touch other words.
  Known* remember(std::string_view sql, std::span<const Literal> literals,
                  const std::string& shape);

 private:
  static constexpr std::size_t kPlaces = 128;  // in pairs: a text stands at its place or beside it
  static constexpr std::size_t kLongestText = 2048;
  static constexpr std::size_t kMostLiterals = 32;

  struct Place {
    std::size_t begin = 0;
    std::size_t end = 0;
    Literal::Kind kind = Literal::Kind::Number;
  };
  struct Seen {
    std::string text;  // empty: nothing is known yet
    std::vector<Place> literals;
    Known known;
    // The places of the texts that came after this one, the last first.
    std::uint8_t next = 0;
    std::uint8_t next_but_one = 0;
  };
  static std::size_t place_of(std::string_view sql) noexcept;
  static std::optional<Place> place_in(std::string_view sql, const Literal& literal) noexcept;
  bool same(const Seen& seen, std::string_view sql);
  Known* recognise(std::size_t place, std::string_view sql);
  Seen& arrive_at(std::size_t place) noexcept;

  std::array<Seen, kPlaces> seen_;
  std::size_t last_ = 0;
  std::array<Literal, kMostLiterals> literals_;
  std::size_t literal_count_ = 0;
};

}  // namespace pelm::ado::sqlite
