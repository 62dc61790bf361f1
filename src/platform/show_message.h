// Boxes whose failure does not reach the caller.
#pragma once

#include "platform/environment.h"

namespace qx {

/// Shows a box. A desktop that fails at it is told to the diagnostics, with the text.
void showMessage(const Environment& environment, const Message& message);

/// Asks in a box. False as well when the desktop fails at it, which the diagnostics keep.
bool askQuestion(const Environment& environment, const Message& question);

} // namespace qx
