// Fresh keys for jobs and positions.
#pragma once

#include "platform/environment.h"

#include <string>

namespace qx {

/// A key that no other job has; empty, with a diagnostics entry, when the system cannot make one.
std::string newJobKey(const Environment& environment);

} // namespace qx
