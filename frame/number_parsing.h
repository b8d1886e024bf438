/// Numbers written with a point, read without regard to the regional decimal mark.
#pragma once

#include <string_view>

namespace pelm {

/// Without a point, `sValor` as a 32-bit integer ("1,5" gives 2: the regional comma, halves to
/// the even neighbour). With one, the integer before the first point plus the integer after it
/// divided by 100 ^ (its number of characters).
///
///     pelm::parse_point_number("7");       // 7
///     pelm::parse_point_number("1.5");     // 1.05: kept, the base is 100
///     pelm::parse_point_number("-1.5");    // -0.95: kept, the sign is the integer's alone
///
/// Raises type mismatch (13) when either side is empty or no number; overflow (6) beyond 32 bits
/// and for more than 154 characters after the point.
double parse_point_number(std::string_view sValor);

}  // namespace pelm
