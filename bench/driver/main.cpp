// Measures the program against bare SQLite, side by side on this machine.

#include "driver/place.h"
#include "driver/report.h"
#include "driver/runner.h"
#include "driver/workloads.h"

#include <filesystem>
#include <iostream>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace qx::bench;

constexpr std::string_view usage =
    "usage: bench_driver FOLDER [--quick | --instructions] [--only PART_OF_NAME]\n";

/// A short run shows that everything works; its figures say little.
constexpr Sizes quickSizes{2000, 1000, 10000, 200, 2000};
constexpr int rounds = 3;

/// The difference of two sizes leaves out what a program does once.
constexpr Sizes fewCounted{1000, 1000, 1500, 200, 300};
constexpr Sizes manyCounted{2000, 2000, 3000, 400, 600};

struct Options {
  bool quick = false;
  bool instructions = false;
  std::string only; ///< measures the workloads with this in their name
};

std::optional<Options> readOptions(std::span<char*> words) {
  Options options;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string_view word = words[i];
    if (word == "--quick")
      options.quick = true;
    else if (word == "--instructions")
      options.instructions = true;
    else if (word == "--only" && i + 1 < words.size())
      options.only = words[++i];
    else
      return std::nullopt;
  }
  return options;
}

bool chosen(const Workload& workload, const Options& options) {
  return workload.name.find(options.only) != std::string::npos;
}

void measureTimes(const Place& place, const Options& options) {
  const Plan plan = makePlan(place, options.quick ? quickSizes : Sizes());
  Runner runner(place, plan.starts, rounds, std::cerr);
  std::vector<Outcome> outcomes;
  for (const Workload& workload : plan.workloads)
    if (chosen(workload, options)) outcomes.push_back(runner.measureWorkload(workload));
  printReport(std::cout, outcomes, plan.growths);
}

std::vector<Instructions> countAll(const Place& place, const Plan& plan, const Options& options) {
  fs::create_directories(place.folder);
  Runner runner(place, plan.starts, 1, std::cerr);
  std::vector<Instructions> all;
  for (const Workload& workload : plan.workloads)
    all.push_back(chosen(workload, options) ? runner.countWorkload(workload) : Instructions());
  return all;
}

void measureInstructions(Place place, const Options& options) {
  const fs::path folder = place.folder;
  const auto countedIn = [&](const char* name, const Sizes& sizes) {
    place.folder = folder / name;
    fs::create_directories(place.folder);
    Plan plan = makePlan(place, sizes);
    std::vector<Instructions> counted = countAll(place, plan, options);
    return std::pair(std::move(plan.workloads), std::move(counted));
  };
  const auto [smaller, few] = countedIn("few", fewCounted);
  const auto [larger, many] = countedIn("many", manyCounted);
  std::vector<JobCost> costs;
  for (std::size_t i = 0; i < larger.size(); ++i) {
    if (!chosen(larger[i], options)) continue;
    const double jobs = larger[i].jobs - smaller[i].jobs;
    costs.push_back({larger[i].name, larger[i].goal.instructions,
                     static_cast<double>(many[i].ours - few[i].ours) / jobs,
                     static_cast<double>(many[i].floor - few[i].floor) / jobs});
  }
  printCosts(std::cout, costs);
}

void run(const fs::path& folder, const Options& options) {
  const Place place = placeIn(folder);
  if (options.instructions)
    measureInstructions(place, options);
  else
    measureTimes(place, options);
}

} // namespace

int main(int argc, char** argv) {
  const std::span<char*> words(argv, static_cast<std::size_t>(argc));
  // A folder is made: an option in its place is a mistake.
  const bool named = argc > 1 && !std::string_view(argv[1]).starts_with('-');
  const auto options = named ? readOptions(words.subspan(2)) : std::nullopt;
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
