#include "driver/place.h"

#include <cstdlib>
#include <stdexcept>

namespace qx::bench {

namespace fs = std::filesystem;

Place placeIn(const fs::path& folder) {
  fs::create_directories(folder);
  const fs::path programs = fs::read_symlink("/proc/self/exe").parent_path();
  Place place{programs / "qximportjob", programs / "bench_floor", fs::absolute(folder)};
  for (const fs::path& program : {place.program, place.floor})
    if (!fs::exists(program)) throw std::runtime_error(program.string() + " has not been built");
  for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
    setenv(variable, place.folder.c_str(), 1);
  unsetenv("QXIMPORTJOB_DB");
  return place;
}

} // namespace qx::bench
