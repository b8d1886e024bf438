/// The host's log: one line for each event.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace pelm::host {

/// Called from any thread with the text of one event, without a line end.
using Log = std::function<void(std::string_view)>;

/// To standard error, with date and time; line ends and control characters within an event are
/// escaped, so that nobody writes a line of the log from outside.
void log_to_stderr(std::string_view event);

/// As `log_to_stderr` writes an event after its time.
std::string one_line(std::string_view event);

}  // namespace pelm::host
