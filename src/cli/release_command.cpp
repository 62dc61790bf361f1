#include "cli/commands.h"

#include "cli/job_terms.h"
#include "model/text.h"
#include "platform/conflict_retry.h"
#include "program/busy_notice.h"
#include "store/json_writer.h"

namespace qx::cli {
namespace {

bool isParked(std::int16_t jobType) {
  return isWaitingHeader(kindOf(jobType)) &&
         (stateOf(jobType) == JobState::Warning || stateOf(jobType) == JobState::Error);
}

std::vector<std::string> namedJobs(Connection& connection, const std::vector<std::string>& wanted) {
  std::vector<std::string> keys;
  for (JobBrief& job : findJobs(connection, wanted)) {
    if (!isParked(job.jobType))
      throw ProgramError(ExitCode::BadInput,
                         "the job '" + job.jobId + "' cannot be released, its state is " +
                             std::string(stateText(job.jobType)),
                         "Nothing was changed. Only jobs with warnings or errors are released.");
    keys.push_back(std::move(job.jobId));
  }
  return keys;
}

std::vector<std::string> jobsWithWarnings(Connection& connection) {
  std::vector<std::string> keys;
  const auto rows = connection.open(sql("Select JobID From ImportKopf Where JobType In (11, 21, 31, 41) And "
                                        "(ProcessWarning Is Null Or ProcessWarning <> 1)"_sql));
  for (; !rows->eof(); rows->moveNext()) keys.push_back(rows->text("JobID"));
  return keys;
}

} // namespace

void ReleaseCommand::prepare() {
  if (jobIds.empty() == allWarnings) return;
  throw ProgramError(ExitCode::BadInput,
                     allWarnings ? "--all-warnings goes without JOBIDs" : "no jobs to release were named",
                     "Give JOBIDs or --all-warnings.");
}

std::vector<std::string> ReleaseCommand::release(const CommandContext& context) const {
  Connection& connection = context.connection();
  BusyNotice wait(context.output.messages);
  WorkUnit unit(connection, &wait);
  auto keys = allWarnings ? jobsWithWarnings(connection) : namedJobs(connection, jobIds);
  for (const std::string& key : keys)
    connection.execute(
        sql("Update ImportKopf Set ProcessWarning = 1 Where JobID = '"_sql, value(key), "'"_sql));
  unit.commit();
  return keys;
}

ExitCode ReleaseCommand::work(const CommandContext& context) {
  const auto keys = doneAgainOnConflict(context.environment, "release", [&] { return release(context); });
  if (!context.output.json) {
    for (const std::string& key : keys) context.output.result << "released  " << oneLine(key) << '\n';
    context.output.result << keys.size() << " released; the next run takes them again\n";
    return ExitCode::Success;
  }
  JsonWriter json(context.output.result);
  json.beginObject().key("released").number(static_cast<std::int64_t>(keys.size()));
  json.key("jobs").texts(keys).endObject().finish();
  return ExitCode::Success;
}

} // namespace qx::cli
