#include "cli/job_terms.h"

#include "cli/terminal_text.h"
#include "engine/findings.h"
#include "model/text.h"
#include "program/program_error.h"

#include <algorithm>
#include <array>

namespace qx::cli {
namespace {

struct Kind {
  std::int16_t code;
  std::string_view argument;
  std::string_view text;
  std::string_view transaction;
};
constexpr std::array kinds{Kind{qxtjobkunden, "kunde", "Kunde", "Kunden"},
                           Kind{qxtjobverträge, "vertrag", "Vertrag", "Vertrag"},
                           Kind{qxtJobAufträge, "auftrag", "Auftrag", "Auftrag"},
                           Kind{qxtjobkundenverträge, "kundenvertrag", "Kundenvertrag", "Vertrag"}};

struct State {
  JobState state;
  std::string_view argument; ///< empty when it cannot be given as an argument
  std::string_view text;
};
constexpr std::array states{
    State{JobState::Waiting, "waiting", "wartet"}, State{JobState::Warning, "warning", "Warnung"},
    State{JobState::Error, "error", "Fehler"}, State{JobState::Done, "done", "erledigt"},
    State{JobState::Deleted, "", "gelöscht"}};

struct Selection {
  qxProcessState state;
  std::string_view argument;
  std::string_view plain;
};
constexpr std::array selections{Selection{qxProcessState::ProcessAll, "alle", "alle"},
                                Selection{qxProcessState::ProcessKunden, "kunden", "kunden"},
                                Selection{qxProcessState::ProcessVerträge, "verträge", "vertraege"},
                                Selection{qxProcessState::ProcessAufträge, "aufträge", "auftraege"},
                                Selection{qxProcessState::ProcessZubehör, "zubehör", "zubehoer"}};

const Kind* findKind(std::int16_t jobType) {
  for (const Kind& kind : kinds)
    if (jobType >= kind.code && jobType < kind.code + 10) return &kind;
  return nullptr;
}

} // namespace

std::optional<std::int16_t> kindFromText(std::string_view text) {
  for (const Kind& kind : kinds)
    if (text == kind.argument) return kind.code;
  return std::nullopt;
}

std::optional<JobState> stateFromText(std::string_view text) {
  for (const State& state : states)
    if (!text.empty() && text == state.argument) return state.state;
  return std::nullopt;
}

std::optional<qxProcessState> selectionFromText(std::string_view text) {
  const std::string typed = composed(text);
  for (const Selection& selection : selections)
    if (typed == selection.argument || typed == selection.plain) return selection.state;
  return std::nullopt;
}

std::string_view kindText(std::int16_t jobType) {
  const Kind* kind = findKind(jobType);
  return kind == nullptr ? "?" : kind->text;
}

std::string_view stateText(std::int16_t jobType) {
  if (findKind(jobType) == nullptr) return "?";
  for (const State& state : states)
    if (state.state == stateOf(jobType)) return state.text;
  return "?";
}

Style stateStyle(std::int16_t jobType) {
  switch (stateOf(jobType)) {
  case JobState::Warning:
    return Style::Warning;
  case JobState::Error:
    return Style::Bad;
  case JobState::Done:
    return Style::Good;
  case JobState::Deleted:
    return Style::Faint;
  case JobState::Waiting:
    break;
  }
  return Style::Plain;
}

Style statusStyle(std::string_view status) {
  if (status == severityWord(CheckStatus::Error)) return Style::Bad;
  if (status == severityWord(CheckStatus::Warning)) return Style::Warning;
  return status == "Erledigt" ? Style::Good : Style::Plain;
}

std::string briefReasons(std::string_view reasons) {
  std::string first;
  std::size_t others = 0;
  while (!reasons.empty()) {
    const std::string_view line = trimWhitespace(takeLine(reasons));
    if (line.empty() || line == findingsSentence || line.starts_with(hintMark)) continue;
    if (first.empty())
      first = line;
    else
      ++others;
  }
  return others == 0 ? first : first + " (+" + std::to_string(others) + ")";
}

std::string_view processText(std::int16_t jobType) {
  const Kind* kind = findKind(jobType);
  return kind == nullptr ? "?" : kind->transaction;
}

JobBrief briefOf(Recordset& header) {
  const auto jobType = jobCode(header.value("JobType"));
  const bool contract = kindOf(jobType) == qxtjobverträge || kindOf(jobType) == qxtjobkundenverträge;
  return {header.text("JobID"), jobType,
          contract ? header.text("Vertragsnummer") : header.text("Kundennummer")};
}

std::optional<JobBrief> findJob(Connection& connection, std::string_view jobId) {
  const auto header = connection.open(
      sql("Select JobID, JobType, Kundennummer, Vertragsnummer From ImportKopf Where JobID = '"_sql,
          value(jobId), "'"_sql));
  if (header->eof()) return std::nullopt;
  return briefOf(*header);
}

std::vector<JobBrief> findJobs(Connection& connection, const std::vector<std::string>& jobIds) {
  std::vector<JobBrief> jobs;
  for (const std::string& jobId : jobIds) {
    auto job = findJob(connection, jobId);
    if (!job)
      throw ProgramError(ExitCode::BadInput, "there is no job '" + jobId + "'",
                         "Nothing was changed. 'qximportjob list' shows the jobs.");
    const bool known =
        std::ranges::any_of(jobs, [&](const JobBrief& other) { return equalCodes(other.jobId, job->jobId); });
    if (!known) jobs.push_back(std::move(*job));
  }
  return jobs;
}

} // namespace qx::cli
