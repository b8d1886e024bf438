/// The page objects that the component needs, fetched on demand from the request being served.
#pragma once

#include <string_view>

#include "pelm/variant.h"

namespace pelm::page {
class Response;
}

namespace pelm::frame {

/// Fill the thread's slot from the ambient object context unless it is filled already; the slot
/// is emptied when a CMain ends. Raise 91 outside a page.
void fetch_application();
void fetch_response();

/// An application variable, empty when there is none of that name. Fetches the application.
Variant application_variable(std::string_view name);

}  // namespace pelm::frame
