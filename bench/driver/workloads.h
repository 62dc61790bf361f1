// What is measured: the table of workloads.
#pragma once

#include "driver/child_process.h"
#include "driver/place.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace qx::bench {

struct Sizes {
  std::uint32_t jobs = 20000;
  std::uint32_t few = 10000; ///< the two ends of the growth
  std::uint32_t many = 100000;
  std::uint32_t fewOrders = 2000;
  std::uint32_t manyOrders = 20000;
};

/// Makes a command for the database that it is to work on.
using CommandFor = std::function<Command(const std::string& database)>;

/// The file that a command writes or reads.
using FileFor = std::function<std::filesystem::path(const std::string& database)>;

/// At most so many times the floor; 0: none.
struct Goal {
  double time = 0;
  double instructions = 0;
};

struct Workload {
  std::string name; ///< with the number of jobs behind a comma
  std::uint32_t jobs = 0;
  Goal goal;
  std::string start; ///< the prepared database that both sides begin with
  CommandFor ours;
  CommandFor floor;
  FileFor file{}; ///< both sides write or read the same; empty when there is none
};

/// A database to begin with, made once: a copy of another one and a few commands.
struct StartDatabase {
  std::string name;
  std::string copyOf; ///< empty: none
  std::vector<CommandFor> commands;
  std::string after{}; ///< another one whose making leaves behind a file that is needed; empty: none
};

/// How the cost of a workload grows with the number of jobs, and how large the program grows with it.
struct Growth {
  std::string few; ///< names of workloads
  std::string many;
  double goal = 0;
  double memoryGoalMiB = 0; ///< of the larger run
};

struct Plan {
  std::vector<StartDatabase> starts;
  std::vector<Workload> workloads;
  std::vector<Growth> growths;
};

/// Writes the files of jobs as well.
Plan makePlan(const Place& place, const Sizes& sizes);

} // namespace qx::bench
