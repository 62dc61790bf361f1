#include "driver/report.h"

#include <algorithm>
#include <iomanip>
#include <stdexcept>
#include <string>

namespace qx::bench {
namespace {

std::string verdict(double value, double goal) { return value <= goal ? "" : "  missed"; }

const Outcome& named(const std::vector<Outcome>& outcomes, const std::string& name) {
  const auto found = std::ranges::find(outcomes, name, &Outcome::name);
  if (found == outcomes.end()) throw std::out_of_range("no workload is called " + name);
  return *found;
}

void printRow(std::ostream& out, const Outcome& outcome) {
  const double ratio = outcome.ours.seconds / outcome.floor.seconds;
  out << "| " << std::left << std::setw(42) << outcome.name << std::right << std::fixed
      << std::setprecision(0) << " | " << std::setw(7) << outcome.jobs / outcome.ours.seconds << " | "
      << std::setw(12) << outcome.jobs / outcome.floor.seconds << std::setprecision(2) << " | "
      << std::setw(5) << ratio << " | " << std::setw(9) << outcome.ours.cpuSeconds / outcome.floor.cpuSeconds
      << " | " << std::setw(4) << std::setprecision(1) << outcome.goal << " | " << std::setw(8)
      << outcome.ours.peakMiB << " |" << verdict(ratio, outcome.goal) << '\n';
}

} // namespace

void printReport(std::ostream& out, const std::vector<Outcome>& outcomes, const Growth& growth) {
  out << "| workload" << std::string(34, ' ')
      << " |  jobs/s | floor jobs/s | ratio | cpu ratio | goal | peak MiB |\n"
      << "|" << std::string(44, '-') << "|--------:|-------------:|------:|----------:|-----:|---------:|\n";
  for (const Outcome& outcome : outcomes) printRow(out, outcome);

  const Outcome& few = named(outcomes, growth.few);
  const Outcome& many = named(outcomes, growth.many);
  const double times = many.ours.seconds / few.ours.seconds;
  out << "\ngrowth: " << many.jobs << " jobs cost " << std::setprecision(1) << times << " times what "
      << few.jobs << " cost (goal " << growth.goal << ", floor " << many.floor.seconds / few.floor.seconds
      << ")" << verdict(times, growth.goal) << '\n'
      << "memory: " << many.ours.peakMiB << " MiB at most in a run over " << many.jobs << " jobs (goal "
      << growth.memoryGoalMiB << ")" << verdict(many.ours.peakMiB, growth.memoryGoalMiB) << '\n';
}

} // namespace qx::bench
