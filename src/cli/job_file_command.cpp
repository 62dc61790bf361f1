#include "cli/commands.h"

#include "cli/job_file_progress.h"
#include "cli/text_source.h"
#include "platform/path_text.h"
#include "platform/terminal.h"
#include "program/busy_notice.h"
#include "store/job_file_export.h"
#include "store/job_file_import.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace qx::cli {
namespace {

JobFileVersion versionOf(bool version1) { return version1 ? JobFileVersion::One : JobFileVersion::Two; }

/// Raises the error of an exchange that changed nothing.
void refuseInput(const JobFileReport& report, const std::string& file, const std::string& nextStep) {
  if (report.end == JobFileEnd::WrongBanner)
    throw ProgramError(ExitCode::BadInput, std::string(wrongBannerText), nextStep, {file, 1, {}});
  if (report.end == JobFileEnd::TargetRefused)
    throw ProgramError(ExitCode::BadInput, report.failure, "Nothing was changed. Name another file.");
  if (report.end == JobFileEnd::NoFile) throw ProgramError(ExitCode::BadInput, report.failure);
}

/// What a job file is read from. Standard input and pipes are copied, as it is read more than once.
class JobFileSource {
public:
  explicit JobFileSource(const std::string& file)
      : name_(file == "-" ? "standard input" : file), path_(file) {
    std::error_code unknown;
    if (file == "-")
      copy_ = std::make_unique<PipeCopy>();
    else if (std::filesystem::is_fifo(pathOf(file), unknown))
      copy_ = std::make_unique<PipeCopy>(file);
    if (copy_) path_ = copy_->path();
  }

  const std::string& name() const { return name_; }
  const std::string& path() const { return path_; }

private:
  std::string name_;
  std::string path_;
  std::unique_ptr<PipeCopy> copy_;
};

/// Null for a file of that name.
std::optional<OpenFile> standardOutputFor(const std::string& file, const Output& output) {
  if (file != "-" && !isStandardOutput(pathOf(file))) return std::nullopt;
  if (output.json)
    throw ProgramError(ExitCode::BadInput,
                       "the job file and the JSON document would both go to standard output",
                       "Omit --json, or name a file.");
  return OpenFile{qx::standardOutput, "standard output"};
}

} // namespace

ExitCode ScrambleCommand::work(const CommandContext& context) {
  const auto standardOutput = standardOutputFor(target, context.output);
  const JobFileSource source(file);
  JobFileProgress progress(context.output, ProgressUnit::Bytes);
  const JobFileReport report =
      standardOutput
          ? scrambleJobFile(context.environment, source.path(), *standardOutput, scrambling, &progress)
          : scrambleJobFile(context.environment, source.path(), target, scrambling, &progress);
  progress.end();
  refuseInput(report, source.name(),
              scrambling == Scrambling::Scramble
                  ? "Only a plain job file can be scrambled."
                  : "Only a job file scrambled with the code tables of this installation can be "
                    "unscrambled.");
  if (report.end == JobFileEnd::Failed) throw ProgramError(ExitCode::Failure, report.failure);
  if (context.output.json)
    JsonWriter(context.output.result).beginObject().key("lines").number(report.lines).endObject().finish();
  else
    (standardOutput ? context.output.messages : context.output.result)
        << report.lines << " lines written to " << (standardOutput ? standardOutput->name : target) << '\n';
  return ExitCode::Success;
}

ExitCode ImportCommand::work(const CommandContext& context) {
  ImportPrinter printer(context.output);
  BusyNotice wait(context.output.messages);
  const JobFileSource source(file);
  const JobFileReport report =
      importJobFile(context.environment, source.path(), versionOf(version1), &printer, &wait);
  printer.end();
  refuseInput(report, source.name(),
              version1 ? "A job file of version 2 is read without --version1."
                       : "A job file of version 1 is read with --version1; a scrambled one needs the code "
                         "tables of its sender.");
  printer.finish(report);
  if (report.end == JobFileEnd::Failed) {
    context.output.messages << "The import broke off: " << report.failure
                            << "\nWhat the counts say is staged; remedy the cause and import the file again."
                            << std::endl;
    return ExitCode::Failure;
  }
  return report.counts.refused == 0 ? ExitCode::Success : ExitCode::Findings;
}

ExitCode ExportCommand::work(const CommandContext& context) {
  const auto standardOutput = standardOutputFor(file, context.output);
  ExportProgress progress(context.output);
  const JobFileReport report =
      standardOutput ? exportJobFile(context.environment, *standardOutput, versionOf(version1), &progress)
                     : exportJobFile(context.environment, file, versionOf(version1), &progress);
  progress.end();
  refuseInput(report, file, {});
  if (report.end != JobFileEnd::Complete)
    throw ProgramError(ExitCode::Failure, report.failure,
                       report.backup.empty() ? "Fix the cause and export again."
                                             : "The file is incomplete; the one that was there before is " +
                                                   report.backup + ".");
  if (context.output.json) {
    JsonWriter json(context.output.result);
    json.beginObject().key("jobs").number(report.counts.jobs);
    json.key("positions").number(report.counts.positions);
    json.key("skipped").number(report.counts.skipped);
    json.key("unreadable").number(report.counts.unreadable);
    json.key("unreadableJobs").texts(progress.unreadableJobs()).endObject().finish();
    return ExitCode::Success;
  }
  std::ostream& told = standardOutput ? context.output.messages : context.output.result;
  for (const std::string& jobId : progress.unreadableJobs())
    told << "cannot be read back unchanged: " << jobId << '\n';
  if (report.counts.unreadable > 0)
    told << report.counts.unreadable << " lines cannot be read back unchanged\n";
  told << report.counts.jobs << " jobs and " << report.counts.positions << " positions written to "
       << (standardOutput ? standardOutput->name : file) << ", " << report.counts.skipped << " skipped\n";
  return ExitCode::Success;
}

} // namespace qx::cli
