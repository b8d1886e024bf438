/// From a request of the HTTP library to the one that a page sees.
#pragma once

#include <httplib.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "host/request_target.h"
#include "platform/page/request.h"

namespace pelm::host {

/// Where a body could not become a form.
enum class BodyOutcome { Read, TooLarge, Broken };

/// The fields of a form: url-encoded, or the texts of a multipart body; files that it carries are
/// dropped. Any other media type gives no field. The body must be read whole, even when unused.
BodyOutcome read_form(const httplib::Request& request, const httplib::ContentReader& reader,
                      std::size_t most_bytes, page::NamedValues& form);

/// `page_path` is the page that serves it, which for a folder is not the path of the target.
std::shared_ptr<page::Request> page_request(const httplib::Request& request,
                                            const RequestTarget& target,
                                            const std::string& page_path);

}  // namespace pelm::host
