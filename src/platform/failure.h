// Failures: how they are kept from the caller, and what they are called.
#pragma once

#include "platform/database_error.h"
#include "platform/system.h"

#include <exception>
#include <functional>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace qx {

inline bool isOutOfMemory(const std::exception& failure) {
  return dynamic_cast<const std::bad_alloc*>(&failure) != nullptr;
}

/// Whether a failure concerns more than the current job or setting: any database failure other than a refused
/// statement, or a lack of memory.
inline bool isFatal(const std::exception& failure) {
  if (isOutOfMemory(failure)) return true;
  return dynamic_cast<const DatabaseError*>(&failure) != nullptr &&
         dynamic_cast<const StatementError*>(&failure) == nullptr;
}

/// How the failures of a step are handled.
struct Trap {
  std::string_view where;    ///< the name of the step in the diagnostics
  std::string_view job = {}; ///< the key of the job that it concerns
  /// Which failures reach the caller instead, unreported; null for none.
  std::function<bool(const std::exception& failure)> lets = {};
};

/// Runs a step. Returns true when a failure was trapped: it has been reported and then passed to `react`,
/// which may raise.
template <class Step, class React>
bool trapped(Diagnostics& diagnostics, const Trap& trap, Step&& step, React&& react) {
  try {
    std::forward<Step>(step)();
    return false;
  } catch (const std::exception& failure) {
    if (trap.lets && trap.lets(failure)) throw;
    diagnostics.report({trap.where, failure.what(), trap.job});
    std::forward<React>(react)(failure);
    return true;
  }
}

template <class Step>
bool trapped(Diagnostics& diagnostics, const Trap& trap, Step&& step) {
  return trapped(diagnostics, trap, std::forward<Step>(step), [](const std::exception&) {});
}

/// A German sentence for the clerk; the component's own texts are German already and stay as they are. The
/// database's or system's own words are for the diagnostics.
std::string germanCause(const std::exception& error);

/// In English and as raised, but readable also for failures of the C++ runtime.
std::string plainCause(const std::exception& error);

} // namespace qx
