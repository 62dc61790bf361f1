#include "cli/commands.h"

#include "cli/job_table.h"
#include "cli/job_terms.h"
#include "cli/json_writer.h"
#include "platform/value.h"

#include <string>
#include <utility>
#include <vector>

namespace qx::cli {
void ListCommand::prepare() {
  if (limit && *limit < 0)
    throw ProgramError(ExitCode::BadInput, "the limit must not be negative",
                       "Give the number of jobs to list.");
  std::vector<JobState> wantedStates;
  for (const std::string& text : states) {
    const auto state = stateFromText(text);
    if (!state)
      throw ProgramError(ExitCode::BadInput, "'" + text + "' is not a state",
                         "States are waiting, warning, error and done.");
    wantedStates.push_back(*state);
  }
  std::vector<std::int16_t> wantedKinds;
  for (const std::string& text : kinds) {
    const auto kind = kindFromText(text);
    if (!kind)
      throw ProgramError(ExitCode::BadInput, "'" + text + "' is not a kind of job",
                         "Kinds are kunde, vertrag, auftrag and kundenvertrag.");
    wantedKinds.push_back(*kind);
  }
  if (states.empty() && kinds.empty()) return;
  if (wantedKinds.empty()) wantedKinds = {qxtjobkunden, qxtjobverträge, qxtJobAufträge, qxtjobkundenverträge};
  if (wantedStates.empty())
    wantedStates = {JobState::Waiting, JobState::Warning, JobState::Error, JobState::Done, JobState::Deleted};
  for (const std::int16_t kind : wantedKinds)
    for (const JobState state : wantedStates) codes_.push_back(withState(kind, state));
}

Sql ListCommand::query() const {
  Sql query = sql("Select * From ImportKopf"_sql);
  bool first = true;
  for (const std::int16_t code : codes_) {
    query.append(first ? sql(" Where JobType = "_sql, number(code))
                       : sql(" Or JobType = "_sql, number(code)));
    first = false;
  }
  return query.append(sql(" Order by Eingangsdatum"_sql));
}

ExitCode ListCommand::work(const CommandContext& context) {
  const auto jobs = context.connection().openStream(query());
  JsonWriter json(context.output.result);
  Table table(context.output, jobColumns());
  const bool lines = context.output.jsonLines;
  if (!context.output.json)
    table.head();
  else if (!lines)
    json.beginArray();
  for (std::int64_t count = 0; !jobs->eof() && (!limit || count < *limit); ++count, jobs->moveNext())
    if (lines)
      JsonWriter(context.output.result).beginObject().columns(*jobs, jobs->fieldCount()).endObject().finish();
    else if (context.output.json)
      json.beginObject().columns(*jobs, jobs->fieldCount()).endObject();
    else
      table.row(jobCells(*jobs));
  if (context.output.json && !lines)
    json.endArray().finish();
  else
    context.output.result << std::flush;
  return ExitCode::Success;
}

} // namespace qx::cli
