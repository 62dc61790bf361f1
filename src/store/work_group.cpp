#include "store/work_group.h"

#include "platform/conflict_retry.h"
#include "platform/failure.h"

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
  if (feed_ != nullptr) feed_->prepare(wait_);
  environment_.connection->beginWork(wait_);
  limits_ = environment_.connection->groupLimits();
  if (fullAt_ > 0) limits_.jobs = fullAt_;
  mostAge_ = limits_.age;
  begunAt_ = environment_.clock.elapsed();
  jobs_ = 0;
  open_ = true;
}

bool WorkGroup::endJob(bool alone) {
  requireWork();
  ++jobs_;
  const auto age = environment_.clock.elapsed() - begunAt_;
  if (!alone && age < mostAge_ && jobs_ < limits_.jobs && environment_.connection->ownsWork()) return false;
  if (collected_ && age.count() > 0)
    expected_ = std::max(few, jobs_ * static_cast<std::size_t>(limits_.age.count()) /
                                  static_cast<std::size_t>(age.count()));
  finish();
  return true;
}

void WorkGroup::finish() {
  if (!open_) return;
  requireWork();
  try {
    if (feed_ != nullptr) feed_->write();
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

void WorkGroup::beginCollected(std::size_t first, std::size_t count, const JobWalk& walk) {
  begin();
  collected_ = walk.foresee && count > 1 && environment_.connection->ownsWork();
  if (!collected_) return;
  environment_.connection->collectWrites();
  limits_.jobs = std::min(limits_.jobs, expected_);
  foreseen_ = std::min(count, limits_.jobs);
  walk.foresee(first, foreseen_);
  foreseen_ = 0;
  // However long that took: most of the time goes into the jobs themselves.
  mostAge_ = std::max(limits_.age, 4 * (environment_.clock.elapsed() - begunAt_));
}

/// The jobs from here on that a group may hold.
std::size_t WorkGroup::Walk::groupSize() const {
  if (start < aloneBefore) return 1;
  return std::min(start < fewBefore ? few : count, count - at);
}

/// Goes back to the begin of the group, whose jobs are then taken in smaller ones.
void WorkGroup::Walk::retake(std::size_t lost) {
  (lost > few ? fewBefore : aloneBefore) = start + lost;
  at = start;
}

void WorkGroup::takeNext(Walk& jobs, const JobWalk& walk) {
  if (!open_) beginCollected(jobs.at, jobs.groupSize(), walk);
  walk.take(jobs.at);
  ++jobs.at;
  const bool full =
      jobs.start < jobs.aloneBefore || (jobs.start < jobs.fewBefore && jobs.at - jobs.start >= few);
  if (endJob(full || jobs.at == jobs.count)) jobs.start = jobs.at;
}

std::size_t WorkGroup::takeAll(std::size_t count, const JobWalk& walk) {
  Walk jobs{.count = count};
  ConflictRetry retry(environment_.clock, environment_.diagnostics, "unit of work");
  const auto stoppedAtGroup = [&] {
    abandon();
    jobs.at = jobs.start;
    return walk.stopped();
  };
  while (jobs.at < count && !walk.stopped()) {
    const std::size_t taken = jobs.at;
    try {
      takeNext(jobs, walk);
      if (jobs.start == jobs.at) retry.reset();
    } catch (const WorkLostError& loss) {
      const std::size_t lost = std::max(taken + 1 - jobs.start, foreseen_);
      const bool wasAlone = taken == jobs.start && !collected_;
      abandon();
      if (const bool conflict = retry.triesAgain(loss); conflict || !wasAlone)
        jobs.retake(lost);
      else
        jobs.pass(taken, walk.lost(taken, inGerman(loss)));
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
  return jobs.at;
}

/// A program that waits for the database polls it about every 2 ms, so a gap of 5 ms lets it in.
void WorkGroup::leaveGap() {
  if (heldSinceGap_ < heldLong || !environment_.connection->ownsWork()) return;
  environment_.clock.sleep(gap);
  heldSinceGap_ = {};
}

void WorkGroup::abandon() noexcept {
  actions_.clear();
  if (feed_ != nullptr) feed_->drop();
  collected_ = false;
  foreseen_ = 0;
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
