// Prints what was measured.
#pragma once

#include "driver/runner.h"

#include <ostream>
#include <vector>

namespace qx::bench {

/// One table and two closing lines. A goal that was missed is marked.
void printReport(std::ostream& out, const std::vector<Outcome>& outcomes, const Growth& growth);

} // namespace qx::bench
