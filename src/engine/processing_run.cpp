#include "engine/processing_run.h"

#include "engine/contract_section.h"
#include "engine/customer_section.h"
#include "engine/order_section.h"
#include "platform/conflict_retry.h"
#include "platform/failure.h"
#include "rules/tax_rules.h"

#include <new>
#include <optional>
#include <utility>

namespace qx {
ProcessingRun::ProcessingRun(RunContext& run)
    : run_(run), environment_(run.environment), settings_(environment_, SettingTrap::Refusals),
      sections_(run), prices_(environment_) {}

RunReport ProcessingRun::execute() {
  try {
    perform();
  } catch (const InterruptedError&) {
    run_.group.abandon();
    run_.report.end = RunEnd::Stopped;
    countWaiting();
  } catch (const BusyError& error) {
    // The wait for the database ends when the run is stopped.
    if (!run_.stop.requested()) {
      breakOff(error);
    } else {
      run_.group.abandon();
      run_.report.end = RunEnd::Stopped;
      countWaiting();
    }
  } catch (const std::exception& error) {
    breakOff(error);
  }
  collectJobsLeft();
  announceCashOnDelivery();
  return std::move(run_.report);
}

/// What happens when memory is short must do without it.
void ProcessingRun::breakOff(const std::exception& error) noexcept {
  run_.group.abandon();
  run_.report.end = RunEnd::Broken;
  environment_.diagnostics.report({"processing run", error.what(), ""});
  try {
    run_.report.failure = error.what();
    run_.report.germanFailure = germanCause(error);
  } catch (const std::bad_alloc&) {
    environment_.diagnostics.report({"processing run", "no memory for the reason", ""});
  }
}

/// A host learns of them from the collected texts.
void ProcessingRun::collectJobsLeft() noexcept {
  try {
    for (const auto& [jobId, reason] : run_.report.left) {
      std::string sentence = "Die Datenbank lehnt es ab, den Vorgang '" + jobId + "' zu ändern: ";
      sentence += reason;
      run_.errors.all.add(sentence);
    }
  } catch (const std::bad_alloc&) {
    environment_.diagnostics.report({"processing run", "no memory for the jobs that were left", ""});
  }
}

/// What was written is to be said also when the run broke off behind it.
void ProcessingRun::announceCashOnDelivery() noexcept {
  if (run_.cashOnDelivery.empty()) return;
  trapped(environment_.diagnostics, {"cash on delivery", run_.cashOnDelivery}, [&] {
    environment_.desktop.show(
        {"Folgende Aufträge enthalten Zahlungsart Nachnahme und wiegen mehr als 28 KG: " +
         run_.cashOnDelivery});
  });
}

/// For a run that was interrupted between its sections, where nobody counts.
void ProcessingRun::countWaiting() {
  trapped(environment_.diagnostics, {"count of waiting jobs"}, [&] {
    const auto rows = environment_.connection->open(
        sql("Select Count(*) As Anzahl From ImportKopf Where JobType In (10, 20, 30, 40)"_sql));
    run_.report.stillWaiting = static_cast<std::size_t>(rows->value(0).integer().value_or(0));
  });
}

void ProcessingRun::perform() {
  if (!environment_.connection) throw StoreError("Es ist keine Datenbank verbunden.", 0);
  createComponents();
  if (orderIsBeingReadIn()) return;
  readOptions();
  initPrices();
  readProgramVersion();
  run_.protocol.create([this](const Message& message) { environment_.desktop.show(message); }, &run_.wait);
  run_.report.protocolId = run_.protocol.id();
  // Before the reset on purpose: a contract that is released in this run keeps its position until the next.
  prepareContracts();
  resetReleasedJobs();
  processCustomers();
  processContracts();
  processOrders();
  close();
}

/// A component that the host lacks is no failure of the run; a store or memory that cannot go on is.
void ProcessingRun::createComponents() {
  trapped(environment_.diagnostics, {"address index component", {}, &isFatal}, [&] {
    sections_.setAddressIndex(environment_.components.createAdressindex(*environment_.connection));
  });
  trapped(environment_.diagnostics, {"price component", {}, &isFatal}, [&] { prices_.create(); });
}

/// All of them before the first job: with one that cannot be read nothing is to be written.
void ProcessingRun::readOptions() {
  run_.options = RunOptions::read(settings_);
  if (run_.homeCurrency.empty()) run_.homeCurrency = settings_[option::homeCurrency];
  run_.orderOptions = OrderOptions::read(settings_, run_.options.customerSpecific);
  purgeOptions_ = PurgeOptions::read(settings_);
  // Customers and contracts do without it; every order fails, for its tax would be a guess.
  trapped(environment_.diagnostics, {"change of tax rates", {}, &isFatal},
          [&] { run_.orderOptions.taxChangeDay = TaxRules(environment_).changeDay(); });
}

void ProcessingRun::initPrices() {
  trapped(environment_.diagnostics, {"price component", {}, &isFatal},
          [&] { prices_.init(*environment_.connection); });
}

bool ProcessingRun::orderIsBeingReadIn() {
  if (!settings_[option::orderBeingReadIn]) return false;
  run_.report.end = RunEnd::Refused;
  run_.report.failure = "Es wird gerade eine Bestellung eingelesen.";
  environment_.desktop.show({run_.report.failure});
  return true;
}

void ProcessingRun::readProgramVersion() {
  std::string version;
  trapped(environment_.diagnostics, {"version component", {}, &isFatal},
          [&] { version = environment_.components.createVersion()->version(); });
  if (!version.empty()) run_.programVersion = " " + version;
}

/// Every released row is reset in every run, whatever its code: the flag itself is never cleared by a run.
void ProcessingRun::resetReleasedJobs() {
  // Both see the same jobs, in the order in which they were staged.
  std::optional<ReadView> view(*environment_.connection);
  const auto rows = environment_.connection->openKeyset(
      sql("Select JobType, ImportType, Fehlertext From ImportKopf Where ProcessWarning = 1"_sql));
  const std::vector<std::string> keys = keysOfReleasedJobs(rows->recordCount());
  view.reset();
  std::string refusal;
  const auto refused = [&](const std::exception& error) {
    environment_.diagnostics.report({"reset of released jobs", error.what(), ""});
    refusal = error.what();
  };
  run_.group.takeAll(rows->recordCount(), {[&](std::size_t at) {
                                             rows->moveTo(at);
                                             if (!rows->resync()) return;
                                             JobRow job(*rows, run_.missing);
                                             try {
                                               resetJob(job, keys.empty() ? std::string() : keys.at(at));
                                             } catch (const StatementError& error) {
                                               job.cancelUpdate();
                                               refused(error);
                                             }
                                           },
                                           [&](std::size_t, const WorkLostError& loss) {
                                             refused(loss);
                                             return false;
                                           },
                                           [this] { return run_.stop.requested(); }});
  if (!refusal.empty() && !run_.stop.requested()) nameReleasedJobsLeft(refusal);
}

/// The reset reads no keys, but the feed needs them. Empty when they cannot be told, as on a connection of a
/// host that another program changes meanwhile.
std::vector<std::string> ProcessingRun::keysOfReleasedJobs(std::size_t count) {
  std::vector<std::string> keys;
  if (count == 0) return keys;
  const auto jobs =
      environment_.connection->open(sql("Select JobID From ImportKopf Where ProcessWarning = 1"_sql));
  for (; !jobs->eof(); jobs->moveNext()) keys.push_back(jobs->text("JobID"));
  if (keys.size() == count) return keys;
  environment_.diagnostics.report({"feed of results", "released jobs were changed by another program", ""});
  return {};
}

/// Released jobs that are still parked behind the reset are the ones that it had to leave.
void ProcessingRun::nameReleasedJobsLeft(const std::string& reason) {
  const auto jobs =
      environment_.connection->open(sql("Select JobID From ImportKopf Where ProcessWarning = 1 And "
                                        "JobType In (11, 12, 21, 22, 31, 32, 41, 42)"_sql));
  for (; !jobs->eof(); jobs->moveNext()) run_.report.leave(jobs->text("JobID"), reason);
}

void ProcessingRun::resetJob(JobRow& job, const std::string& jobId) {
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
  if (parked && !jobId.empty()) run_.group.changed({jobId, kindOf(jobType), {}, {}});
}

/// The values look like flags but are compared for equality: a combination selects nothing.
bool ProcessingRun::selects(qxProcessState section) const {
  return run_.selection == qxProcessState::ProcessAll || run_.selection == section;
}

void ProcessingRun::prepareContracts() { unprepared_ = ContractPreparation(run_).run(); }

void ProcessingRun::processCustomers() {
  if (!selects(qxProcessState::ProcessKunden)) return;
  CustomerSection(run_).run(sections_);
}

void ProcessingRun::processContracts() {
  if (!selects(qxProcessState::ProcessVerträge)) return;
  ContractSection(run_, unprepared_).run(sections_);
}

void ProcessingRun::processOrders() {
  if (!selects(qxProcessState::ProcessAufträge) && !selects(qxProcessState::ProcessZubehör)) return;
  OrderSection(run_, prices_).run(sections_);
}

void ProcessingRun::close() {
  if (run_.options.customerSpecific) cleanUpProtocol();
  if (run_.stop.requested())
    run_.report.end = RunEnd::Stopped;
  else
    purge();
}

void ProcessingRun::cleanUpProtocol() {
  const auto endsTheRun = [](const std::exception& failure) {
    return isFatal(failure) && dynamic_cast<const WorkLostError*>(&failure) == nullptr;
  };
  trapped(environment_.diagnostics, {"protocol clean-up", {}, endsTheRun}, [&] {
    doneAgainOnConflict(environment_, "protocol clean-up", [&] { run_.protocol.cleanUp(&run_.wait); });
  });
  run_.report.protocolId = run_.protocol.id();
}

void ProcessingRun::purge() {
  JobDeletion deletion(environment_, &run_.wait);
  const bool complete = purgeArchives(
      deletion, purgeOptions_, [this](std::string_view text) { run_.events.raiseProcessInfo(text); },
      [this] { return !run_.stop.requested(); });
  if (!complete) run_.report.end = RunEnd::Stopped;
}

} // namespace qx
