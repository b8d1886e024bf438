/// The old outer-join operators "=*" and "*=" into Oracle's "(+)".
#pragma once

#include <string>

namespace pelm::data {

/// "a.x =* b.y" into "a.x(+) = b.y"; the character before the operator is lost.
/// Raises invalid call (5) when the text begins with the operator; the text is then unchanged.
void rewrite_right_joins(std::string& sql);

/// "a.x *= b.y and" into "a.x = b.y(+) and". A term ends before the next "and"; without one,
/// where "order by" (else "group by") stood before the first rewriting, else with the text.
/// Raises invalid call (5) when that place is not after an operator; the operators before it are
/// then rewritten.
void rewrite_left_joins(std::string& sql);

}  // namespace pelm::data
