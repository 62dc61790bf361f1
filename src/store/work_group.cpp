#include "store/work_group.h"

#include <utility>

namespace qx {

void WorkGroup::begin() {
  if (open_) return;
  environment_.connection->beginWork(wait_);
  begunAt_ = environment_.clock.elapsed();
  jobs_ = 0;
  open_ = true;
}

bool WorkGroup::endJob(bool alone) {
  // Whoever met the failure that took the unit along may have passed over it.
  if (open_ && environment_.connection->ownsWork() && !environment_.connection->inWork())
    throw WorkLostError("the database has rolled the unit of work back", 0);
  ++jobs_;
  const bool old = environment_.clock.elapsed() - begunAt_ >= oldAt;
  if (!alone && !old && jobs_ < fullAt_ && environment_.connection->ownsWork()) return false;
  finish();
  return true;
}

void WorkGroup::finish() {
  if (!open_) return;
  environment_.connection->commitWork();
  open_ = false;
  heldSinceGap_ += environment_.clock.elapsed() - begunAt_;
  const auto promises = std::exchange(promises_, {});
  for (const auto& promise : promises) promise();
  environment_.desktop.yield();
  leaveGap();
}

/// A program that waits for the database polls it about every 2 ms, so a gap of 5 ms lets it in.
void WorkGroup::leaveGap() {
  if (heldSinceGap_ < oldAt || !environment_.connection->ownsWork()) return;
  environment_.clock.sleep(gap);
  heldSinceGap_ = {};
}

void WorkGroup::abandon() noexcept {
  promises_.clear();
  if (!open_) return;
  open_ = false;
  environment_.connection->rollbackWork();
}

void WorkGroup::afterCommit(std::function<void()> promise) {
  if (open_)
    promises_.push_back(std::move(promise));
  else
    promise();
}

} // namespace qx
