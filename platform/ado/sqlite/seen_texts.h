/// Statements seen before, so that one that differs in nothing but its values need not be read
/// token by token.
///
/// The component writes its numbers into its texts: "… where oid = 4711". What stands between two
/// literals is compared byte by byte with an earlier text; where all of it is the same and the
/// literals are of the same plain form, reading would come to the same shape.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/sqlite/literal.h"

namespace pelm::ado::sqlite {

class SeenTexts {
 public:
  /// Fills `literals`, whose texts are parts of `sql`, and returns the shape; null when no earlier
  /// text is like this one. The shape stands until the next `remember`.
  const std::string* find(std::string_view sql, std::vector<Literal>& literals);

  /// After `sql` was read: its literals, in their order, and its shape. Long texts, and texts
  /// whose literals touch other words, are not kept.
  void remember(std::string_view sql, std::span<const Literal> literals, const std::string& shape);

 private:
  static constexpr std::size_t kPlaces = 64;
  static constexpr std::size_t kLongestText = 1024;
  static constexpr std::size_t kMostLiterals = 32;

  struct Place {
    std::size_t begin = 0;
    std::size_t end = 0;
    Literal::Kind kind = Literal::Kind::Number;
  };
  struct Seen {
    std::string text;
    std::vector<Place> literals;
    std::string shape;
  };
  static std::size_t place_of(std::string_view sql) noexcept;
  static std::optional<Place> place_in(std::string_view sql, const Literal& literal) noexcept;
  static bool same(const Seen& seen, std::string_view sql, std::vector<Literal>& literals);

  std::array<Seen, kPlaces> seen_;
};

}  // namespace pelm::ado::sqlite
