#include "engine/section_runner.h"

#include "platform/failure.h"

#include <cmath>
#include <stdexcept>
#include <utility>

namespace qx {

void JobResult::addHints(Findings hints) {
  for (const Finding& hint : hints) appendLine(line.info, hintLine(hint));
  findings.append(std::move(hints));
}

void SectionRunner::run(const Section& section, const Sql& query, const Handler& handler) {
  // Once the run is ending, the section only counts the remaining jobs.
  if (!run_.stop.requested()) run_.events.raiseProcessInfo(section.info);
  const auto jobs = run_.environment.connection->openKeyset(query);
  const std::size_t count = jobs->recordCount();
  progressRaised_ = 0;
  attempt_ = {};
  const std::size_t taken = run_.group.takeAll(
      count, {[&](std::size_t at) {
                take(section, *jobs, at, handler);
                raiseProgress(at + 1, count);
              },
              [&](std::size_t at, const WorkLostError& loss) {
                if (takesAgain(loss)) return true;
                leave(*jobs, at, loss);
                raiseProgress(at + 1, count);
                return false;
              },
              [&] { return run_.stop.requested(); },
              [&](std::size_t first, std::size_t jobsAhead) { foresee(*jobs, first, jobsAhead, handler); }});
  run_.report.stillWaiting += count - taken;
}

/// Nothing is decided here: what is read too much or too little only costs time.
void SectionRunner::foresee(Recordset& jobs, std::size_t first, std::size_t count, const Handler& handler) {
  Connection& connection = *run_.environment.connection;
  if (!connection.readsAhead()) return;
  jobs.moveTo(first);
  jobs.readAhead(count);
  if (!handler.foresee) return;
  for (int round = 0; round < handler.lookahead; ++round) {
    connection.noteReads();
    for (std::size_t at = first; at < first + count; ++at) {
      jobs.moveTo(at);
      foreseeJob(jobs, handler);
    }
    if (connection.readNoted() == 0) return;
  }
}

/// A failure here is one of reading too little, and comes again when the job is processed.
void SectionRunner::foreseeJob(Recordset& jobs, const Handler& handler) {
  try {
    if (jobs.resync()) handler.foresee(JobRow(jobs, run_.missing));
  } catch (const std::exception& error) {
    if (isFatal(error)) throw;
  }
}

void SectionRunner::take(const Section& section, Recordset& jobs, std::size_t at, const Handler& handler) {
  if (attempt_.at != at) {
    attempt_ = {};
    attempt_.at = at;
  }
  attempt_.step = Step::Writing;
  jobs.moveTo(at);
  // Skipped: deleted, or moved to another state by someone else since the section was opened.
  if (!jobs.resync() || !section.takes(jobCode(jobs.value("JobType")))) return;
  const auto result =
      attempt_.writing ? markFailed(handler, jobs, attempt_.writing->what()) : processJob(handler, jobs);
  if (result && !result->leftOut) {
    run_.group.requireWork();
    logJob(JobRow(jobs, run_.missing), *result);
  }
  attempt_.step = Step::Committing;
}

/// Null when the job has disappeared meanwhile.
std::optional<JobResult> SectionRunner::processJob(const Handler& handler, Recordset& jobs) {
  JobRow job(jobs, run_.missing);
  std::optional<JobResult> result;
  const std::string jobId = job.text("JobID");
  trapped(
      run_.environment.diagnostics, {"processing of a job", jobId, &isFatal},
      [&] { result = handler.process(job); },
      [&](const std::exception& error) {
        run_.group.requireWork();
        result = markFailed(handler, jobs, error.what());
      });
  return result;
}

/// Marks the current job as failed. One that has disappeared is skipped; if marking is refused, the unit is
/// rolled back, since otherwise the job would look as if it had been processed.
std::optional<JobResult> SectionRunner::markFailed(const Handler& handler, Recordset& jobs,
                                                   const std::string& reason) {
  attempt_.step = Step::Marking;
  JobRow job(jobs, run_.missing);
  job.cancelUpdate();
  // The values read before still hold what the failure has undone.
  if (!jobs.resync()) {
    run_.environment.diagnostics.report(
        {"processing of a job", "a job was deleted while it was processed; it is passed over", ""});
    return std::nullopt;
  }
  try {
    JobResult failed = handler.fail(job, reason);
    failed.findings.add(Finding(Rule::ProcessingFailed, reason));
    return failed;
  } catch (const StatementError& refusal) {
    // Rolls back the group, with what the job has done so far.
    throw WorkLostError(refusal.what(), refusal.nativeCode());
  }
}

/// Gives up the step that lost the unit; false when nothing is left to give up.
bool SectionRunner::takesAgain(const WorkLostError& loss) {
  switch (attempt_.step) {
  case Step::Logging:
    attempt_.line = loss;
    return true;
  case Step::Indexing:
    attempt_.index = loss;
    return true;
  case Step::Writing:
  case Step::Committing:
    if (attempt_.writing) return false;
    attempt_.writing = loss;
    return true;
  case Step::Marking:
    break;
  }
  return false;
}

void SectionRunner::leave(Recordset& jobs, std::size_t at, const WorkLostError& loss) {
  jobs.moveTo(at);
  if (!jobs.resync()) return;
  const std::string jobId = JobRow(jobs, run_.missing).text("JobID");
  run_.environment.diagnostics.report(
      {"marking of a job", std::string("the job is left waiting: ") + loss.what(), jobId});
  run_.report.leave(jobId, loss.what());
}

/// Protocol line, then address index. A failure of either leaves the job's result as it is.
void SectionRunner::logJob(const JobRow& job, const JobResult& result) {
  JobOutcome outcome{job.text("JobID"),  std::string(result.line.transaction),
                     result.line.number, std::string(result.line.status),
                     job.jobType(),      job.text("Fehlertext"),
                     result.findings};
  bool logged = addLine(result.line);
  if (!result.indexedCustomer.empty() && !indexCustomer(result.indexedCustomer, outcome.jobId))
    logged = false;
  const bool written = stateOf(outcome.jobType) == JobState::Done;
  run_.group.changed(
      {outcome.jobId, outcome.jobType, written ? outcome.number : std::string(), outcome.reasons});
  run_.group.afterCommit([this, logged, outcome = std::move(outcome)] {
    run_.report.count(outcome);
    if (!logged) ++run_.report.protocolErrors;
    if (run_.outcomes) run_.outcomes(outcome);
  });
}

bool SectionRunner::addLine(const ProtocolLine& line) {
  const auto show = [this](const Message& message) {
    run_.group.afterCommit([this, message] { run_.environment.desktop.show(message); });
  };
  if (attempt_.line) {
    run_.protocol.giveUpLine(*attempt_.line, show);
    return false;
  }
  attempt_.step = Step::Logging;
  return run_.protocol.add(line, show);
}

bool SectionRunner::indexCustomer(std::string_view customer, std::string_view jobId) {
  if (attempt_.index) {
    run_.environment.diagnostics.report({"address index", attempt_.index->what(), jobId});
    return false;
  }
  attempt_.step = Step::Indexing;
  return !trapped(run_.environment.diagnostics, {"address index", jobId, &isFatal}, [&] {
    if (!addressIndex_) throw std::runtime_error("there is no address index component");
    Savepoint part(*run_.environment.connection);
    addressIndex_->CreateIndex(customer, 1);
    part.release();
  });
}

JobResult SectionRunner::result(const Section& section, const JobRow& job, std::string_view status) {
  JobResult result;
  result.line.transaction = section.transaction;
  result.line.number = job.text(section.numberField);
  result.line.status = status;
  result.line.date = job.text("Eingangsdatum");
  return result;
}

JobResult SectionRunner::refused(const Section& section, const JobRow& job, std::string_view status,
                                 Findings findings) {
  JobResult refused = result(section, job, status);
  refused.findings = std::move(findings);
  refused.line.info = job.text("Fehlertext");
  return refused;
}

void SectionRunner::raiseProgress(std::size_t position, std::size_t count) {
  // Jobs of a lost group are repeated; the progress bar never goes back.
  if (position <= progressRaised_) return;
  progressRaised_ = position;
  const double percent = 100.0 / static_cast<double>(count) * static_cast<double>(position);
  run_.events.raiseProcessProgress(static_cast<std::int16_t>(std::nearbyint(percent)));
}

} // namespace qx
