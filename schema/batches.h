/// What of a script is sent to a server at a time.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pelm {

/// The parts between lines that hold nothing but the word with which the engine's own client ends
/// a part: "GO" (sqlcmd), "/" (SQL*Plus), "//" (mariadb, after "DELIMITER //"). A script without
/// such lines is one part, unchanged; in the others, lines of comment are left out: some drivers
/// look for quotes in them.
std::vector<std::string> batches(std::string_view script);

}  // namespace pelm
