// Errors on their way to a host.
#pragma once

#include "automation/automation_error.h"
#include "com/windows_headers.h"

#include <exception>
#include <string_view>

namespace qx::com {

/// The result code of a failed call; fills the host's description of it, when it wants one, and the thread's
/// error object. Never raises.
HRESULT report(const std::exception_ptr& exception, std::string_view source, EXCEPINFO* details) noexcept;

/// Runs the body of a member that is called from outside: nothing but a result code leaves it.
template <class Body>
HRESULT guarded(Body&& body) noexcept {
  try {
    return body();
  } catch (...) {
    return report(std::current_exception(), "QXImportJob", nullptr);
  }
}

/// Raises `AutomationError` for a failed result code of somebody else.
void require(HRESULT result, std::string_view what);

} // namespace qx::com
