/// Which database engines a program that uses the C interface can open.
#pragma once

namespace pelm::c_api {

/// Once for the process, before the first object.
void register_providers();

}  // namespace pelm::c_api
