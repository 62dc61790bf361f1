// Turns the rows of a file of separated values into jobs.
#pragma once

#include "convert/column_map.h"
#include "platform/files.h"

#include <cstdint>
#include <ostream>
#include <string>

namespace qx::convert {

struct ConversionCounts {
  std::int64_t rows = 0;
  std::int64_t jobs = 0;
};

/// Writes the jobs as one array, an object a line; it is closed at the end only, so that what breaks off
/// before is no file of jobs. Rows that follow each other with the same value in the map's group are one job.
/// Apart from some bytes for each such value memory does not grow with the file. Raises `ProgramError`, which
/// names line and column, and whatever the file and the stream raise.
ConversionCounts convertRows(File& file, const std::string& fileName, const ColumnMap& map,
                             std::ostream& jobs);

} // namespace qx::convert
