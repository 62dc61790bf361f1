// Writes sample jobs as the program reads them: one JSON object a line.
#pragma once

#include "samples/customers.h"

#include <ostream>

namespace qx::bench {

/// Properties without a value are left out.
void writeJsonLine(std::ostream& out, std::string_view type, const SampleJob& job,
                   const std::vector<SampleJob>& positions = {});

} // namespace qx::bench
