// What the parts of one processing run share.
#pragma once

#include "engine/event_source.h"
#include "engine/job_marks.h"
#include "engine/job_outcome.h"
#include "engine/protocol.h"
#include "engine/run_options.h"
#include "engine/run_wait.h"
#include "platform/environment.h"
#include "store/work_group.h"

#include <functional>
#include <string>
#include <utility>

namespace qx {

/// Called for every job of a run once its outcome is durable.
using OutcomeSink = std::function<void(const JobOutcome&)>;

/// The first members come from the engine object that starts the run; the run fills in the others. Must
/// outlive everything that refers to it.
struct RunContext {
  Environment& environment;
  EventSource& events;
  Protocol& protocol;
  CollectedErrors& errors;
  const StopSignal& stop;
  const OutcomeSink& outcomes; ///< may be empty
  StateFeed& feed;
  std::string personnelNumber; ///< of the session's user
  std::string homeCurrency;    ///< empty until it could be read
  bool unevaluated = false;    ///< skip the automatic check
  qxProcessState selection = qxProcessState::ProcessAll;

  RunOptions options{};
  OrderOptions orderOptions{};
  std::string programVersion = " 6.3.0"; ///< default for a host without a version component
  std::string cashOnDelivery{};          ///< numbers of the heavy cash-on-delivery orders
  RunReport report{};
  MissingColumns missing{environment.diagnostics};
  RunWait wait{events, environment.diagnostics, stop, environment.desktop};
  WorkGroup group{environment, &wait, &feed};
  JobMarks marks{environment, missing,
                 [this](std::int16_t jobType, std::string_view text) {
                   group.afterCommit(
                       [this, jobType, kept = std::string(text)] { errors.add(jobType, kept); });
                 },
                 [this](StateChange change) { group.changed(std::move(change)); }};
};

} // namespace qx
