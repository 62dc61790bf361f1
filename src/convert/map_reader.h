// Reads a map from the entries of its INI file.
#pragma once

#include "convert/column_map.h"

#include <cstdint>
#include <string>
#include <vector>

namespace qx::convert {

struct MapEntry {
  std::string section;
  std::string key;
  std::string text;
  std::int64_t line = 0;
};

/// Raises `ProgramError`, which names line and key, for what a map does not know and for what is missing.
ColumnMap readMap(const std::vector<MapEntry>& entries, const std::string& file);

} // namespace qx::convert
