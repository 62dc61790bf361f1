// A display of its own for a test process.
#pragma once

#include <sys/types.h>

namespace qx {

/// Starts a virtual X server on a free display, names it in the environment and ends it with the object.
/// Raises `std::runtime_error` when it does not come up.
class VirtualDisplay {
public:
  VirtualDisplay();
  VirtualDisplay(const VirtualDisplay&) = delete;
  VirtualDisplay& operator=(const VirtualDisplay&) = delete;
  ~VirtualDisplay();

private:
  pid_t server_ = -1;
};

} // namespace qx
