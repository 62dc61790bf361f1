#include "cli/job_terms.h"

#include "cli/terminal_text.h"
#include "engine/findings.h"
#include "model/text.h"
#include "program/program_error.h"

#include <algorithm>
#include <array>
#include <utility>

namespace qx::cli {
namespace {

/// The ways of typing a word, in lower case, umlauts as two letters.
using Spellings = std::array<std::string_view, 6>;

struct Kind {
  std::int16_t code = 0;
  Spellings spellings;
  std::string_view text;
  std::string_view transaction;
};
constexpr std::array kinds{
    Kind{qxtjobkunden, {"kunde", "kunden", "customer", "customers"}, "Kunde", "Kunden"},
    Kind{qxtjobverträge, {"vertrag", "vertraege", "contract", "contracts"}, "Vertrag", "Vertrag"},
    Kind{qxtJobAufträge, {"auftrag", "auftraege", "order", "orders"}, "Auftrag", "Auftrag"},
    Kind{qxtjobkundenverträge,
         {"kundenvertrag", "kundenvertraege", "customercontract", "customercontracts", "customer-contract",
          "customer-contracts"},
         "Kundenvertrag",
         "Vertrag"}};

struct State {
  JobState state{};
  Spellings spellings; ///< none when it cannot be given as an argument
  std::string_view text;
};
constexpr std::array states{
    State{JobState::Waiting, {"waiting", "wartet", "wartend"}, "wartet"},
    State{JobState::Warning, {"warning", "warnings", "warnung", "warnungen"}, "Warnung"},
    State{JobState::Error, {"error", "errors", "fehler"}, "Fehler"},
    State{JobState::Done, {"done", "erledigt"}, "erledigt"}, State{JobState::Deleted, {}, "gelöscht"}};

struct Selection {
  qxProcessState state{};
  Spellings spellings;
};
constexpr std::array selections{
    Selection{qxProcessState::ProcessAll, {"alle", "all"}},
    Selection{qxProcessState::ProcessKunden, {"kunden", "kunde", "customers", "customer"}},
    Selection{qxProcessState::ProcessVerträge, {"vertraege", "vertrag", "contracts", "contract"}},
    Selection{qxProcessState::ProcessAufträge, {"auftraege", "auftrag", "orders", "order"}},
    Selection{qxProcessState::ProcessZubehör, {"zubehoer", "accessories", "accessory"}}};

constexpr std::string_view noKind = "?";

/// As the spellings are written.
std::string plainSpelling(std::string_view typed) {
  std::string word = lowerCase(composed(typed));
  for (const auto& [umlaut, letters] :
       {std::pair<std::string_view, std::string_view>{"ä", "ae"}, {"ö", "oe"}, {"ü", "ue"}})
    for (auto at = word.find(umlaut); at != std::string::npos; at = word.find(umlaut, at))
      word.replace(at, umlaut.size(), letters);
  return word;
}

template <class Rows>
auto rowOf(const Rows& rows, std::string_view typed) -> const typename Rows::value_type* {
  const std::string word = plainSpelling(typed);
  if (word.empty()) return nullptr;
  for (const auto& row : rows)
    if (std::ranges::find(row.spellings, word) != row.spellings.end()) return &row;
  return nullptr;
}

const Kind* findKind(std::int16_t jobType) {
  for (const Kind& kind : kinds)
    if (jobType >= kind.code && jobType < kind.code + 10) return &kind;
  return nullptr;
}

} // namespace

std::optional<std::int16_t> kindFromText(std::string_view text) {
  const Kind* kind = rowOf(kinds, text);
  return kind == nullptr ? std::nullopt : std::optional(kind->code);
}

std::optional<JobState> stateFromText(std::string_view text) {
  const State* state = rowOf(states, text);
  return state == nullptr ? std::nullopt : std::optional(state->state);
}

std::optional<qxProcessState> selectionFromText(std::string_view text) {
  const Selection* selection = rowOf(selections, text);
  return selection == nullptr ? std::nullopt : std::optional(selection->state);
}

std::string_view kindText(std::int16_t jobType) {
  const Kind* kind = findKind(jobType);
  return kind == nullptr ? noKind : kind->text;
}

std::string_view stateText(std::int16_t jobType) {
  if (findKind(jobType) == nullptr) return "?";
  for (const State& state : states)
    if (state.state == stateOf(jobType)) return state.text;
  return "?";
}

std::string_view kindWord(std::int16_t jobType) {
  const Kind* kind = findKind(jobType);
  return kind == nullptr ? std::string_view() : kind->spellings.front();
}

std::string_view stateWord(std::int16_t jobType) {
  if (findKind(jobType) == nullptr) return {};
  for (const State& state : states)
    if (state.state == stateOf(jobType))
      return state.spellings.front().empty() ? "deleted" : state.spellings.front();
  return {};
}

std::vector<std::string_view> kindWords() {
  std::vector<std::string_view> words;
  words.reserve(kinds.size());
  for (const Kind& kind : kinds) words.push_back(kind.spellings.front());
  return words;
}

std::vector<std::string_view> stateWords() {
  std::vector<std::string_view> words;
  words.reserve(states.size());
  for (const State& state : states) words.push_back(stateWord(withState(kinds.front().code, state.state)));
  return words;
}

std::vector<std::string_view> processTexts() {
  std::vector<std::string_view> texts{noKind};
  for (const Kind& kind : kinds)
    if (std::ranges::find(texts, kind.transaction) == texts.end()) texts.push_back(kind.transaction);
  return texts;
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
  return kind == nullptr ? noKind : kind->transaction;
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
