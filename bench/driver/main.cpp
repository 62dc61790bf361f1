// Measures the program against bare SQLite, side by side on this machine.

#include "driver/report.h"
#include "driver/runner.h"
#include "driver/workloads.h"

#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string_view>

namespace {

namespace fs = std::filesystem;
using namespace qx::bench;

constexpr std::string_view usage = "usage: bench_driver FOLDER [--quick]\n";

/// A short run shows that everything works; its figures say little.
constexpr Sizes quickSizes{2000, 1000, 10000};
constexpr int rounds = 3;

/// The programs lie beside this one.
Place placeIn(const fs::path& folder) {
  const fs::path programs = fs::read_symlink("/proc/self/exe").parent_path();
  Place place{programs / "qximportjob", programs / "bench_floor", fs::absolute(folder)};
  for (const fs::path& program : {place.program, place.floor})
    if (!fs::exists(program)) throw std::runtime_error(program.string() + " has not been built");
  return place;
}

/// The program must not meet the settings of whoever measures.
void keepSettingsIn(const fs::path& folder) {
  for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
    setenv(variable, folder.c_str(), 1);
  unsetenv("QXIMPORTJOB_DB");
}

void run(const fs::path& folder, const Sizes& sizes) {
  fs::create_directories(folder);
  const Place place = placeIn(folder);
  keepSettingsIn(place.folder);
  const Plan plan = makePlan(place, sizes);
  Runner runner(place, rounds, std::cerr);
  runner.prepare(plan.starts);
  std::vector<Outcome> outcomes;
  for (const Workload& workload : plan.workloads) outcomes.push_back(runner.measureWorkload(workload));
  printReport(std::cout, outcomes, plan.growth);
}

} // namespace

int main(int argc, char** argv) {
  const bool quick = argc == 3 && std::string_view(argv[2]) == "--quick";
  if (argc != 2 && !quick) {
    std::cerr << usage;
    return 2;
  }
  try {
    run(argv[1], quick ? quickSizes : Sizes());
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "bench_driver: " << error.what() << '\n';
    return 4;
  }
}
