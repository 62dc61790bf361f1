// What reading a file of separated values costs the library alone.
#pragma once

#include <string>

namespace qx::bench {

/// Parses the file and prints how many values it has.
void readSeparatedValues(const std::string& file);

} // namespace qx::bench
