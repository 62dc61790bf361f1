#include "cli/commands.h"

#include "cli/file_staging.h"
#include "cli/job_terms.h"
#include "cli/json_members.h"
#include "cli/moments.h"
#include "cli/terminal_text.h"
#include "engine/erp_number.h"
#include "model/text.h"
#include "platform/bulk_staging.h"
#include "store/json_writer.h"

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace qx::cli {
namespace {

/// More of them do not help anybody to mend a file.
constexpr std::size_t mostPrinted = 100;
constexpr std::int64_t mostRepetitions = 10;

/// What is done already, so that a sender can look for it.
void writeSkipped(JsonWriter& json, BulkStaging& jobs) {
  json.key("skippedJobs").beginArray();
  jobs.forEach([&](const StagedJob& job) {
    if (job.stored == nullptr) return;
    json.beginObject().key("JobID").text(job.jobId);
    writeOutcome(json, *job.stored);
    json.key("doneSince").textOrNull(isoMoment(job.stored->text("Seit")));
    json.key("changed");
    if (const auto changed = job.stored->value("Inhalt").integer())
      json.boolean(*changed == 1);
    else
      json.null();
    json.endObject();
  });
  json.endArray();
}

void writeRepeated(JsonWriter& json, BulkStaging& jobs) {
  json.key("repeatedJobs").beginArray();
  jobs.forEachRepetition([&](const KeyConflict& repetition) {
    json.beginObject().key("JobID").text(repetition.key).key("sameContentAs").beginObject();
    json.key("JobID").text(repetition.owner).key("since").textOrNull(isoMoment(repetition.since));
    json.endObject().endObject();
  });
  json.endArray();
}

void writeJson(const Output& output, const StagedJobs& staged, bool tryOnly, bool partial) {
  JsonWriter json(output.result);
  json.beginObject();
  json.key("staged").number(staged.jobs->counts().staged);
  json.key("skipped").number(staged.jobs->counts().skipped);
  if (tryOnly) json.key("dryRun").boolean(true);
  json.key("jobs").beginArray();
  staged.jobs->forEach([&](const StagedJob& job) {
    if (job.result != StageResult::Skipped) json.text(job.jobId);
  });
  json.endArray();
  if (staged.jobs->counts().skipped > 0) writeSkipped(json, *staged.jobs);
  if (staged.jobs->counts().repeated > 0) writeRepeated(json, *staged.jobs);
  if (!staged.writtenBefore.empty()) json.key("writtenBefore").texts(staged.writtenBefore);
  if (partial) {
    json.key("rejected").number(faultyObjects(staged.faults));
    json.key("faults").beginArray();
    for (std::size_t i = 0; i < std::min(staged.faults.size(), mostPrinted); ++i)
      writeFault(json, staged.faults[i]);
    json.endArray();
  }
  json.endObject().finish();
}

/// " 200001  (done since 24.11.2026 18:04:00; --again stages it anew)".
std::string skippedText(Recordset& stored) {
  const std::string number = erpNumber(stored);
  const std::string since = stored.text("Seit");
  std::string text = number.empty() ? "" : ' ' + oneLine(number);
  text += stateOf(jobCode(stored.value("JobType"))) == JobState::Deleted ? "  (deleted" : "  (done";
  if (!since.empty()) text += " since " + momentText(since);
  if (stored.value("Inhalt").integer() == 1) text += ", with another content";
  return text + "; --again stages it anew)";
}

void writeText(const Output& output, const StagedJobs& staged, bool tryOnly) {
  staged.jobs->forEach([&](const StagedJob& job) {
    switch (job.result) {
    case StageResult::Added:
      output.result << "added     ";
      break;
    case StageResult::Replaced:
      output.result << "replaced  ";
      break;
    case StageResult::Skipped:
      output.result << "skipped   ";
      break;
    }
    output.result << oneLine(job.jobId) << "  " << kindText(job.jobType)
                  << (job.stored == nullptr ? std::string() : skippedText(*job.stored)) << '\n';
  });
  const StageCounts counts = staged.jobs->counts();
  output.result << counts.staged << (tryOnly ? " would be staged, " : " staged, ") << counts.skipped
                << " skipped";
  if (counts.repeated > 0) output.result << ", " << counts.repeated << " repeated";
  if (!staged.faults.empty()) output.result << ", " << faultyObjects(staged.faults) << " rejected";
  output.result << '\n';
}

void warnOfSecondOrders(std::ostream& messages, const std::vector<std::string>& jobIds) {
  if (jobIds.empty()) return;
  messages << "Warning: the next run writes a second order for each of these jobs, which were done:\n";
  for (const std::string& jobId : jobIds) messages << "  " << oneLine(jobId) << '\n';
}

void warnOfRepetitions(std::ostream& messages, BulkStaging& jobs) {
  const std::int64_t count = jobs.counts().repeated;
  if (count == 0) return;
  messages
      << "Warning: these jobs have the content of others that were handed over; --unique refuses them:\n";
  std::int64_t told = 0;
  jobs.forEachRepetition([&](const KeyConflict& repetition) {
    if (told == mostRepetitions) return;
    ++told;
    messages << "  " << oneLine(repetition.key) << ": same content as " << oneLine(repetition.owner)
             << (repetition.since.empty() ? " in the same file" : " of " + momentText(repetition.since))
             << '\n';
  });
  if (count > told) messages << "  and " << count - told << " more\n";
}

void tellRejected(std::ostream& messages, const std::vector<InputFault>& faults, const std::string& rejects) {
  if (faults.empty()) return;
  messages << "Rejected:\n";
  for (std::size_t i = 0; i < std::min(faults.size(), mostPrinted); ++i)
    messages << "  line " << faults[i].line << ": " << oneLine(sentenceOf(faults[i])) << '\n';
  if (faults.size() > mostPrinted) messages << "  ...\n";
  if (!rejects.empty())
    messages << "The rejected objects are in " << oneLine(rejects)
             << "; correct them there and stage that file.\n";
}

} // namespace

void StageCommand::prepare() {
  if (file.empty())
    throw ProgramError(ExitCode::BadInput, "FILE is required, or --watch DIR",
                       "'qximportjob help stage' shows the usage.");
}

ExitCode StageCommand::work(const CommandContext& context) {
  const StagedJobs staged = stageFile(context, file, {again, partial, unique, dryRun, {}, rejects});
  if (context.output.json)
    writeJson(context.output, staged, dryRun, partial);
  else
    writeText(context.output, staged, dryRun);
  warnOfSecondOrders(context.output.messages, staged.writtenBefore);
  if (!context.output.json) warnOfRepetitions(context.output.messages, *staged.jobs);
  if (!context.output.json) tellRejected(context.output.messages, staged.faults, rejects);
  return staged.faults.empty() ? ExitCode::Success : ExitCode::Findings;
}

} // namespace qx::cli
