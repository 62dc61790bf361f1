#include "cli/run_printer.h"

#include "cli/job_terms.h"
#include "cli/json_members.h"
#include "cli/written_order.h"
#include "model/text.h"
#include "platform/environment.h"
#include "platform/failure.h"

namespace qx::cli {
namespace {

double seconds(std::chrono::milliseconds span) { return std::chrono::duration<double>(span).count(); }

std::int64_t count(std::size_t number) { return static_cast<std::int64_t>(number); }

/// Prints jobs left waiting and unwritten protocol lines.
void printRest(std::ostream& output, const RunReport& report) {
  if (report.end == RunEnd::Stopped)
    output << "The run was stopped; " << report.stillWaiting << " jobs are left waiting.\n";
  if (report.protocolErrors > 0)
    output << report.protocolErrors << " protocol lines or index entries could not be written.\n";
  if (report.left.empty()) return;
  output << report.left.size()
         << " jobs are left as they were, because the database refuses to change them:\n";
  for (const auto& [jobId, reason] : report.left) output << "  " << jobId << ": " << oneLine(reason) << '\n';
}

bool isWritten(const JobOutcome& outcome) { return stateOf(outcome.jobType) == JobState::Done; }

} // namespace

TextRunPrinter::TextRunPrinter(const Output& output, bool quiet)
    : output_(output), quiet_(quiet),
      table_(output, {{"Status", 8, 8},
                      {"Vorgang", 7, 7},
                      {"Nummer", 10, 6},
                      {"JobID", 32, 13, false, Fitting::Ends}, // the cause matters more than a whole key
                      {"Gründe", 80, 10}}) {}

void TextRunPrinter::add(const JobOutcome& outcome) {
  causes_.add(outcome);
  if (quiet_ && isWritten(outcome)) return;
  const Style style = statusStyle(outcome.status);
  if (style == Style::Bad) output_.result.setPriority(Priority::Error);
  if (style == Style::Warning) output_.result.setPriority(Priority::Warning);
  table_.row({{outcome.status, style},
              {outcome.transaction},
              {outcome.number},
              {outcome.jobId},
              {briefReasons(outcome.reasons)}});
  output_.result.setPriority(Priority::Information);
}

void TextRunPrinter::finish(const RunReport& report, std::chrono::milliseconds span) {
  causes_.print(output_.result);
  output_.result << report.processed << " processed: " << report.done << " done, " << report.warning
                 << " with warnings, " << report.error << " with errors, in " << seconds(span) << " s\n";
  printRest(output_.result, report);
  output_.result << std::flush;
}

void JsonRunPrinter::begin() {
  if (begun_) return;
  begun_ = true;
  json_.beginObject().key("jobs").beginArray();
}

void JsonRunPrinter::writeJob(JsonWriter& json, const JobOutcome& outcome) {
  json.beginObject();
  json.key("JobID").text(outcome.jobId);
  json.key("Vorgang").text(outcome.transaction);
  json.key("Nummer").text(outcome.number);
  json.key("Status").text(outcome.status);
  json.key("JobType").number(std::int64_t{outcome.jobType});
  writeOutcome(json, outcome.jobType, outcome.number);
  json.key("Fehlertext").text(outcome.reasons);
  writeDetails(json, outcome.findings);
  // The job is written, whether or not its order can be read again.
  if (outcome.jobType == qxtJobAufträgeDone)
    trapped(environment_.diagnostics, {"order that was written", outcome.jobId},
            [&] { WrittenOrder(*environment_.connection, outcome.number).write(json); });
  json.endObject();
}

void JsonRunPrinter::add(const JobOutcome& outcome) {
  causes_.add(outcome);
  if (quiet_ && isWritten(outcome)) return;
  if (output_.jsonLines) {
    JsonWriter line(output_.result);
    writeJob(line, outcome);
    // Whoever reads along learns of each job at once.
    line.finish();
    return;
  }
  begin();
  writeJob(json_, outcome);
}

void JsonRunPrinter::finish(const RunReport& report, std::chrono::milliseconds span) {
  if (output_.jsonLines) {
    json_.beginObject();
  } else {
    begin();
    json_.endArray();
  }
  json_.key("counts").beginObject();
  json_.key("processed").number(count(report.processed));
  json_.key("done").number(count(report.done));
  json_.key("warning").number(count(report.warning));
  json_.key("error").number(count(report.error));
  json_.endObject();
  causes_.write(json_);
  json_.key("protocol").text(report.protocolId);
  json_.key("seconds").number(seconds(span));
  if (report.protocolErrors > 0) json_.key("protocolErrors").number(count(report.protocolErrors));
  writeLeft(json_, report.left);
  if (report.end == RunEnd::Stopped) {
    json_.key("stopped").boolean(true);
    json_.key("waiting").number(count(report.stillWaiting));
  }
  if (report.end == RunEnd::Broken) json_.key("error").text(report.failure);
  json_.endObject().finish();
  printRest(output_.messages, report);
}

} // namespace qx::cli
