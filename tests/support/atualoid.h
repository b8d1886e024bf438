/// Putting another procedure in the place of "atualoid", on any engine.
#pragma once

#include <string>
#include <string_view>

#include "support/engine.h"

namespace pelm::test {

/// Statements without rows that make "atualoid" run `before` (a statement without rows, or none)
/// and give `number`. Each is to be run by itself.
std::vector<std::string> atualoid_that_gives(const Engine& engine, std::string_view number,
                                             std::string_view before = {});

/// A statement that leaves the database without "atualoid".
std::string drop_atualoid(const Engine& engine);

}  // namespace pelm::test
