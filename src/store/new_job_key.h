// Fresh keys for jobs and positions.
#pragma once

#include "platform/environment.h"

#include <string>

namespace qx {

/// A unique key; empty, with a diagnostics entry, when the system cannot generate one.
std::string newJobKey(const Environment& environment);

} // namespace qx
