// Undoes, on a host's connection, what a failed job has written.
#pragma once

#include "platform/system.h"

#include <functional>
#include <string_view>

namespace qx {

/// Runs one undo step. Its failure is reported under `where`; it does not hide the original failure or
/// prevent later steps.
void undoStep(Diagnostics& diagnostics, std::string_view where, const std::function<void()>& step);

} // namespace qx
