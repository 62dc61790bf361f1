// Message boxes whose failure does not reach the caller.
#pragma once

#include "platform/environment.h"

namespace qx {

/// Shows a box. A failure of the desktop is reported to the diagnostics, with the text.
void showMessage(const Environment& environment, const Message& message);

/// Asks in a box. A failure of the desktop is reported to the diagnostics and counts as no.
bool askQuestion(const Environment& environment, const Message& question);

} // namespace qx
