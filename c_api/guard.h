/// Every function of the C interface that can fail runs inside `guarded`: nothing but a status
/// leaves it, and the failure is kept for the thread.
#pragma once

#include <exception>
#include <new>
#include <string>

#include "c_api/handles.h"
#include "pelm/error.h"
#include "platform/page/response.h"

namespace pelm::c_api {

/// The failure of this thread's last call.
struct LastError {
  std::int32_t number = 0;
  std::string source;
  std::string description;
};

LastError& last_error() noexcept;
void keep_error(std::int32_t number, std::string_view source,
                std::string_view description) noexcept;

constexpr int kSuccess = 0;
constexpr int kFailure = 1;

template <class Body>
int guarded(Body&& body) noexcept {
  try {
    last_error().number = 0;
    Handles::instance().release_left_behind();
    body();
    return kSuccess;
  } catch (const Error& e) {
    keep_error(e.number(), e.source(), e.description());
  } catch (const page::PageEnded&) {
    return kSuccess;  // Response.End: the rest of the page is the caller's to leave out
  } catch (const std::bad_alloc&) {
    keep_error(error_number::kOutOfMemory, kProjectSource, error_text(error_number::kOutOfMemory));
  } catch (const std::exception& e) {
    keep_error(error_number::kInternal, kProjectSource, e.what());
  }
  return kFailure;
}

}  // namespace pelm::c_api
