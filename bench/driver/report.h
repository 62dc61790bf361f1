// Prints what was measured.
#pragma once

#include "driver/runner.h"

#include <ostream>
#include <vector>

namespace qx::bench {

/// One table, and two lines for each growth of which both ends were measured. A goal that was missed is
/// marked.
void printReport(std::ostream& out, const std::vector<Outcome>& outcomes, const std::vector<Growth>& growths);

} // namespace qx::bench
