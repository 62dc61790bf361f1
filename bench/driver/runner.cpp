#include "driver/runner.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace qx::bench {
namespace {

namespace fs = std::filesystem;

template <class Member>
double median(std::vector<Measurement> all, Member member) {
  const auto middle = all.begin() + static_cast<std::ptrdiff_t>(all.size() / 2);
  std::ranges::nth_element(all, middle, {}, member);
  return (*middle).*member;
}

Measurement medians(const std::vector<Measurement>& all) {
  return {median(all, &Measurement::seconds), median(all, &Measurement::cpuSeconds),
          median(all, &Measurement::peakMiB)};
}

/// Reads the files bit by bit: what this program once held would count as memory of those that it starts.
bool sameContent(const fs::path& first, const fs::path& second) {
  using Bytes = std::istreambuf_iterator<char>;
  std::ifstream left(first, std::ios::binary);
  std::ifstream right(second, std::ios::binary);
  if (!left || !right) throw std::runtime_error("cannot read " + first.string() + " and " + second.string());
  return std::equal(Bytes(left), Bytes(), Bytes(right), Bytes());
}

} // namespace

Runner::Runner(const Place& place, std::vector<StartDatabase> starts, int rounds, std::ostream& progress)
    : place_(place), starts_(std::move(starts)), rounds_(rounds), progress_(progress) {}

fs::path Runner::databaseOf(const std::string& name) const { return place_.folder / (name + ".db"); }

/// A database whose last program has ended is one file; what a killed one left beside it goes.
void Runner::copyDatabase(const std::string& from, const std::string& to) {
  const fs::path target = databaseOf(to);
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(target.string() + suffix);
  fs::copy_file(databaseOf(from), target);
}

fs::path Runner::prepare(const std::string& name) {
  fs::path database = databaseOf(name);
  if (!prepared_.insert(name).second) return database;
  const auto start = std::ranges::find(starts_, name, &StartDatabase::name);
  if (start == starts_.end()) throw std::out_of_range("no database is called " + name);
  for (const std::string& needed : {start->copyOf, start->after})
    if (!needed.empty()) prepare(needed);
  progress_ << "preparing " << name << std::endl;
  if (!start->copyOf.empty()) copyDatabase(start->copyOf, name);
  for (const CommandFor& command : start->commands)
    measure(command(database.string()), place_.folder / "messages");
  return database;
}

Measurement Runner::measureSide(const CommandFor& command, const std::string& start,
                                const std::string& side) {
  copyDatabase(start, side);
  // What is still on its way to the disk belongs to nobody's time.
  sync();
  return measure(command(databaseOf(side).string()), place_.folder / "messages");
}

void Runner::requireSameWork(const Workload& workload) const {
  const std::string ours = databaseOf("ours").string();
  const std::string floor = databaseOf("floor").string();
  measure({place_.floor.string(), "compare", ours, floor}, place_.folder / "messages");
  if (workload.file && !sameContent(workload.file(ours), workload.file(floor)))
    throw std::runtime_error(workload.name + ": the files differ");
}

Outcome Runner::measureWorkload(const Workload& workload) {
  prepare(workload.start);
  std::vector<Measurement> ours;
  std::vector<Measurement> floor;
  for (int round = 1; round <= rounds_; ++round) {
    progress_ << workload.name << ": round " << round << " of " << rounds_ << std::endl;
    ours.push_back(measureSide(workload.ours, workload.start, "ours"));
    floor.push_back(measureSide(workload.floor, workload.start, "floor"));
    if (round == 1) requireSameWork(workload);
  }
  const auto size = workload.file ? fs::file_size(workload.file(databaseOf("ours").string())) : 0;
  return {workload.name, workload.jobs,  workload.goal.time,
          medians(ours), medians(floor), static_cast<double>(size) / 1e6};
}

Instructions Runner::countWorkload(const Workload& workload) {
  prepare(workload.start);
  progress_ << workload.name << ": counting" << std::endl;
  const auto count = [&](const CommandFor& command, const std::string& side) {
    copyDatabase(workload.start, side);
    return countInstructions(command(databaseOf(side).string()), place_.folder / "messages");
  };
  const Instructions counted{count(workload.ours, "ours"), count(workload.floor, "floor")};
  requireSameWork(workload);
  return counted;
}

} // namespace qx::bench
