#include "store/work_group.h"

#include "platform/conflict_retry.h"
#include "platform/german_cause.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace qx {
namespace {

/// What a job is told that has given way in all its tries.
WorkLostError inGerman(const WorkLostError& loss) {
  if (dynamic_cast<const ConflictError*>(&loss) == nullptr) return loss;
  const RepeatedConflictError repeated(loss.what(), loss.nativeCode(), loss.sqlState());
  return {germanCause(repeated), loss.nativeCode(), loss.sqlState()};
}

} // namespace

void WorkGroup::begin() {
  if (open_) return;
  environment_.connection->beginWork(wait_);
  begunAt_ = environment_.clock.elapsed();
  jobs_ = 0;
  open_ = true;
}

bool WorkGroup::endJob(bool alone) {
  requireWork();
  ++jobs_;
  const bool old = environment_.clock.elapsed() - begunAt_ >= oldAt;
  if (!alone && !old && jobs_ < fullAt_ && environment_.connection->ownsWork()) return false;
  finish();
  return true;
}

void WorkGroup::finish() {
  if (!open_) return;
  requireWork();
  try {
    environment_.connection->commitWork();
  } catch (const StatementError& refusal) {
    // A constraint that is only checked at the commit fails the unit, not a statement.
    throw WorkLostError(refusal.what(), refusal.nativeCode());
  }
  open_ = false;
  heldSinceGap_ += environment_.clock.elapsed() - begunAt_;
  const auto actions = std::exchange(actions_, {});
  for (const auto& action : actions) action();
  try {
    environment_.desktop.yield();
  } catch (const std::exception& error) {
    // The group is durable, whatever an action does.
    environment_.diagnostics.report({"message loop", error.what(), ""});
  }
  leaveGap();
}

/// The error that reported the loss may have been trapped; later statements would be written outside a unit.
void WorkGroup::requireWork() const {
  const Connection& connection = *environment_.connection;
  if (open_ && connection.ownsWork() && !connection.inWork())
    throw WorkLostError("Die Datenbank hat die Änderungen zurückgenommen.", 0);
}

std::size_t WorkGroup::takeAll(std::size_t count, const JobWalk& walk) {
  std::size_t groupStart = 0;  // the first job of the open group
  std::size_t aloneBefore = 0; // jobs before this index are committed one by one
  std::size_t at = 0;
  ConflictRetry retry(environment_.clock, environment_.diagnostics, "unit of work");
  const auto stoppedAtGroup = [&] {
    abandon();
    at = groupStart;
    return walk.stopped();
  };
  while (at < count && !walk.stopped()) {
    try {
      begin();
      walk.take(at);
      const bool alone = at < aloneBefore || at + 1 == count;
      const bool committed = endJob(alone);
      ++at;
      if (committed) groupStart = at;
      if (committed) retry.reset();
    } catch (const WorkLostError& loss) {
      abandon();
      aloneBefore = std::max(aloneBefore, at + 1);
      const bool again = retry.triesAgain(loss);
      if (again || at != groupStart)
        at = groupStart;
      else if (!walk.lost(at, inGerman(loss)))
        groupStart = ++at;
    } catch (const InterruptedError&) {
      if (!stoppedAtGroup()) throw;
    } catch (const BusyError&) {
      if (!stoppedAtGroup()) throw;
    }
  }
  try {
    finish();
  } catch (const WorkLostError&) {
    // A unit is open here only after a stop; lost jobs wait for the next run.
    stoppedAtGroup();
  }
  return at;
}

/// A program that waits for the database polls it about every 2 ms, so a gap of 5 ms lets it in.
void WorkGroup::leaveGap() {
  if (heldSinceGap_ < oldAt || !environment_.connection->ownsWork()) return;
  environment_.clock.sleep(gap);
  heldSinceGap_ = {};
}

void WorkGroup::abandon() noexcept {
  actions_.clear();
  if (!open_) return;
  open_ = false;
  environment_.connection->rollbackWork();
}

void WorkGroup::afterCommit(std::function<void()> action) {
  if (open_)
    actions_.push_back(std::move(action));
  else
    action();
}

} // namespace qx
