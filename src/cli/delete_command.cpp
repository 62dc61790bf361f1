#include "cli/commands.h"

#include "cli/job_terms.h"
#include "cli/json_members.h"
#include "cli/progress_bar.h"
#include "model/text.h"
#include "program/busy_notice.h"
#include "store/job_deletion.h"

namespace qx::cli {
namespace {

/// Names the jobs that stayed, whatever the form of the output.
ExitCode end(const Output& output, const JobDeletion& deletion) {
  if (deletion.refusals() == 0) return ExitCode::Success;
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
  if (!before) return;
  day_ = parseGermanDate(*before);
  if (!day_)
    throw ProgramError(ExitCode::BadInput, "'" + *before + "' is not a date",
                       "Dates are written dd.mm.yyyy.");
}

ExitCode PurgeCommand::work(const CommandContext& context) {
  BusyNotice wait(context.output.messages);
  JobDeletion deletion(context.environment, &wait);
  ProgressBar bar(context.output);
  const auto found = day_ ? deletion.doneBefore(*day_) : deletion.doneJobs();
  std::uintmax_t taken = 0;
  deletion.deleteDone(found, [&] {
    bar.report(taken++, found.size());
    bar.draw();
    return true;
  });
  bar.end();
  if (context.output.json) {
    JsonWriter json(context.output.result);
    json.beginObject().key("deleted").number(deletion.deletedHeaders());
    json.key("undated").number(deletion.undatedJobs());
    json.key("refused").number(deletion.refusals());
    writeLeft(json, deletion.left());
    json.endObject().finish();
  } else {
    context.output.result << deletion.deletedHeaders() << " deleted\n";
    if (deletion.undatedJobs() > 0)
      context.output.result << deletion.undatedJobs() << " kept: no readable date of receipt\n";
  }
  return end(context.output, deletion);
}

} // namespace qx::cli
