#include "cli/job_file_command.h"

#include "cli/busy_notice.h"
#include "cli/job_file_progress.h"
#include "store/job_file_export.h"
#include "store/job_file_import.h"
#include "store/job_file_scrambling.h"

namespace qx::cli {
namespace {

JobFileVersion versionOf(bool version1) { return version1 ? JobFileVersion::One : JobFileVersion::Two; }

/// Raises what stands for an exchange that changed nothing.
void refuseInput(const JobFileReport& report, const std::string& file, const std::string& nextStep) {
  if (report.end == JobFileEnd::WrongBanner)
    throw ProgramError(ExitCode::BadInput, std::string(wrongBannerText), nextStep, {file, 1, {}});
  if (report.end == JobFileEnd::TargetRefused)
    throw ProgramError(ExitCode::BadInput, report.failure, "Nothing was changed. Name another file.");
  if (report.end == JobFileEnd::NoFile) throw ProgramError(ExitCode::BadInput, report.failure);
}

ExitCode change(const Workplace& place, const std::string& file, const std::string& target,
                Scrambling scrambling) {
  JobFileProgress progress(place.output, scrambling == Scrambling::Scramble ? "scramble" : "unscramble");
  const JobFileReport report = scrambleJobFile(place.environment, file, target, scrambling, &progress);
  progress.end();
  refuseInput(report, file,
              scrambling == Scrambling::Scramble
                  ? "Only a plain job file can be scrambled."
                  : "Only a job file that was scrambled with the code tables of this installation can be "
                    "unscrambled.");
  if (report.end == JobFileEnd::Failed) throw ProgramError(ExitCode::Failure, report.failure);
  if (place.output.json)
    JsonWriter(place.output.result).beginObject().key("lines").number(report.lines).endObject().finish();
  else
    place.output.result << report.lines << " lines written to " << target << '\n';
  return ExitCode::Success;
}

} // namespace

ExitCode ImportCommand::work(const Workplace& place) {
  ImportPrinter printer(place.output);
  BusyNotice wait(place.output.messages);
  const JobFileReport report = importJobFile(place.environment, file, versionOf(version1), &printer, &wait);
  printer.end();
  refuseInput(report, file,
              version1 ? "A job file of version 2 is read without --version1."
                       : "A job file of version 1 is read with --version1; a scrambled one needs the code "
                         "tables of its sender.");
  printer.finish(report);
  if (report.end == JobFileEnd::Failed) {
    place.output.messages << "The import broke off: " << report.failure
                          << "\nWhat the counts say is staged; remedy the cause and import the file again."
                          << std::endl;
    return ExitCode::Failure;
  }
  return report.counts.refused == 0 ? ExitCode::Success : ExitCode::Findings;
}

ExitCode ExportCommand::work(const Workplace& place) {
  ExportProgress progress(place.output);
  const JobFileReport report = exportJobFile(place.environment, file, versionOf(version1), &progress);
  progress.end();
  refuseInput(report, file, {});
  if (report.end != JobFileEnd::Complete)
    throw ProgramError(ExitCode::Failure, report.failure,
                       report.backup.empty() ? "Remedy the cause and export again."
                                             : "The file is incomplete; the one that was there before is " +
                                                   report.backup + ".");
  if (place.output.json) {
    JsonWriter json(place.output.result);
    json.beginObject().key("jobs").number(report.counts.jobs);
    json.key("positions").number(report.counts.positions);
    json.key("skipped").number(report.counts.skipped);
    json.key("unreadable").number(report.counts.unreadable).key("unreadableJobs").beginArray();
    for (const std::string& jobId : progress.unreadableJobs()) json.text(jobId);
    json.endArray().endObject().finish();
  } else {
    for (const std::string& jobId : progress.unreadableJobs())
      place.output.result << "will not read back as it is: " << jobId << '\n';
    if (report.counts.unreadable > 0)
      place.output.result << report.counts.unreadable << " lines will not read back as they are\n";
    place.output.result << report.counts.jobs << " jobs and " << report.counts.positions
                        << " positions written to " << file << ", " << report.counts.skipped << " skipped\n";
  }
  return ExitCode::Success;
}

ExitCode ScrambleCommand::work(const Workplace& place) {
  return change(place, file, target, Scrambling::Scramble);
}

ExitCode UnscrambleCommand::work(const Workplace& place) {
  return change(place, file, target, Scrambling::Unscramble);
}

} // namespace qx::cli
