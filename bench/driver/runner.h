// Measures workloads, the program and the floor in turns.
#pragma once

#include "driver/workloads.h"

#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace qx::bench {

/// Medians over all rounds.
struct Outcome {
  std::string name;
  std::uint32_t jobs = 0;
  double goal = 0;
  Measurement ours;
  Measurement floor;
  double megabytes = 0; ///< of the file that was written or read; 0 when there is none
};

/// Instructions of one run of a workload on both sides.
struct Instructions {
  std::uint64_t ours = 0;
  std::uint64_t floor = 0;
};

/// Measures workloads and prepares the databases that they begin with when one asks for them. Each round
/// begins with fresh copies, and after the first one both sides must have left the same rows behind.
class Runner {
public:
  /// `progress` is told what is at work. The place must outlive the runner.
  Runner(const Place& place, std::vector<StartDatabase> starts, int rounds, std::ostream& progress);

  Outcome measureWorkload(const Workload& workload);
  Instructions countWorkload(const Workload& workload);
  /// The database to begin with, made at the first call.
  std::filesystem::path prepare(const std::string& name);

private:
  void requireSameWork(const Workload& workload) const;
  std::filesystem::path databaseOf(const std::string& name) const;
  void copyDatabase(const std::string& from, const std::string& to);
  Measurement measureSide(const CommandFor& command, const std::string& start, const std::string& side);

  const Place& place_;
  std::vector<StartDatabase> starts_;
  std::set<std::string> prepared_;
  int rounds_;
  std::ostream& progress_;
};

} // namespace qx::bench
