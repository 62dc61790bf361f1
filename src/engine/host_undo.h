// Takes back, on a host's connection, what a failed job has written.
#pragma once

#include "platform/system.h"

#include <functional>
#include <string_view>

namespace qx {

/// One step of taking something back. A step that fails is told under `where` and hides neither the failure
/// that made it necessary nor the steps that follow.
void undoStep(Diagnostics& diagnostics, std::string_view where, const std::function<void()>& step);

} // namespace qx
