// A message box that nothing depends on.
#pragma once

#include "platform/environment.h"

namespace qx {

/// Shows a box. A desktop that fails at it is told to the diagnostics, with the text.
void showMessage(const Environment& environment, const Message& message);

} // namespace qx
