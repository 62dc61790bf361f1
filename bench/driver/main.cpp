// Measures the program against bare SQLite, side by side on this machine.

#include "driver/report.h"
#include "driver/runner.h"
#include "driver/workloads.h"

#include <cstdlib>
#include <iostream>
#include <optional>
#include <span>
#include <stdexcept>
#include <string_view>

namespace {

namespace fs = std::filesystem;
using namespace qx::bench;

constexpr std::string_view usage = "usage: bench_driver FOLDER [--quick] [--only PART_OF_NAME]\n";

/// A short run shows that everything works; its figures say little.
constexpr Sizes quickSizes{2000, 1000, 10000, 200, 2000};
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

struct Options {
  bool quick = false;
  std::string only; ///< measures the workloads with this in their name
};

std::optional<Options> readOptions(std::span<char*> words) {
  Options options;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string_view word = words[i];
    if (word == "--quick")
      options.quick = true;
    else if (word == "--only" && i + 1 < words.size())
      options.only = words[++i];
    else
      return std::nullopt;
  }
  return options;
}

void run(const fs::path& folder, const Options& options) {
  fs::create_directories(folder);
  const Place place = placeIn(folder);
  keepSettingsIn(place.folder);
  const Plan plan = makePlan(place, options.quick ? quickSizes : Sizes());
  Runner runner(place, plan.starts, rounds, std::cerr);
  std::vector<Outcome> outcomes;
  for (const Workload& workload : plan.workloads)
    if (workload.name.find(options.only) != std::string::npos)
      outcomes.push_back(runner.measureWorkload(workload));
  printReport(std::cout, outcomes, plan.growths);
}

} // namespace

int main(int argc, char** argv) {
  const std::span<char*> words(argv, static_cast<std::size_t>(argc));
  const auto options = argc < 2 ? std::nullopt : readOptions(words.subspan(2));
  if (!options) {
    std::cerr << usage;
    return 2;
  }
  try {
    run(argv[1], *options);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "bench_driver: " << error.what() << '\n';
    return 4;
  }
}
