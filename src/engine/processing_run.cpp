#include "engine/processing_run.h"

#include "engine/contract_section.h"
#include "engine/customer_section.h"
#include "engine/order_section.h"
#include "engine/order_texts.h"
#include "platform/german_cause.h"
#include "platform/trapped.h"
#include "rules/tax_rules.h"

#include <new>
#include <utility>

namespace qx {
namespace {

constexpr std::string_view defaultVersion = " 6.3.0";

} // namespace

ProcessingRun::ProcessingRun(const RunParts& parts, bool unevaluated, qxProcessState selection)
    : parts_(parts), environment_(parts.environment), settings_(environment_, SettingTrap::Refusals),
      unevaluated_(unevaluated), selection_(selection), missing_(environment_.diagnostics),
      wait_(parts.events, environment_.diagnostics, parts.stop, environment_.desktop),
      group_(environment_, wait_), marks_(environment_, missing_,
                                          [this](std::int16_t jobType, std::string_view text) {
                                            group_.afterCommit([this, jobType, kept = std::string(text)] {
                                              parts_.errors.add(jobType, kept);
                                            });
                                          }),
      sections_({environment_, parts.events, parts.protocol, parts.stop, parts.outcomes, group_, missing_,
                 report_}),
      programVersion_(defaultVersion) {}

RunReport ProcessingRun::execute() {
  try {
    perform();
  } catch (const InterruptedError&) {
    group_.abandon();
    report_.end = RunEnd::Stopped;
    countWaiting();
  } catch (const BusyError& error) {
    // The wait for the database ends when the run is stopped.
    if (!parts_.stop.requested()) {
      breakOff(error);
    } else {
      group_.abandon();
      report_.end = RunEnd::Stopped;
      countWaiting();
    }
  } catch (const std::exception& error) {
    breakOff(error);
  }
  collectJobsLeft();
  announceCashOnDelivery();
  return std::move(report_);
}

/// What happens when memory is short must do without it.
void ProcessingRun::breakOff(const std::exception& error) noexcept {
  group_.abandon();
  report_.end = RunEnd::Broken;
  environment_.diagnostics.report({"processing run", error.what(), ""});
  try {
    report_.failure = error.what();
    report_.germanFailure = germanCause(error);
  } catch (const std::bad_alloc&) {
    environment_.diagnostics.report({"processing run", "no memory for the reason", ""});
  }
}

/// A host learns of them from the collected texts.
void ProcessingRun::collectJobsLeft() noexcept {
  try {
    for (const auto& [jobId, reason] : report_.left) {
      std::string sentence = "Die Datenbank lehnt es ab, den Vorgang '" + jobId + "' zu ändern: ";
      sentence += reason;
      parts_.errors.all.add(sentence);
    }
  } catch (const std::bad_alloc&) {
    environment_.diagnostics.report({"processing run", "no memory for the jobs that were left", ""});
  }
}

/// What was written is to be said also when the run broke off behind it.
void ProcessingRun::announceCashOnDelivery() noexcept {
  if (cashOnDelivery_.empty()) return;
  trapped(environment_.diagnostics, {"cash on delivery", cashOnDelivery_}, [&] {
    Message message;
    message.text = std::string(heavyCashOnDelivery) + cashOnDelivery_;
    environment_.desktop.show(message);
  });
}

/// For a run that was interrupted between its sections, where nobody counts.
void ProcessingRun::countWaiting() {
  trapped(environment_.diagnostics, {"count of waiting jobs"}, [&] {
    const auto rows = environment_.connection->open(
        sql("Select Count(*) As Anzahl From ImportKopf Where JobType In (10, 20, 30, 40)"_sql));
    report_.stillWaiting = static_cast<std::size_t>(rows->value(0).integer().value_or(0));
  });
}

void ProcessingRun::perform() {
  if (!environment_.connection) throw StoreError("Es ist keine Datenbank verbunden.", 0);
  createComponents();
  if (orderIsBeingReadIn()) return;
  readOptions();
  initPrices();
  readProgramVersion();
  parts_.protocol.create([this](const Message& message) { environment_.desktop.show(message); }, &wait_);
  report_.protocolId = parts_.protocol.id();
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
  trapped(environment_.diagnostics, {"price component", {}, &isFatal},
          [&] { prices_ = environment_.components.createPreisfindung(); });
}

/// All of them before the first job: with one that cannot be read nothing is to be written.
void ProcessingRun::readOptions() {
  options_ = RunOptions::read(settings_);
  orderOptions_ = OrderOptions::read(settings_, options_.customerSpecific);
  purgeOptions_ = PurgeOptions::read(settings_);
  // Customers and contracts do without it; every order fails, for its tax would be a guess.
  trapped(environment_.diagnostics, {"change of tax rates", {}, &isFatal},
          [&] { orderOptions_.taxChangeDay = TaxRules(environment_).changeDay(); });
}

void ProcessingRun::initPrices() {
  if (!prices_) return;
  if (trapped(environment_.diagnostics, {"price component", {}, &isFatal},
              [&] { prices_->Init(*environment_.connection); }))
    prices_.reset();
}

bool ProcessingRun::orderIsBeingReadIn() {
  if (!settings_[option::orderBeingReadIn]) return false;
  report_.end = RunEnd::Refused;
  report_.failure = "Es wird gerade eine Bestellung eingelesen.";
  Message message;
  message.text = report_.failure;
  environment_.desktop.show(message);
  return true;
}

void ProcessingRun::readProgramVersion() {
  std::string version;
  trapped(environment_.diagnostics, {"version component", {}, &isFatal},
          [&] { version = environment_.components.createVersion()->version(); });
  if (!version.empty()) programVersion_ = " " + version;
}

/// Every released row is reset in every run, whatever its code: the flag itself is never cleared by a run.
void ProcessingRun::resetReleasedJobs() {
  const auto rows = environment_.connection->openKeyset(
      sql("Select JobType, ImportType, Fehlertext From ImportKopf Where ProcessWarning = 1"_sql));
  std::string refusal;
  const auto refused = [&](const std::exception& error) {
    environment_.diagnostics.report({"reset of released jobs", error.what(), ""});
    refusal = error.what();
  };
  group_.takeAll(rows->recordCount(), {[&](std::size_t at) {
                                         rows->moveTo(at);
                                         if (!rows->resync()) return;
                                         JobRow job(*rows, missing_);
                                         try {
                                           resetJob(job);
                                         } catch (const StatementError& error) {
                                           job.cancelUpdate();
                                           refused(error);
                                         }
                                       },
                                       [&](std::size_t, const WorkLostError& loss) {
                                         refused(loss);
                                         return false;
                                       },
                                       [this] { return parts_.stop.requested(); }});
  if (!refusal.empty() && !parts_.stop.requested()) nameReleasedJobsLeft(refusal);
}

/// The reset reads no keys. Released jobs that are still parked behind it are the ones that it had to leave.
void ProcessingRun::nameReleasedJobsLeft(const std::string& reason) {
  const auto jobs =
      environment_.connection->open(sql("Select JobID From ImportKopf Where ProcessWarning = 1 And "
                                        "JobType In (11, 12, 21, 22, 31, 32, 41, 42)"_sql));
  for (; !jobs->eof(); jobs->moveNext()) report_.leave(jobs->text("JobID"), reason);
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

/// The values look like flags but are compared for equality: a combination selects nothing.
bool ProcessingRun::selects(qxProcessState section) const {
  return selection_ == qxProcessState::ProcessAll || selection_ == section;
}

void ProcessingRun::prepareContracts() {
  unprepared_ = ContractPreparation(environment_, missing_, group_, parts_.stop).run();
}

void ProcessingRun::processCustomers() {
  if (!selects(qxProcessState::ProcessKunden)) return;
  CustomerSection section(environment_, options_, marks_, parts_.events, parts_.homeCurrency, unevaluated_);
  section.run(sections_);
}

void ProcessingRun::processContracts() {
  if (!selects(qxProcessState::ProcessVerträge)) return;
  ContractSection section(environment_, marks_, parts_.events, unprepared_);
  section.run(sections_);
}

void ProcessingRun::processOrders() {
  if (!selects(qxProcessState::ProcessAufträge) && !selects(qxProcessState::ProcessZubehör)) return;
  const OrderStamp stamp{programVersion_, parts_.personnelNumber, parts_.homeCurrency};
  OrderSection section({environment_, marks_, group_, orderOptions_, stamp, cashOnDelivery_,
                        options_.automatic, unevaluated_, selection_},
                       std::move(prices_));
  section.run(sections_);
}

void ProcessingRun::close() {
  if (options_.customerSpecific) cleanUpProtocol();
  if (parts_.stop.requested())
    report_.end = RunEnd::Stopped;
  else
    purge();
}

void ProcessingRun::cleanUpProtocol() {
  const auto endsTheRun = [](const std::exception& failure) {
    return isFatal(failure) && dynamic_cast<const WorkLostError*>(&failure) == nullptr;
  };
  trapped(environment_.diagnostics, {"protocol clean-up", {}, endsTheRun},
          [&] { parts_.protocol.cleanUp(&wait_); });
  report_.protocolId = parts_.protocol.id();
}

void ProcessingRun::purge() {
  JobDeletion deletion(environment_, &wait_);
  const bool complete = purgeArchives(
      deletion, purgeOptions_, [this](std::string_view text) { parts_.events.raiseProcessInfo(text); },
      [this] { return !parts_.stop.requested(); });
  if (!complete) report_.end = RunEnd::Stopped;
}

} // namespace qx
