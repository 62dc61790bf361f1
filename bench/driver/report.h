// Prints what was measured.
#pragma once

#include "driver/runner.h"

#include <ostream>
#include <string>
#include <vector>

namespace qx::bench {

/// One table, and two lines for each growth of which both ends were measured. A goal that was missed is
/// marked.
void printReport(std::ostream& out, const std::vector<Outcome>& outcomes, const std::vector<Growth>& growths);

/// What one job more costs, without the start of the programs and the like.
struct JobCost {
  std::string name;
  double goal = 0; ///< at most so many times the floor; 0: none
  double ours = 0; ///< instructions
  double floor = 0;
};

void printCosts(std::ostream& out, const std::vector<JobCost>& costs);

} // namespace qx::bench
