/// Answers for what went wrong, as HTML for a visitor; every text in them is escaped.
#pragma once

#include <string>
#include <string_view>

#include "host/page_failure.h"

namespace pelm::host {

/// A whole page: "404 Não encontrado" and a sentence that says what to do.
std::string error_page(int status, std::string_view path);

/// The page of a failed page; without `details` it says only that it failed.
std::string failure_page(const PageFailure& failure, bool details);

/// The same as a block, for a page whose beginning has already been sent.
std::string failure_block(const PageFailure& failure, bool details);

/// For the log: "Script (5009): ReferenceError: x is not defined, /a.page:3".
std::string failure_line(const PageFailure& failure);

}  // namespace pelm::host
