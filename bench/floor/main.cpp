// Does the program's work with bare SQLite, for comparison.

#include "floor/codes.h"
#include "floor/comparison.h"
#include "floor/database.h"
#include "floor/processing.h"
#include "floor/staging.h"

#include <charconv>
#include <cstdint>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr std::string_view usage = "usage: bench_floor codes DB\n"
                                   "       bench_floor customers DB COUNT\n"
                                   "       bench_floor stage-customers DB COUNT\n"
                                   "       bench_floor process-customers DB\n"
                                   "       bench_floor compare DB DB\n";

std::uint32_t count(const std::string& text) {
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size())
    throw std::invalid_argument("'" + text + "' is no number");
  return number;
}

int run(const std::vector<std::string>& words) {
  using namespace qx::bench;
  const std::string verb = words.empty() ? std::string() : words[0];
  const std::size_t given = words.size();
  if (verb == "compare" && given == 3) {
    Database first(words[1]);
    Database second(words[2]);
    return sameWork(first, second, std::cerr) ? 0 : 1;
  }
  const bool counts = verb == "customers" || verb == "stage-customers";
  const bool plain = verb == "codes" || verb == "process-customers";
  if (!(counts && given == 3) && !(plain && given == 2)) {
    std::cerr << usage;
    return 2;
  }
  Database database(words[1]);
  if (verb == "codes") addCodes(database);
  if (verb == "customers") addHalfOfCustomers(database, count(words[2]));
  if (verb == "stage-customers") stageCustomers(database, count(words[2]));
  if (verb == "process-customers") processCustomers(database);
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
