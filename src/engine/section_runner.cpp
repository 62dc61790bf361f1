#include "engine/section_runner.h"

#include "platform/german_cause.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace qx {
namespace {

/// The store cannot go on when even the failure of a job cannot be written down. This is the last place that
/// knows what the database said of it.
[[noreturn]] void giveUp(const std::exception& error) {
  throw StoreError("Der Fehler eines Vorgangs konnte nicht gespeichert werden: " + germanCause(error) + " (" +
                       error.what() + ")",
                   0);
}

std::int16_t jobTypeOf(Recordset& jobs) {
  return static_cast<std::int16_t>(jobs.value("JobType").integer().value_or(0));
}

} // namespace

void rethrowUnlessJobFailure() {
  try {
    throw;
  } catch (const StatementError&) {
    return;
  } catch (const DatabaseError&) {
    throw;
  } catch (const std::exception&) {
    return;
  }
}

void SectionRunner::run(const Section& section, const Sql& query, const Handler& handler) {
  parts_.events.raiseProcessInfo(section.info);
  const auto jobs = parts_.environment.connection->openKeyset(query);
  const std::size_t count = jobs->recordCount();
  progressRaised_ = 0;
  std::size_t groupStart = 0;  // the first job of the open group
  std::size_t aloneBefore = 0; // jobs before this place are committed one by one
  std::size_t at = 0;
  while (at < count && !parts_.stop.requested()) {
    try {
      parts_.group.begin();
      jobs->moveTo(at);
      // Passed over: deleted, or taken to another state by someone else since the section was opened.
      if (jobs->resync() && section.takes(jobTypeOf(*jobs))) {
        JobRow job(*jobs, parts_.missing);
        processJob(section, job, handler);
      }
      ++at;
      raiseProgress(at, count);
      if (parts_.group.endJob(at <= aloneBefore)) groupStart = at;
    } catch (const WorkLostError& error) {
      parts_.group.abandon();
      if (groupStart == at) {
        jobs->moveTo(at);
        markLostJob(section, *jobs, error.what());
        groupStart = ++at;
        raiseProgress(at, count);
      } else {
        aloneBefore = std::max(aloneBefore, at + 1);
        at = groupStart;
      }
    } catch (const InterruptedError&) {
      parts_.group.abandon();
      if (!parts_.stop.requested()) throw;
      at = groupStart;
    } catch (const BusyError&) {
      // The wait for the database ends when the run is stopped.
      if (!parts_.stop.requested()) throw;
    }
  }
  parts_.group.finish();
  parts_.report.stillWaiting += count - at;
}

void SectionRunner::processJob(const Section& section, JobRow& job, const Handler& handler) {
  JobResult result;
  try {
    result = handler(job);
  } catch (const std::exception& error) {
    rethrowUnlessJobFailure();
    job.cancelUpdate();
    parts_.environment.diagnostics.report({"processing of a job", error.what(), job.text("JobID")});
    try {
      parts_.marks.markJobError(job, error.what());
    } catch (const StatementError& second) {
      giveUp(second);
    }
    result = refused(section, job, statusError);
  }
  if (!result.leftOut) logJob(job, result);
}

/// The job took its unit with it when it was alone; only its failure is written, in a unit of its own.
void SectionRunner::markLostJob(const Section& section, Recordset& jobs, const std::string& reason) {
  parts_.group.begin();
  if (jobs.resync()) {
    JobRow job(jobs, parts_.missing);
    try {
      parts_.marks.markJobError(job, reason);
      logJob(job, refused(section, job, statusError));
    } catch (const DatabaseError& error) {
      giveUp(error);
    }
  }
  parts_.group.endJob(true);
}

/// Protocol line, then address index. Neither takes the job's result back.
void SectionRunner::logJob(const JobRow& job, const JobResult& result) {
  JobOutcome outcome{job.text("JobID"),  std::string(result.line.process),
                     result.line.number, std::string(result.line.status),
                     job.jobType(),      job.text("Fehlertext")};
  const auto show = [this](const Message& message) {
    parts_.group.afterCommit([this, message] { parts_.environment.desktop.show(message); });
  };
  bool logged = parts_.protocol.add(result.line, show);
  if (!result.indexedCustomer.empty() && !indexCustomer(result.indexedCustomer, outcome.jobId))
    logged = false;
  parts_.group.afterCommit([this, logged, outcome = std::move(outcome)] {
    parts_.report.count(outcome);
    if (!logged) ++parts_.report.protocolErrors;
    if (parts_.outcomes) parts_.outcomes(outcome);
  });
}

bool SectionRunner::indexCustomer(std::string_view customer, std::string_view jobId) {
  try {
    if (!addressIndex_) throw std::runtime_error("there is no address index component");
    Savepoint part(*parts_.environment.connection);
    addressIndex_->CreateIndex(customer, 1);
    part.release();
    return true;
  } catch (const std::exception& error) {
    rethrowUnlessJobFailure();
    parts_.environment.diagnostics.report({"address index", error.what(), jobId});
    return false;
  }
}

JobResult SectionRunner::refused(const Section& section, const JobRow& job, std::string_view status) {
  JobResult result;
  result.line.process = section.process;
  result.line.number = job.text(section.numberField);
  result.line.status = status;
  result.line.date = job.text("Eingangsdatum");
  result.line.info = job.text("Fehlertext");
  return result;
}

void SectionRunner::raiseProgress(std::size_t position, std::size_t count) {
  // Jobs of a lost group are taken again; the bar does not go back for them.
  if (position <= progressRaised_) return;
  progressRaised_ = position;
  const double percent = 100.0 / static_cast<double>(count) * static_cast<double>(position);
  parts_.events.raiseProcessProgress(static_cast<std::int16_t>(std::nearbyint(percent)));
}

} // namespace qx
