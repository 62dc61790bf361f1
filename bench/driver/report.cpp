#include "driver/report.h"

#include <algorithm>
#include <iomanip>
#include <string>

namespace qx::bench {
namespace {

std::string verdict(double value, double goal) { return value <= goal ? "" : "  missed"; }

void printRow(std::ostream& out, const Outcome& outcome) {
  const double ratio = outcome.ours.seconds / outcome.floor.seconds;
  out << "| " << std::left << std::setw(42) << outcome.name << std::right << std::fixed
      << std::setprecision(0) << " | " << std::setw(7) << outcome.jobs / outcome.ours.seconds << " | "
      << std::setw(12) << outcome.jobs / outcome.floor.seconds << std::setprecision(2) << " | "
      << std::setw(5) << ratio << " | " << std::setw(9) << outcome.ours.cpuSeconds / outcome.floor.cpuSeconds
      << " | " << std::setw(4) << std::setprecision(1);
  if (outcome.goal > 0)
    out << outcome.goal;
  else
    out << "";
  out << " | " << std::setw(8) << outcome.ours.peakMiB << " |";
  if (outcome.goal > 0) out << verdict(ratio, outcome.goal);
  out << '\n';
}

void printThroughput(std::ostream& out, const Outcome& outcome) {
  const double beyondFloor = outcome.ours.cpuSeconds - outcome.floor.cpuSeconds;
  out << outcome.name << ": " << std::setprecision(1) << outcome.megabytes << " MB, "
      << outcome.megabytes / outcome.ours.seconds << " MB/s of wall time, "
      << outcome.megabytes / outcome.ours.cpuSeconds << " MB/s of processor time (floor "
      << outcome.megabytes / outcome.floor.seconds << " and " << outcome.megabytes / outcome.floor.cpuSeconds
      << "), " << std::setprecision(2) << beyondFloor << " s of processor time more than the floor\n";
}

void printGrowth(std::ostream& out, const Outcome& few, const Outcome& many, const Growth& growth) {
  const double times = many.ours.seconds / few.ours.seconds;
  out << "growth: " << many.name << " cost " << std::setprecision(1) << times << " times what "
      << std::setprecision(0) << few.jobs << std::setprecision(1) << " cost (goal " << growth.goal
      << ", floor " << many.floor.seconds / few.floor.seconds << ")" << verdict(times, growth.goal) << '\n'
      << "memory: " << many.ours.peakMiB << " MiB at most in that run (goal " << growth.memoryGoalMiB << ")"
      << verdict(many.ours.peakMiB, growth.memoryGoalMiB) << '\n';
}

} // namespace

void printReport(std::ostream& out, const std::vector<Outcome>& outcomes,
                 const std::vector<Growth>& growths) {
  out << "| workload" << std::string(34, ' ')
      << " |  jobs/s | floor jobs/s | ratio | cpu ratio | goal | peak MiB |\n"
      << "|" << std::string(44, '-') << "|--------:|-------------:|------:|----------:|-----:|---------:|\n";
  for (const Outcome& outcome : outcomes) printRow(out, outcome);
  out << '\n';
  for (const Outcome& outcome : outcomes)
    if (outcome.megabytes > 0) printThroughput(out, outcome);
  for (const Growth& growth : growths) {
    const auto few = std::ranges::find(outcomes, growth.few, &Outcome::name);
    const auto many = std::ranges::find(outcomes, growth.many, &Outcome::name);
    if (few != outcomes.end() && many != outcomes.end()) printGrowth(out, *few, *many, growth);
  }
}

void printCosts(std::ostream& out, const std::vector<JobCost>& costs) {
  out << "| workload" << std::string(34, ' ') << " | instructions/job |   floor | ratio | goal |\n|"
      << std::string(44, '-') << "|-----------------:|--------:|------:|-----:|\n";
  for (const JobCost& cost : costs) {
    const double ratio = cost.ours / cost.floor;
    out << "| " << std::left << std::setw(42) << cost.name << std::right << std::fixed << std::setprecision(0)
        << " | " << std::setw(16) << cost.ours << " | " << std::setw(7) << cost.floor << " | "
        << std::setprecision(2) << std::setw(5) << ratio << " | " << std::setw(4) << std::setprecision(1);
    if (cost.goal > 0)
      out << cost.goal << " |" << verdict(ratio, cost.goal);
    else
      out << ""
          << " |";
    out << '\n';
  }
}

} // namespace qx::bench
