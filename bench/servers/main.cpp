// Measures the program on a database server: jobs in a second and round trips of a job, with and without a
// delay on the way.

#include "driver/child_process.h"
#include "driver/place.h"
#include "driver/runner.h"
#include "driver/workloads.h"
#include "servers/delayed_way.h"
#include "servers/server_databases.h"

#include "adapters/odbc/connection_string.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <optional>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace qx::bench;

constexpr std::string_view usage =
    "usage: bench_servers FOLDER [--quick] [--delay MILLISECONDS] [--only PART_OF_NAME]\n"
    "$QXIMPORTJOB_TEST_ODBC is the connection string of a server, on this machine, whose user may create "
    "databases.\n";

constexpr Sizes fullSizes{10000, 1000, 10000, 200, 2000};
constexpr Sizes quickSizes{2000, 1000, 2000, 100, 300};

/// Jobs a second with the delay of one millisecond; 0: none.
struct ServerWorkload {
  std::string_view name;  ///< without the number of jobs
  std::string_view like;  ///< the workload of the plan
  std::string_view start; ///< that of the plan when empty
  double goal = 0;
};
constexpr std::array serverWorkloads{
    ServerWorkload{"stage customers", "stage customers", "", 0},
    ServerWorkload{"process customers (new)", "process customers (new)", "", 2000},
    ServerWorkload{"process customers (known)", "process customers (new)", "known", 2000},
    ServerWorkload{"process contracts (half known)", "process contracts", "", 0},
    ServerWorkload{"stage orders of 5", "stage orders", "", 0},
    ServerWorkload{"process orders of 5", "process orders", "", 300}};

struct Options {
  bool quick = false;
  double delay = 1; ///< milliseconds each way
  std::string only;
};

std::optional<Options> readOptions(std::span<char*> words) {
  Options options;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string_view word = words[i];
    const bool last = i + 1 == words.size();
    if (word == "--quick") {
      options.quick = true;
    } else if (word == "--only" && !last) {
      options.only = words[++i];
    } else if (word == "--delay" && !last) {
      const std::string_view text = words[++i];
      const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), options.delay);
      if (error != std::errc() || end != text.data() + text.size() || !(options.delay >= 0))
        return std::nullopt;
    } else {
      return std::nullopt;
    }
  }
  return options;
}

struct Figures {
  double seconds = 0;
  double delayedSeconds = 0;
  std::uint64_t roundTrips = 0;
};

double median(std::vector<double> all) {
  const auto middle = all.begin() + static_cast<std::ptrdiff_t>(all.size() / 2);
  std::ranges::nth_element(all, middle);
  return *middle;
}

/// Runs commands on fresh copies of a database of the server.
class ServerRunner {
public:
  ServerRunner(const Place& place, std::string_view connectionString, const Options& options)
      : place_(place), databases_(connectionString),
        way_(connectionString, std::chrono::microseconds(static_cast<long>(options.delay * 1000))),
        rounds_(options.quick ? 1 : 3) {}

  void fill(const std::string& name, const fs::path& file) { databases_.fill(name, file); }

  Figures measureOn(const std::string& start, const CommandFor& command) {
    std::vector<double> times;
    std::vector<double> delayedTimes;
    Figures figures;
    for (int round = 0; round < rounds_; ++round) {
      times.push_back(run(command, databases_.copyOf(start)));
      qx::odbc::ConnectionString delayed(databases_.copyOf(start));
      delayed.set("Port", std::to_string(way_.port()));
      const std::uint64_t before = way_.roundTrips();
      delayedTimes.push_back(run(command, delayed.text()));
      figures.roundTrips = way_.roundTrips() - before;
    }
    figures.seconds = median(times);
    figures.delayedSeconds = median(delayedTimes);
    return figures;
  }

private:
  double run(const CommandFor& command, const std::string& connectionString) {
    // What is still on its way to the disk belongs to nobody's time.
    sync();
    return measure(command("odbc:" + connectionString), place_.folder / "messages").seconds;
  }

  const Place& place_;
  ServerDatabases databases_;
  DelayedWay way_;
  int rounds_;
};

void printHead(double delay) {
  std::cout << "with " << delay << " ms of delay each way:\n\n"
            << "| workload" << std::string(32, ' ')
            << " | jobs/s, no delay | jobs/s, delay | goal | round trips/job |\n|" << std::string(42, '-')
            << "|-----------------:|--------------:|-----:|----------------:|\n";
}

void printFigures(const std::string& name, std::uint32_t jobs, double goal, const Figures& figures) {
  const double delayed = jobs / figures.delayedSeconds;
  std::cout << "| " << std::left << std::setw(40) << name << std::right << std::fixed << std::setprecision(0)
            << " | " << std::setw(16) << jobs / figures.seconds << " | " << std::setw(13) << delayed << " | "
            << std::setw(4);
  if (goal > 0)
    std::cout << goal;
  else
    std::cout << "";
  std::cout << " | " << std::setprecision(3) << std::setw(15)
            << static_cast<double>(figures.roundTrips) / jobs << " |" << (delayed < goal ? "  missed" : "")
            << std::endl;
}

const Workload& workloadLike(const Plan& plan, std::string_view name, const Sizes& sizes) {
  const auto found = std::ranges::find_if(plan.workloads, [&](const Workload& workload) {
    const bool smaller = workload.jobs == sizes.few || workload.jobs == sizes.fewOrders;
    return workload.name.starts_with(name) && !smaller;
  });
  if (found == plan.workloads.end()) throw std::out_of_range("no workload begins with " + std::string(name));
  return *found;
}

void run(const fs::path& folder, const Options& options) {
  const char* const server = std::getenv("QXIMPORTJOB_TEST_ODBC");
  if (server == nullptr) throw std::runtime_error("$QXIMPORTJOB_TEST_ODBC names no server");
  const Place place = placeIn(folder);
  const Sizes& sizes = options.quick ? quickSizes : fullSizes;
  const Plan plan = makePlan(place, sizes);
  Runner files(place, plan.starts, 1, std::cerr);
  ServerRunner runner(place, server, options);
  std::set<std::string> filled;
  const auto measureFrom = [&](const std::string& start, const CommandFor& command) {
    if (filled.insert(start).second) {
      const fs::path file = files.prepare(start);
      std::cerr << "copying " << start << " to the server" << std::endl;
      runner.fill(start, file);
    }
    return runner.measureOn(start, command);
  };

  printHead(options.delay);
  const CommandFor& process = workloadLike(plan, "process customers (new)", sizes).ours;
  const Figures idle = measureFrom("empty", process);
  for (const ServerWorkload& each : serverWorkloads) {
    if (each.name.find(options.only) == std::string_view::npos) continue;
    const Workload& workload = workloadLike(plan, each.like, sizes);
    const std::string start = each.start.empty() ? workload.start : std::string(each.start);
    const std::string name = std::string(each.name) + workload.name.substr(workload.name.rfind(", "));
    printFigures(name, workload.jobs, each.goal, measureFrom(start, workload.ours));
  }
  std::cout << "\na run without jobs: " << std::setprecision(2) << idle.seconds << " s, with delay "
            << idle.delayedSeconds << " s, " << idle.roundTrips
            << " round trips; they are part of each row\n";
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
    std::cerr << "bench_servers: " << error.what() << '\n';
    return 4;
  }
}
