#include "cli/delete_command.h"

#include "cli/job_query.h"
#include "cli/json_writer.h"
#include "program/busy_notice.h"
#include "store/work_group.h"

namespace qx::cli {
namespace {

void print(const Output& output, std::int64_t deleted) {
  if (!output.json) {
    output.result << deleted << " deleted\n";
    return;
  }
  JsonWriter json(output.result);
  json.beginObject().key("deleted").number(deleted).endObject().finish();
}

void print(const Output& output, const JobDeletion& deletion) {
  if (output.json) {
    JsonWriter json(output.result);
    json.beginObject().key("deleted").number(deletion.deletedHeaders());
    json.key("undated").number(deletion.undatedJobs());
    json.key("refused").number(deletion.refusedStatements()).endObject().finish();
    return;
  }
  print(output, deletion.deletedHeaders());
  if (deletion.undatedJobs() > 0)
    output.result << deletion.undatedJobs() << " kept: no readable date of receipt\n";
}

} // namespace

ExitCode DeleteCommand::work(const Workplace& place) {
  BusyNotice wait(place.output.messages);
  JobDeletion deletion(place.environment);
  WorkUnit unit(place.connection(), &wait);
  const auto jobs = findJobs(place.connection(), jobIds);
  for (const JobBrief& job : jobs) deletion.DelItem(job.jobId, withContracts);
  for (const JobBrief& job : jobs)
    if (findJob(place.connection(), job.jobId))
      throw ProgramError(ExitCode::Failure, "the job '" + job.jobId + "' could not be deleted",
                         "Nothing was changed. --verbose tells the reason.");
  unit.commit();
  print(place.output, deletion.deletedHeaders());
  return ExitCode::Success;
}

void PurgeCommand::prepare() {
  if (!before) return;
  day_ = parseGermanDate(*before);
  if (!day_)
    throw ProgramError(ExitCode::BadInput, "'" + *before + "' is no date", "Dates are written dd.mm.yyyy.");
}

ExitCode PurgeCommand::work(const Workplace& place) {
  BusyNotice wait(place.output.messages);
  JobDeletion deletion(place.environment);
  WorkGroup group(place.environment, wait);
  const auto afterJob = [&] {
    group.endJob();
    group.begin();
  };
  group.begin();
  if (day_)
    deletion.deleteDoneBefore(*day_, afterJob);
  else
    deletion.DelArchives(afterJob);
  group.finish();
  print(place.output, deletion);
  if (deletion.refusedStatements() == 0) return ExitCode::Success;
  place.output.messages << "The database refused " << deletion.refusedStatements()
                        << " statements; --verbose tells the reason." << std::endl;
  return ExitCode::Failure;
}

} // namespace qx::cli
