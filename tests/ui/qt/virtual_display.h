// A display of its own for a test process.
#pragma once

#include <string>
#include <sys/types.h>

namespace qx {

/// Starts a virtual X server with a screen of this size on a free display, names it in the environment and
/// ends it with the object. Raises `std::runtime_error` when it does not come up.
class VirtualDisplay {
public:
  explicit VirtualDisplay(const std::string& size = "1280x800");
  VirtualDisplay(const VirtualDisplay&) = delete;
  VirtualDisplay& operator=(const VirtualDisplay&) = delete;
  ~VirtualDisplay();

private:
  pid_t server_ = -1;
};

} // namespace qx
