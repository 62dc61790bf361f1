// Does the program's work with bare SQLite, for comparison.

#include "floor/codes.h"
#include "floor/comparison.h"
#include "floor/contracts.h"
#include "floor/database.h"
#include "floor/job_files.h"
#include "floor/orders.h"
#include "floor/processing.h"
#include "floor/separated_values.h"
#include "floor/staging.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace qx::bench;

/// What can be done with a database: a verb and how many numbers it takes.
struct Verb {
  std::string_view name;
  std::size_t numbers;
  void (*run)(Database& database, const std::vector<std::uint32_t>& numbers);
};

using Numbers = std::vector<std::uint32_t>;

constexpr std::array verbs{
    Verb{"codes", 0, [](Database& database, const Numbers&) { addCodes(database); }},
    Verb{"customers", 2, [](Database& database, const Numbers& n) { addCustomers(database, n[0], n[1]); }},
    Verb{"contracts", 1, [](Database& database, const Numbers& n) { addHalfOfContracts(database, n[0]); }},
    Verb{"stage-customers", 1, [](Database& database, const Numbers& n) { stageCustomers(database, n[0]); }},
    Verb{"stage-orders", 2, [](Database& database, const Numbers& n) { stageOrders(database, n[0], n[1]); }},
    Verb{"process-customers", 0, [](Database& database, const Numbers&) { processCustomers(database); }},
    Verb{"process-contracts", 0, [](Database& database, const Numbers&) { processContracts(database); }},
    Verb{"process-orders", 0, [](Database& database, const Numbers&) { processOrders(database); }}};

void printUsage(std::ostream& out) {
  out << "usage: bench_floor compare DB DB\n"
      << "       bench_floor export-customers DB FILE\n"
      << "       bench_floor import-customers DB FILE\n"
      << "       bench_floor read-csv DB FILE\n";
  for (const Verb& verb : verbs) {
    out << "       bench_floor " << verb.name << " DB";
    for (std::size_t i = 0; i < verb.numbers; ++i) out << " NUMBER";
    out << '\n';
  }
}

std::uint32_t count(const std::string& text) {
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size())
    throw std::invalid_argument("'" + text + "' is not a number");
  return number;
}

int run(const std::vector<std::string>& words) {
  if (words.size() == 3 && words[0] == "compare") {
    Database first(words[1]);
    Database second(words[2]);
    return sameWork(first, second, std::cerr) ? 0 : 1;
  }
  if (words.size() == 3 && (words[0] == "export-customers" || words[0] == "import-customers")) {
    Database database(words[1]);
    (words[0] == "export-customers" ? exportCustomers : importCustomers)(database, words[2]);
    return 0;
  }
  if (words.size() == 3 && words[0] == "read-csv") {
    readSeparatedValues(words[2]);
    return 0;
  }
  const auto verb = words.size() < 2 ? verbs.end() : std::ranges::find(verbs, words[0], &Verb::name);
  if (verb == verbs.end() || words.size() != verb->numbers + 2) {
    printUsage(std::cerr);
    return 2;
  }
  Numbers numbers;
  for (std::size_t i = 2; i < words.size(); ++i) numbers.push_back(count(words[i]));
  Database database(words[1]);
  verb->run(database, numbers);
  return 0;
}

} // namespace

int main(int argc, char** argv) {
  try {
    return run({argv + 1, argv + argc});
  } catch (const std::exception& error) {
    std::cerr << "bench_floor: " << error.what() << '\n';
    return 4;
  }
}
