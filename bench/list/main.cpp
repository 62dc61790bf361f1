// Measures how long the job list takes to open on a staging table of a million jobs.

#include "adapters/sqlite/sqlite_database.h"
#include "erp/schema.h"
#include "store/job_list.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace qx;
namespace fs = std::filesystem;

constexpr std::string_view usage = "usage: bench_list FOLDER [--quick]\n";
constexpr std::uint32_t allJobs = 1000000;
constexpr std::uint32_t quickJobs = 100000;
constexpr int rounds = 5;
constexpr double goal = 0.2;

struct NamedFilter {
  std::string_view name;
  JobListFilter filter;
};
constexpr std::array filters{NamedFilter{"as at start", {}},
                             NamedFilter{"all states", {true, true, true, true}},
                             NamedFilter{"warnings only", {false, false, true, false}}};

struct NamedKey {
  std::string_view name;
  JobListKey key;
};
constexpr std::array keys{NamedKey{"Eingangsdatum", JobListKey::Eingangsdatum},
                          NamedKey{"JobType", JobListKey::JobType},
                          NamedKey{"FormatDatum", JobListKey::FormatDatum},
                          NamedKey{"Kundennummer", JobListKey::Kundennummer},
                          NamedKey{"Bez1", JobListKey::Bez1},
                          NamedKey{"Betreff", JobListKey::Betreff}};

std::string padded(std::uint32_t number, std::size_t width) {
  std::string text = std::to_string(number);
  return std::string(text.size() < width ? width - text.size() : 0, '0') + text;
}

/// A third of the jobs waits, most are done, the rest is marked. Neighbours in the table are no neighbours in
/// any order.
void addJob(Recordset& jobs, std::uint32_t number) {
  constexpr std::array states{0, 3, 0, 3, 1, 3, 0, 3, 2, 3, 0, 3};
  const std::uint32_t mixed = number * 2654435761U;
  jobs.addNew();
  jobs.set("JobID", Value(padded(mixed, 16) + padded(number, 16)));
  jobs.set("JobType", Value(static_cast<std::int64_t>(10 * (1 + number % 3)) + states[number % 12]));
  jobs.set("Eingangsdatum", Value(padded(1 + mixed % 28, 2) + "." + padded(1 + mixed / 32 % 12, 2) + "." +
                                  std::to_string(2015 + mixed / 512 % 12)));
  jobs.set("Kundennummer", Value(std::to_string(10000 + mixed / 16 % 90000)));
  jobs.set("Bez1", Value("Handelshaus " + std::to_string(mixed / 8 % 200000)));
  jobs.set("Bez2", Value("Einkauf"));
  jobs.set("Strasse", Value("Hafenstraße " + std::to_string(mixed % 200)));
  jobs.set("Land", Value("D"));
  jobs.set("PLZ", Value(padded(mixed / 4 % 100000, 5)));
  jobs.set("Ort", Value("Hamburg"));
  jobs.set("Bemerkung", Value("aus dem Onlineshop übernommen"));
  jobs.set("Betreff", Value("Bestellung " + std::to_string(mixed / 2 % 500000)));
  jobs.set("ImportType", Value(10));
  jobs.update();
}

void makeJobs(Connection& connection, std::uint32_t count) {
  WorkUnit unit(connection);
  erp::createSchema(connection);
  const auto jobs = connection.open(sql("Select * From ImportKopf Where 1 = 0"_sql));
  for (std::uint32_t i = 0; i < count; ++i) addJob(*jobs, i);
  unit.commit();
}

template <class Work>
double secondsOf(Work&& work) {
  const auto begun = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
}

double median(std::vector<double> all) {
  const auto middle = all.begin() + static_cast<std::ptrdiff_t>(all.size() / 2);
  std::ranges::nth_element(all, middle);
  return *middle;
}

struct Times {
  double list = 0;
  double counts = 0;
};

/// On a connection of its own, as when the window opens: nothing is compiled or in the page cache yet.
Times measure(const std::string& file, const JobListFilter& filter, const JobListOrder& order) {
  std::vector<double> list;
  std::vector<double> counts;
  for (int round = 0; round < rounds; ++round) {
    const auto connection = SqliteDatabase().open(file);
    list.push_back(secondsOf([&] { readJobList(*connection, filter, order); }));
    counts.push_back(secondsOf([&] { countJobs(*connection); }));
  }
  return {median(list), median(counts)};
}

void printRow(std::string_view filter, std::string_view key, bool descending, const Times& times) {
  constexpr double milli = 1000;
  const std::string order = std::string(key) + (descending ? " DESC" : "");
  std::cout << "| " << std::left << std::setw(14) << filter << "| " << std::setw(19) << order << "|"
            << std::right << std::fixed << std::setprecision(1) << std::setw(8) << times.list * milli << " |"
            << std::setw(10) << times.counts * milli << " |"
            << (times.list + times.counts > goal ? "  missed" : "") << "\n";
}

void run(const fs::path& folder, std::uint32_t jobs) {
  const std::string file = (folder / "list.db").string();
  std::cerr << "staging " << jobs << " jobs" << std::endl;
  makeJobs(*SqliteDatabase().create(file), jobs);
  std::cout << "The list of 2,000 out of " << jobs << " staged jobs (goal: both below " << goal * 1000
            << " ms)\n\n"
            << "| states        | order              | list ms | counts ms |\n"
            << "|---------------|--------------------|--------:|----------:|\n";
  for (const auto& [filterName, filter] : filters)
    for (const auto& [keyName, key] : keys)
      for (const bool descending : {true, false})
        printRow(filterName, keyName, descending, measure(file, filter, {key, descending}));
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(file + suffix);
}

std::optional<std::uint32_t> jobsFor(std::span<char*> words) {
  if (words.empty()) return allJobs;
  if (words.size() == 1 && std::string_view(words.front()) == "--quick") return quickJobs;
  return std::nullopt;
}

} // namespace

int main(int argc, char** argv) {
  const std::span<char*> words(argv, static_cast<std::size_t>(argc));
  const auto jobs = argc < 2 ? std::nullopt : jobsFor(words.subspan(2));
  if (!jobs) {
    std::cerr << usage;
    return 2;
  }
  try {
    run(argv[1], *jobs);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "bench_list: " << error.what() << '\n';
    return 4;
  }
}
