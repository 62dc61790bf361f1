#include "cli/commands.h"

#include "cli/job_terms.h"
#include "cli/progress_bar.h"
#include "cli/run_printer.h"
#include "cli/stop_on_signal.h"
#include "platform/terminal.h"
#include "program/busy_notice.h"

#include <charconv>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>
#include <system_error>
#include <thread>

namespace qx::cli {
namespace {

constexpr std::chrono::seconds noLimit = std::chrono::seconds::max();

/// Holds the single-user lock and always releases it. Signals stop the run while it is held; while the
/// program waits for the lock they end it at once.
class HeldLock {
public:
  HeldLock(const CommandContext& context, std::chrono::seconds limit) : context_(context) {
    ImportLock& lock = context.engine.importLock();
    BusyNotice wait(context.output.messages);
    const auto end = deadline(limit);
    LockOutcome outcome;
    do {
      waitForHolder(end);
      outcome = lock.take(&wait);
      // Another program may have been quicker.
    } while (outcome.state == LockState::Refused && Clock::now() < end);
    if (outcome.state == LockState::Taken) {
      stop_.emplace(context.engine);
      return;
    }
    if (outcome.state == LockState::Unavailable)
      throw ProgramError(ExitCode::Failure, "the import cannot be locked: " + outcome.reason,
                         nextStep(outcome));
    const auto holder = lock.holder();
    const std::string name = holder ? holder->Benutzer : std::string();
    throw ProgramError(ExitCode::Refused, "the import is locked by user '" + name + "'",
                       "Wait until that user has finished (--wait does). If nobody is working any more: "
                       "qximportjob lock release");
  }
  HeldLock(const HeldLock&) = delete;
  HeldLock& operator=(const HeldLock&) = delete;
  ~HeldLock() {
    BusyNotice wait(context_.output.messages);
    if (!context_.engine.importLock().releaseIfHeld(&wait))
      context_.output.messages << "The lock could not be released. Later: qximportjob lock release"
                               << std::endl;
  }

private:
  using Clock = std::chrono::steady_clock;

  static Clock::time_point deadline(std::chrono::seconds limit) {
    return limit == noLimit ? Clock::time_point::max() : Clock::now() + limit;
  }

  static std::string nextStep(const LockOutcome& unavailable) {
    return unavailable.busy ? "Try again when no other program holds the database." : "";
  }

  /// Until nobody who may be alive holds the lock, or the time is over.
  void waitForHolder(Clock::time_point end) {
    constexpr std::chrono::milliseconds pollInterval{200};
    while (Clock::now() < end) {
      const auto holder = context_.engine.importLock().holder();
      if (!holder || holder->alive == false) return;
      if (!waiting_)
        context_.output.messages << "Waiting until user '" << holder->Benutzer << "' releases the lock..."
                                 << std::endl;
      waiting_ = true;
      std::this_thread::sleep_for(pollInterval);
    }
  }

  const CommandContext& context_;
  std::optional<StopOnSignal> stop_;
  bool waiting_ = false;
};

/// Null when the text is no span of time.
std::optional<std::chrono::seconds> spanFromText(std::string_view text) {
  if (text == ProcessCommand::forever) return noLimit;
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || number < 0) return std::nullopt;
  const std::string_view unit = text.substr(static_cast<std::size_t>(end - text.data()));
  if (unit.empty() || unit == "s") return std::chrono::seconds(number);
  if (unit == "min") return std::chrono::minutes(number);
  if (unit == "h") return std::chrono::hours(number);
  return std::nullopt;
}

std::unique_ptr<RunPrinter> printerFor(Environment& environment, const Output& output, bool quiet) {
  if (output.json) return std::make_unique<JsonRunPrinter>(environment, output, quiet);
  return std::make_unique<TextRunPrinter>(output, quiet);
}

/// How many jobs a run will take: the waiting ones and the released ones, of the kinds selected.
std::uintmax_t jobsToTake(Connection& connection, qxProcessState selection) {
  const bool all = selection == qxProcessState::ProcessAll;
  Sql query = sql("Select Count(*) From ImportKopf Where (JobType = 0"_sql);
  const auto add = [&](bool taken, std::int16_t kind) {
    if (!taken) return;
    query.append(sql(" Or JobType = "_sql, number(kind), " Or (ProcessWarning = 1 And (JobType = "_sql,
                     number(withState(kind, JobState::Warning)), " Or JobType = "_sql,
                     number(withState(kind, JobState::Error)), "))"_sql));
  };
  add(all || selection == qxProcessState::ProcessKunden, qxtjobkunden);
  add(all || selection == qxProcessState::ProcessKunden, qxtjobkundenverträge);
  add(all || selection == qxProcessState::ProcessVerträge, qxtjobverträge);
  add(all || selection == qxProcessState::ProcessAufträge || selection == qxProcessState::ProcessZubehör,
      qxtJobAufträge);
  const auto rows = connection.open(query.append(sql(")"_sql)));
  return static_cast<std::uintmax_t>(rows->value(std::size_t{0}).integer().value_or(0));
}

ExitCode codeOf(const RunReport& report) {
  if (report.end == RunEnd::Broken) return ExitCode::Failure;
  if (report.end == RunEnd::Stopped) return ExitCode::Stopped;
  const bool clean =
      report.warning == 0 && report.error == 0 && report.protocolErrors == 0 && report.left.empty();
  return clean ? ExitCode::Success : ExitCode::Findings;
}

} // namespace

void ProcessCommand::prepare() {
  const auto selection = selectionFromText(select);
  if (!selection)
    throw ProgramError(ExitCode::BadInput, "'" + select + "' cannot be selected",
                       "Selections are alle, kunden, verträge, aufträge and zubehör.");
  selection_ = *selection;
  const auto span = spanFromText(wait);
  if (!span)
    throw ProgramError(
        ExitCode::BadInput, "--wait: '" + wait + "' is not a span of time",
        "Write a number with s, min or h behind it, such as --wait=5min; --wait alone has no limit.");
  lockWait_ = *span;
}

ExitCode ProcessCommand::work(const CommandContext& context) {
  const HeldLock lock(context, lockWait_);
  ProgressBar bar(context.output);
  const std::uintmax_t waiting = isErrorTerminal() ? jobsToTake(context.connection(), selection_) : 0;
  std::uintmax_t taken = 0;
  const Subscription subscription = context.engine.subscribe(bar);
  const auto printer = printerFor(context.environment, context.output, quiet);
  context.engine.setOutcomeSink([&](const JobOutcome& outcome) {
    printer->add(outcome);
    bar.report(++taken, waiting);
    bar.draw();
  });
  const auto start = context.environment.clock.elapsed();
  context.engine.ProcessJobs(unevaluated, selection_);
  const auto span = context.environment.clock.elapsed() - start;
  context.engine.setOutcomeSink({});
  bar.end();
  const RunReport& report = context.engine.lastRun();
  if (report.end == RunEnd::Refused)
    throw ProgramError(ExitCode::Refused, report.failure, "Try again when the order has been read in.");
  printer->finish(report, span);
  if (report.end == RunEnd::Broken)
    context.output.messages
        << "The run broke off: " << report.failure
        << "\nJobs that are not listed are still waiting; remedy the cause and run it again." << std::endl;
  return codeOf(report);
}

} // namespace qx::cli
