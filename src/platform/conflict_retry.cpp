#include "platform/conflict_retry.h"

#include <algorithm>
#include <chrono>
#include <random>

namespace qx {
namespace {

/// Twice as long after each try: the more programs meet, the wider they have to spread.
std::chrono::milliseconds pauseAfter(int tries) {
  constexpr int first = 20;
  constexpr int longest = 1000;
  std::random_device source;
  return std::chrono::milliseconds(
      std::uniform_int_distribution(0, std::min(first << (tries - 1), longest))(source));
}

} // namespace

bool ConflictRetry::triesAgain(const WorkLostError& loss) {
  if (dynamic_cast<const ConflictError*>(&loss) == nullptr) return false;
  ++tries_;
  const std::string tries = std::to_string(tries_) + " of " + std::to_string(mostTries);
  diagnostics_.report({where_, "gave way to another program, try " + tries + ": " + loss.what(), ""});
  if (tries_ == mostTries) {
    tries_ = 0;
    return false;
  }
  clock_.sleep(pauseAfter(tries_));
  return true;
}

void ConflictRetry::pause(const ConflictError& conflict) {
  if (triesAgain(conflict)) return;
  throw RepeatedConflictError("another program changed the same rows at the same time in each of " +
                                  std::to_string(mostTries) + " tries: " + conflict.what(),
                              conflict.nativeCode(), conflict.sqlState());
}

} // namespace qx
