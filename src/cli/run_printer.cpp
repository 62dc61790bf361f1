#include "cli/run_printer.h"

#include "cli/job_terms.h"
#include "cli/json_members.h"
#include "model/text.h"

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

} // namespace

TextRunPrinter::TextRunPrinter(const Output& output)
    : output_(output),
      table_(
          output,
          {{"Status", 8, 8}, {"Vorgang", 7, 7}, {"Nummer", 10, 6}, {"JobID", 32, 32}, {"Gründe", 80, 10}}) {}

void TextRunPrinter::add(const JobOutcome& outcome) {
  table_.row({{outcome.status, statusStyle(outcome.status)},
              {outcome.transaction},
              {outcome.number},
              {outcome.jobId},
              {outcome.reasons}});
}

void TextRunPrinter::finish(const RunReport& report, std::chrono::milliseconds span) {
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

void JsonRunPrinter::add(const JobOutcome& outcome) {
  begin();
  json_.beginObject();
  json_.key("JobID").text(outcome.jobId);
  json_.key("Vorgang").text(outcome.transaction);
  json_.key("Nummer").text(outcome.number);
  json_.key("Status").text(outcome.status);
  json_.key("JobType").number(std::int64_t{outcome.jobType});
  json_.key("Fehlertext").text(outcome.reasons);
  writeDetails(json_, outcome.findings);
  json_.endObject();
}

void JsonRunPrinter::finish(const RunReport& report, std::chrono::milliseconds span) {
  begin();
  json_.endArray();
  json_.key("counts").beginObject();
  json_.key("processed").number(count(report.processed));
  json_.key("done").number(count(report.done));
  json_.key("warning").number(count(report.warning));
  json_.key("error").number(count(report.error));
  json_.endObject();
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
