// Does units of work again that gave way to those of other programs.
#pragma once

#include "platform/database_error.h"
#include "platform/environment.h"

#include <string>
#include <string_view>

namespace qx {

/// Counts how often a unit of work has given way to another program's and decides whether it is done again.
class ConflictRetry {
public:
  /// The first try included.
  static constexpr int mostTries = 8;

  /// `where` names the unit in the diagnostics.
  ConflictRetry(Clock& clock, Diagnostics& diagnostics, std::string_view where)
      : clock_(clock), diagnostics_(diagnostics), where_(where) {}

  /// To be called when the unit has ended. Reports a conflict and pauses for a short random time, so that the
  /// two programs do not meet again at once. False after the last try, and for any other loss.
  bool triesAgain(const WorkLostError& loss);
  /// The same for a conflict; raises `RepeatedConflictError` after the last try.
  void pause(const ConflictError& conflict);
  /// What follows has all its tries again.
  void reset() { tries_ = 0; }

private:
  Clock& clock_;
  Diagnostics& diagnostics_;
  std::string where_;
  int tries_ = 0;
};

/// Runs a piece of work that is one unit from its beginning to its commit, again when the database has it
/// give way to another program's. Inside of a unit that is already open it runs once: that one must be done
/// again.
template <class Unit>
auto doneAgainOnConflict(Environment& environment, std::string_view where, Unit&& unit) {
  const bool part = environment.connection && environment.connection->inWork();
  ConflictRetry retry(environment.clock, environment.diagnostics, where);
  while (true) {
    try {
      return unit();
    } catch (const ConflictError& conflict) {
      if (part) throw;
      retry.pause(conflict);
    }
  }
}

} // namespace qx
