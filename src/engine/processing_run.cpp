#include "engine/processing_run.h"

#include "store/archive_purge.h"

#include <cmath>
#include <exception>
#include <utility>

namespace qx {
namespace {

constexpr std::string_view defaultVersion = " 6.3.0";
constexpr std::string_view findingsText = "Beim Verarbeiten wurden Warnungen festgestellt.";
constexpr std::string_view statusDone = "Erledigt";
constexpr std::string_view statusWarning = "Warnung";
constexpr std::string_view statusError = "Fehler";

/// The store cannot go on when even the failure of a job cannot be written down.
[[noreturn]] void giveUp(const std::exception& error) {
  throw StoreError(std::string("Der Fehler eines Vorgangs konnte nicht gespeichert werden: ") + error.what(),
                   0);
}

/// Inside a handler: passes on what ends more than the one job at hand.
void rethrowIfFatal() {
  try {
    throw;
  } catch (const StatementError&) {
  } catch (const DatabaseError&) {
    throw;
  } catch (const std::exception&) {
  }
}

std::string customerInfo(const JobRow& job, bool isNew) {
  std::string info = isNew ? "Neukunde angelegt." : "Kunde geändert.";
  appendLine(info, "Bez1: " + job.text("Bez1"));
  appendLine(info, "Bez2: " + job.text("Bez2"));
  appendLine(info, "Bez3: " + job.text("Bez3"));
  return info;
}

} // namespace

ProcessingRun::ProcessingRun(const RunParts& parts, bool unevaluated, qxProcessState selection)
    : parts_(parts), environment_(parts.environment), settings_(environment_), unevaluated_(unevaluated),
      selection_(selection), missing_(environment_.diagnostics),
      marks_(environment_, missing_,
             [this](std::int16_t jobType, std::string_view text) {
               group_.afterCommit(
                   [this, jobType, kept = std::string(text)] { parts_.errors.add(jobType, kept); });
             }),
      wait_(parts.events, environment_.diagnostics, parts.stop), group_(environment_, wait_),
      programVersion_(defaultVersion) {}

RunReport ProcessingRun::execute() {
  try {
    perform();
  } catch (const std::exception& error) {
    group_.abandon();
    report_.end = RunEnd::Broken;
    report_.failure = error.what();
    environment_.diagnostics.report({"processing run", error.what(), ""});
  }
  return std::move(report_);
}

void ProcessingRun::perform() {
  if (!environment_.connection) throw StoreError("Es ist keine Datenbank verbunden.", 0);
  createComponents();
  if (orderIsBeingReadIn()) return;
  parts_.errors.clear();
  options_ = RunOptions::read(settings_);
  initPrices();
  readProgramVersion();
  parts_.protocol.create([this](const Message& message) { showAfterCommit(message); });
  report_.protocolId = parts_.protocol.id();
  resetReleasedJobs();
  processCustomers();
  announceContracts();
  announceOrders();
  close();
}

void ProcessingRun::createComponents() {
  try {
    addressIndex_ = environment_.components.createAdressindex(*environment_.connection);
  } catch (const std::exception& error) {
    environment_.diagnostics.report({"address index component", error.what(), ""});
  }
  try {
    prices_ = environment_.components.createPreisfindung();
  } catch (const std::exception& error) {
    environment_.diagnostics.report({"price component", error.what(), ""});
  }
}

void ProcessingRun::initPrices() {
  if (!prices_) return;
  try {
    prices_->Init(*environment_.connection);
  } catch (const std::exception& error) {
    environment_.diagnostics.report({"price component", error.what(), ""});
  }
}

bool ProcessingRun::orderIsBeingReadIn() {
  if (settings_.get(runApplicationName, optionSection, "NewMail") != "1") return false;
  report_.end = RunEnd::Refused;
  report_.failure = "Es wird gerade eine Bestellung eingelesen.";
  Message message;
  message.text = report_.failure;
  environment_.desktop.show(message);
  return true;
}

void ProcessingRun::readProgramVersion() {
  try {
    programVersion_ = " " + environment_.components.createVersion()->version();
  } catch (const std::exception& error) {
    environment_.diagnostics.report({"version component", error.what(), ""});
    programVersion_ = defaultVersion;
  }
  if (programVersion_ == " ") programVersion_ = defaultVersion;
}

/// Every released row is reset in every run, whatever its code: the flag itself is never cleared by a run.
void ProcessingRun::resetReleasedJobs() {
  const auto rows = environment_.connection->openKeyset(
      sql("Select JobType, ImportType, Fehlertext From ImportKopf Where ProcessWarning = 1"_sql));
  for (; !rows->eof(); rows->moveNext()) {
    group_.begin();
    if (rows->resync()) {
      JobRow job(*rows, missing_);
      try {
        resetJob(job);
      } catch (const StatementError& error) {
        job.cancelUpdate();
        environment_.diagnostics.report({"reset of released jobs", error.what(), ""});
      }
    }
    group_.endJob();
  }
  group_.finish();
}

void ProcessingRun::resetJob(JobRow& job) {
  const std::int16_t jobType = job.jobType();
  const JobState state = stateOf(jobType);
  const bool parked =
      isWaitingHeader(kindOf(jobType)) && (state == JobState::Warning || state == JobState::Error);
  if (parked) job.set("JobType", Value(kindOf(jobType)));
  if (!parked && job.value("Fehlertext").isEmpty() &&
      job.value("ImportType").integer() == std::int64_t{stagedImportType})
    return;
  job.set("ImportType", Value(stagedImportType));
  job.set("Fehlertext", Value(""));
  job.update();
}

void ProcessingRun::processCustomers() {
  const Sql query = sql("Select * From ImportKopf Where JobType = "_sql, number(qxtjobkunden),
                        " Order By Kundennummer"_sql);
  if (selection_ != qxProcessState::ProcessAll && selection_ != qxProcessState::ProcessKunden) return;
  runSection({"Kunden", "Kunden werden verarbeitet...", {qxtjobkunden, 0}}, query,
             [this](JobRow& job) { return processCustomer(job); });
}

void ProcessingRun::announceContracts() {
  if (selection_ != qxProcessState::ProcessAll && selection_ != qxProcessState::ProcessVerträge) return;
  parts_.events.raiseProcessInfo("Verträge werden überprüft und verarbeitet...");
  report_.waitingContracts = static_cast<std::size_t>(
      countWaiting(sql("Select * From ImportKopf Where JobType = "_sql, number(qxtjobkundenverträge),
                       " Or JobType = "_sql, number(qxtjobverträge), " Order by Kundennummer"_sql)));
}

void ProcessingRun::announceOrders() {
  if (selection_ != qxProcessState::ProcessAll && selection_ != qxProcessState::ProcessAufträge &&
      selection_ != qxProcessState::ProcessZubehör)
    return;
  parts_.events.raiseProcessInfo("Aufträge werden verarbeitet...");
  report_.waitingOrders =
      static_cast<std::size_t>(countWaiting(sql("Select * From ImportKopf Where JobType = "_sql,
                                                number(qxtJobAufträge), " Order by Eingangsdatum"_sql)));
}

std::int64_t ProcessingRun::countWaiting(const Sql& query) {
  return static_cast<std::int64_t>(environment_.connection->openKeyset(query)->recordCount());
}

bool ProcessingRun::takes(const Section& section, std::int16_t jobType) {
  return jobType != 0 && (jobType == section.codes[0] || jobType == section.codes[1]);
}

/// Goes through the jobs of a section in groups. When a group is lost, its jobs are taken again one by one,
/// and the job that loses its unit when it is alone is marked as failed.
void ProcessingRun::runSection(const Section& section, const Sql& query, const Handler& handler) {
  parts_.events.raiseProcessInfo(section.info);
  const auto jobs = environment_.connection->openKeyset(query);
  const std::size_t count = jobs->recordCount();
  progressRaised_ = 0;
  std::size_t groupStart = 0;
  std::size_t aloneBefore = 0;
  std::size_t at = 0;
  while (at < count && !parts_.stop.requested()) {
    try {
      group_.begin();
      jobs->moveTo(at);
      // Passed over: deleted, or taken to another state by someone else since the section was opened.
      if (jobs->resync() &&
          takes(section, static_cast<std::int16_t>(jobs->value("JobType").integer().value_or(0)))) {
        JobRow job(*jobs, missing_);
        processJob(section, job, handler);
      }
      ++at;
      raiseProgress(at, count);
      if (group_.endJob(at <= aloneBefore)) groupStart = at;
    } catch (const WorkLostError& error) {
      group_.abandon();
      if (groupStart == at || (groupStart + 1 == at && at <= aloneBefore)) {
        jobs->moveTo(groupStart);
        markLostJob(section, *jobs, error.what());
        at = ++groupStart;
        raiseProgress(at, count);
      } else {
        aloneBefore = std::max(aloneBefore, at + 1);
        at = groupStart;
      }
    } catch (const BusyError&) {
      if (!parts_.stop.requested()) throw;
    }
  }
  group_.finish();
  if (at < count) report_.stillWaiting += count - at;
}

void ProcessingRun::processJob(const Section& section, JobRow& job, const Handler& handler) {
  JobResult result;
  try {
    result = handler(job);
  } catch (const std::exception& error) {
    rethrowIfFatal();
    job.cancelUpdate();
    environment_.diagnostics.report({"processing of a job", error.what(), job.text("JobID")});
    try {
      marks_.markJobError(job, error.what());
    } catch (const StatementError& second) {
      giveUp(second);
    }
    result = parkedOrFailed(section, job, statusError);
  }
  logJob(job, result);
}

/// The job took its unit with it when it was alone; only its failure is written, in a unit of its own.
void ProcessingRun::markLostJob(const Section& section, Recordset& jobs, const std::string& reason) {
  group_.begin();
  if (!jobs.resync()) {
    group_.finish();
    return;
  }
  JobRow job(jobs, missing_);
  try {
    marks_.markJobError(job, reason);
    logJob(job, parkedOrFailed(section, job, statusError));
  } catch (const DatabaseError& error) {
    giveUp(error);
  }
  group_.endJob(true);
}

/// Protocol line, then address index. Neither takes the job's result back.
void ProcessingRun::logJob(JobRow& job, const JobResult& result) {
  JobOutcome outcome{job.text("JobID"),  std::string(result.line.process),
                     result.line.number, std::string(result.line.status),
                     job.jobType(),      job.text("Fehlertext")};
  bool logged =
      parts_.protocol.add(result.line, [this](const Message& message) { showAfterCommit(message); });
  if (!result.indexedCustomer.empty() && !indexCustomer(result.indexedCustomer, outcome.jobId))
    logged = false;
  group_.afterCommit([this, logged, outcome = std::move(outcome)] {
    report_.count(outcome);
    if (!logged) ++report_.protocolErrors;
    if (parts_.outcomes) parts_.outcomes(outcome);
  });
}

bool ProcessingRun::indexCustomer(std::string_view customer, std::string_view jobId) {
  try {
    if (!addressIndex_) throw std::runtime_error("there is no address index component");
    Savepoint part(*environment_.connection);
    addressIndex_->CreateIndex(customer, 1);
    part.release();
    return true;
  } catch (const std::exception& error) {
    rethrowIfFatal();
    environment_.diagnostics.report({"address index", error.what(), jobId});
    return false;
  }
}

ProcessingRun::JobResult ProcessingRun::processCustomer(JobRow& job) {
  constexpr Section customers{"Kunden", {}, {qxtjobkunden, 0}};
  if (!unevaluated_ && options_.automatic && !job.released()) {
    if (!job.value("Fehlertext").isEmpty()) {
      job.set("Fehlertext", Value(""));
      job.update();
    }
    const CustomerProof proof(environment_, options_.compareAddresses);
    const Findings findings = proof.prove(job.text("JobID"));
    if (park(job, findings))
      return parkedOrFailed(customers, job,
                            findings.status == CheckStatus::Warning ? statusWarning : statusError);
  }
  CustomerProcessor processor(environment_, options_, marks_, parts_.events);
  const auto written = processor.process(job);
  JobResult result;
  if (written == CustomerProcessor::Result::Failed) {
    result = parkedOrFailed(customers, job, statusError);
  } else {
    const bool isNew = written == CustomerProcessor::Result::Created;
    result.line = {"Kunden",
                   job.text("Kundennummer"),
                   statusDone,
                   job.text("Eingangsdatum"),
                   customerInfo(job, isNew),
                   std::nullopt,
                   isNew};
  }
  result.indexedCustomer = job.text("Kundennummer");
  return result;
}

/// True when the job has findings: it is then marked and not written.
bool ProcessingRun::park(JobRow& job, const Findings& findings) {
  if (findings.status == CheckStatus::Clean) return false;
  // Warnings and errors are announced by the same sentence on purpose.
  std::string text(findingsText);
  appendLine(text, findings.text);
  if (findings.status == CheckStatus::Warning)
    marks_.markJobWarning(job, text);
  else
    marks_.markJobError(job, text);
  return true;
}

ProcessingRun::JobResult ProcessingRun::parkedOrFailed(const Section& section, JobRow& job,
                                                       std::string_view status) {
  JobResult result;
  result.line.process = section.process;
  result.line.number = job.text("Kundennummer");
  result.line.status = status;
  result.line.date = job.text("Eingangsdatum");
  result.line.info = job.text("Fehlertext");
  return result;
}

void ProcessingRun::raiseProgress(std::size_t position, std::size_t count) {
  // Jobs of a lost group are taken again; the bar does not go back for them.
  if (position <= progressRaised_) return;
  progressRaised_ = position;
  const double percent = 100.0 / static_cast<double>(count) * static_cast<double>(position);
  parts_.events.raiseProcessProgress(static_cast<std::int16_t>(std::nearbyint(percent)));
}

void ProcessingRun::showAfterCommit(const Message& message) {
  group_.afterCommit([this, message] { environment_.desktop.show(message); });
}

void ProcessingRun::close() {
  if (options_.customerSpecific) {
    group_.begin();
    try {
      parts_.protocol.cleanUp();
    } catch (const StatementError& error) {
      environment_.diagnostics.report({"protocol clean-up", error.what(), ""});
    }
    group_.finish();
  }
  if (parts_.stop.requested()) {
    report_.end = RunEnd::Stopped;
    return;
  }
  JobDeletion deletion(environment_);
  ArchivePurge purge(environment_, deletion);
  group_.begin();
  purge.run([this](std::string_view text) { parts_.events.raiseProcessInfo(text); },
            [this] {
              group_.endJob();
              group_.begin();
            });
  group_.finish();
}

} // namespace qx
