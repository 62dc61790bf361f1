#include "cli/commands.h"

#include "cli/file_staging.h"
#include "cli/job_terms.h"
#include "cli/json_members.h"
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

void writeJson(const Output& output, const StagedJobs& staged, bool tryOnly, bool partial) {
  JsonWriter json(output.result);
  json.beginObject();
  json.key("staged").number(staged.jobs->counts().staged);
  json.key("skipped").number(staged.jobs->counts().skipped);
  if (tryOnly) json.key("dryRun").boolean(true);
  json.key("jobs").beginArray();
  staged.jobs->forEach([&](const std::string& jobId, std::int16_t /*jobType*/, StageResult result) {
    if (result != StageResult::Skipped) json.text(jobId);
  });
  json.endArray();
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

void writeText(const Output& output, const StagedJobs& staged, bool tryOnly) {
  staged.jobs->forEach([&](const std::string& jobId, std::int16_t jobType, StageResult result) {
    switch (result) {
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
    output.result << oneLine(jobId) << "  " << kindText(jobType)
                  << (result == StageResult::Skipped ? "  (done; --again stages it anew)\n" : "\n");
  });
  const StageCounts counts = staged.jobs->counts();
  output.result << counts.staged << (tryOnly ? " would be staged, " : " staged, ") << counts.skipped
                << " skipped";
  if (!staged.faults.empty()) output.result << ", " << faultyObjects(staged.faults) << " rejected";
  output.result << '\n';
}

void warnOfSecondOrders(std::ostream& messages, const std::vector<std::string>& jobIds) {
  if (jobIds.empty()) return;
  messages << "Warning: the next run writes a second order for each of these jobs, which were done:\n";
  for (const std::string& jobId : jobIds) messages << "  " << oneLine(jobId) << '\n';
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
  const StagedJobs staged = stageFile(context, file, {again, partial, dryRun, {}, rejects});
  if (context.output.json)
    writeJson(context.output, staged, dryRun, partial);
  else
    writeText(context.output, staged, dryRun);
  warnOfSecondOrders(context.output.messages, staged.writtenBefore);
  if (!context.output.json) tellRejected(context.output.messages, staged.faults, rejects);
  return staged.faults.empty() ? ExitCode::Success : ExitCode::Findings;
}

} // namespace qx::cli
