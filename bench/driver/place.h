// Where the programs lie and where they work.
#pragma once

#include <filesystem>

namespace qx::bench {

/// Where the two programs are and where their files go.
struct Place {
  std::filesystem::path program;
  std::filesystem::path floor;
  std::filesystem::path folder;
};

/// The programs lie beside this one; raises `std::runtime_error` when one is missing. Makes the folder, and
/// keeps the programs from the settings of whoever measures.
Place placeIn(const std::filesystem::path& folder);

} // namespace qx::bench
