// A window manager on the display of a test.
#pragma once

#include <sys/types.h>

namespace qx {

/// Gives windows their frames and the keyboard to the newest one, as on a clerk's desk. Starts it on the
/// display that the environment names and ends it with the object. Raises `std::runtime_error` when it does
/// not come up.
class WindowFrames {
public:
  WindowFrames();
  WindowFrames(const WindowFrames&) = delete;
  WindowFrames& operator=(const WindowFrames&) = delete;
  ~WindowFrames();

private:
  pid_t manager_ = -1;
};

} // namespace qx
