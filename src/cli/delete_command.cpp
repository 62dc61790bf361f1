#include "cli/commands.h"

#include "cli/job_table.h"
#include "cli/job_terms.h"
#include "cli/json_members.h"
#include "cli/progress_bar.h"
#include "model/text.h"
#include "program/busy_notice.h"
#include "program/common_options.h"
#include "store/job_deletion.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace qx::cli {
namespace {

/// Those whose date of receipt says nothing about their age.
void printUndated(std::ostream& output, const JobDeletion& deletion) {
  if (deletion.undatedJobs() == 0) return;
  output << deletion.undatedJobs() << " kept: no readable date of receipt\n";
  for (const std::string& jobId : deletion.undated()) output << "  " << oneLine(jobId) << '\n';
  if (deletion.undated().size() < static_cast<std::size_t>(deletion.undatedJobs())) output << "  ...\n";
}

/// Names the jobs that stayed, whatever the form of the output.
ExitCode end(const Output& output, const JobDeletion& deletion) {
  if (deletion.refusals() == 0) return deletion.undatedJobs() == 0 ? ExitCode::Success : ExitCode::Findings;
  output.messages << "The database refused " << deletion.refusals() << " deletions:\n";
  for (const auto& [jobId, reason] : deletion.left())
    output.messages << "  " << oneLine(jobId) << ": " << oneLine(reason) << '\n';
  output.messages << std::flush;
  return ExitCode::Failure;
}

} // namespace

ExitCode DeleteCommand::work(const CommandContext& context) {
  BusyNotice wait(context.output.messages);
  std::vector<std::string> found;
  for (const JobBrief& job : findJobs(context.connection(), jobIds)) found.push_back(job.jobId);
  JobDeletion deletion(context.environment, &wait);
  if (dryRun || !keep.empty()) {
    std::vector<std::string> all = found;
    if (withContracts)
      for (const std::string& key : found)
        for (std::string& contract : deletion.contractsOf(key))
          if (std::ranges::find(all, contract) == all.end()) all.push_back(std::move(contract));
    if (dryRun) {
      showWhatWould(context.output, context.connection(), all, "Delete");
      return ExitCode::Success;
    }
    keepJobs(context.connection(), all, keep);
  }
  deletion.delItems(found, withContracts);
  if (context.output.json) {
    JsonWriter json(context.output.result);
    json.beginObject().key("deleted").number(deletion.deletedHeaders());
    writeLeft(json, deletion.left());
    json.endObject().finish();
  } else {
    context.output.result << deletion.deletedHeaders() << " deleted\n";
  }
  return end(context.output, deletion);
}

void PurgeCommand::prepare() {
  if (before) day_ = typedDate(*before);
}

ExitCode PurgeCommand::work(const CommandContext& context) {
  BusyNotice wait(context.output.messages);
  JobDeletion deletion(context.environment, &wait);
  const auto found = day_ ? deletion.doneBefore(*day_) : deletion.doneJobs();
  if (dryRun) {
    showWhatWould(context.output, context.connection(), found, "Delete");
    printUndated(context.output.messages, deletion);
    return end(context.output, deletion);
  }
  if (!keep.empty()) keepJobs(context.connection(), found, keep);
  {
    ProgressBar bar(context.output);
    std::uintmax_t taken = 0;
    deletion.deleteDone(found, [&] {
      bar.report(taken++, found.size());
      bar.draw();
      return true;
    });
  }
  if (context.output.json) {
    JsonWriter json(context.output.result);
    json.beginObject().key("deleted").number(deletion.deletedHeaders());
    json.key("undated").number(deletion.undatedJobs());
    if (!deletion.undated().empty()) json.key("undatedJobs").texts(deletion.undated());
    json.key("refused").number(deletion.refusals());
    writeLeft(json, deletion.left());
    json.endObject().finish();
  } else {
    context.output.result << deletion.deletedHeaders() << " deleted\n";
    printUndated(context.output.result, deletion);
  }
  return end(context.output, deletion);
}

} // namespace qx::cli
