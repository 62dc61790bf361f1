#include "cli/commands.h"

#include "cli/job_terms.h"
#include "cli/json_writer.h"
#include "cli/terminal_text.h"
#include "platform/value.h"

namespace qx::cli {
namespace {

/// Columns of fixed width, so that rows can be printed as they arrive.
std::string listLine(std::string_view state, std::string_view kind, std::string_view date,
                     std::string_view customer, std::string_view jobId, std::string_view title,
                     std::string_view remark) {
  constexpr std::size_t stateWidth = 8;
  constexpr std::size_t kindWidth = 13;
  constexpr std::size_t shortWidth = 10;
  constexpr std::size_t keyWidth = 32;
  constexpr std::size_t textWidth = 24;
  return tableLine({{state, stateWidth},
                    {kind, kindWidth},
                    {date, shortWidth},
                    {customer, shortWidth},
                    {jobId, keyWidth},
                    {title, textWidth},
                    {remark, 2 * textWidth}}) +
         '\n';
}

std::string listLine(Recordset& row) {
  const auto jobType = jobCode(row.value("JobType"));
  std::string remark = row.text("Betreff");
  if (remark.empty()) remark = row.text("Fehlertext");
  return listLine(stateText(jobType), kindText(jobType), row.text("Eingangsdatum"), row.text("Kundennummer"),
                  row.text("JobID"), row.text("Bez1"), remark);
}

} // namespace

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
  std::ostream& output = context.output.result;
  JsonWriter json(output);
  if (context.output.json)
    json.beginArray();
  else
    output << listLine("Stand", "Vorgang", "Eingang", "Kunde", "JobID", "Name", "Betreff, Fehlertext");
  for (std::int64_t count = 0; !jobs->eof() && (!limit || count < *limit); ++count, jobs->moveNext())
    if (context.output.json)
      json.beginObject().columns(*jobs, jobs->fieldCount()).endObject();
    else
      output << listLine(*jobs);
  if (context.output.json)
    json.endArray().finish();
  else
    output << std::flush;
  return ExitCode::Success;
}

} // namespace qx::cli
