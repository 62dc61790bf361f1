#include "cli/commands.h"

#include "cli/close_words.h"
#include "cli/job_table.h"
#include "cli/job_terms.h"
#include "cli/json_members.h"
#include "cli/terminal_text.h"
#include "model/text.h"
#include "platform/value.h"
#include "program/common_options.h"
#include "store/json_writer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx::cli {
namespace {

constexpr std::array searchedColumns{
    ColumnName("JobID"),     ColumnName("Kundennummer"), ColumnName("Suchbegriff"),
    ColumnName("Bez1"),      ColumnName("Bez2"),         ColumnName("Betreff"),
    ColumnName("Bemerkung"), ColumnName("Fehlertext"),   ColumnName("Vertragsnummer")};

constexpr std::array sortKeys{"eingang", "vorgang", "kunde", "jobid", "name", "betreff"};

std::string_view keyOf(std::string_view sort) { return sort.starts_with('-') ? sort.substr(1) : sort; }

Sql sortTerm(std::string_view sort) {
  const std::string_view key = keyOf(sort);
  if (key == "vorgang") return sql("JobType"_sql);
  if (key == "kunde") return sql("Kundennummer"_sql);
  if (key == "jobid") return sql("JobID"_sql);
  if (key == "name") return sql("Bez1"_sql);
  if (key == "betreff") return sql("Betreff"_sql);
  return sql("Eingangsdatum"_sql);
}

/// A field of a CSV file, in quotes where it must be.
std::string csvField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

/// Prints the current row of a list in the form that is asked for.
class ListPrinter {
public:
  ListPrinter(const Output& output, Recordset& jobs, const std::vector<std::string>& columns, bool csv)
      : output_(output), jobs_(jobs), json_(output.result), csv_(csv), table_(output, tableColumns(columns)),
        whole_(columns.empty()) {
    for (const std::string& name : columns) chosen_.push_back(columnNamed(jobs, name));
    if (chosen_.empty() && (csv || output.json))
      for (std::size_t i = 0; i < jobs.fieldCount(); ++i) chosen_.push_back(i);
    if (csv_)
      csvLine([&](std::size_t column) { return std::string(jobs_.fieldName(column)); });
    else if (!output.json)
      table_.head();
    else if (!output.jsonLines)
      json_.beginObject().key("jobs").beginArray();
  }

  void add() {
    if (csv_) {
      csvLine([&](std::size_t column) { return jobs_.value(column).text(); });
    } else if (output_.jsonLines) {
      JsonWriter line(output_.result);
      writeRow(line);
      line.finish();
    } else if (output_.json) {
      writeRow(json_);
    } else if (chosen_.empty()) {
      table_.row(jobCells(jobs_));
    } else {
      std::vector<TableCell> cells;
      for (const std::size_t column : chosen_) cells.push_back({jobs_.value(column).text()});
      table_.row(cells);
    }
  }

  void finish() {
    if (output_.json && !output_.jsonLines) json_.endArray().endObject().finish();
    output_.result.flush();
    output_.data.flush();
  }

private:
  static std::vector<TableColumn> tableColumns(const std::vector<std::string>& names) {
    if (names.empty()) return jobColumns();
    constexpr std::size_t usual = 16;
    constexpr std::size_t keyWidth = 32;
    std::vector<TableColumn> columns;
    for (const std::string& name : names) {
      const std::size_t width = equalCodes(name, "JobID") ? keyWidth : usual;
      columns.push_back({name, width, std::min<std::size_t>(width, 8)});
    }
    return columns;
  }

  static std::size_t columnNamed(Recordset& jobs, const std::string& name) {
    std::vector<std::string> known;
    for (std::size_t i = 0; i < jobs.fieldCount(); ++i) {
      if (ColumnName(jobs.fieldName(i)) == ColumnName(name)) return i;
      known.emplace_back(jobs.fieldName(i));
    }
    const std::string meant = closestWord(name, known);
    throw ProgramError(ExitCode::BadInput,
                       "there is no column '" + name + "'" +
                           (meant.empty() ? "" : "; did you mean '" + meant + "'?"),
                       "Columns are separated by commas; 'qximportjob list --csv --limit 0' shows them all.");
  }

  void writeRow(JsonWriter& json) const {
    json.beginObject();
    for (const std::size_t column : chosen_)
      json.key(propertyName(jobs_.fieldName(column))).value(jobs_.value(column));
    if (whole_) writeOutcome(json, jobs_);
    json.endObject();
  }

  template <class Field>
  void csvLine(Field&& field) const {
    for (std::size_t i = 0; i < chosen_.size(); ++i)
      output_.data << (i == 0 ? "" : ",") << csvField(field(chosen_[i]));
    output_.data << "\r\n";
  }

  const Output& output_;
  Recordset& jobs_;
  JsonWriter json_;
  bool csv_;
  Table table_;
  std::vector<std::size_t> chosen_;
  bool whole_; ///< no columns were asked for
};

} // namespace

void ListCommand::prepare() {
  if (limit && *limit < 0)
    throw ProgramError(ExitCode::BadInput, "the limit must not be negative",
                       "Give the number of jobs to list.");
  sort = asciiLower(composed(sort));
  if (std::ranges::find(sortKeys, keyOf(sort)) == sortKeys.end())
    throw ProgramError(ExitCode::BadInput, "the list cannot be sorted by '" + sort + "'",
                       "Sort by eingang, vorgang, kunde, jobid, name or betreff; -kunde is the reverse.");
  if (since) day_ = typedDate(*since);
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
  const auto anyOf = [&](bool& first, const Sql& condition) {
    query.append(first ? sql(" Where ("_sql) : sql(" Or "_sql)).append(condition);
    first = false;
  };
  bool first = true;
  for (const std::int16_t code : codes_) anyOf(first, sql("JobType = "_sql, number(code)));
  if (!codes_.empty()) query.append(sql(")"_sql));
  for (std::size_t i = 0; i < jobIds.size(); ++i)
    query.append(i > 0            ? sql(" Or "_sql)
                 : codes_.empty() ? sql(" Where ("_sql)
                                  : sql(" And ("_sql))
        .append(sql("JobID = '"_sql, value(jobIds[i]), "'"_sql));
  if (!jobIds.empty()) query.append(sql(")"_sql));
  const bool falling = sort.starts_with('-');
  query.append(sql(" Order by "_sql)).append(sortTerm(sort));
  if (falling) query.append(sql(" DESC"_sql));
  return query;
}

bool ListCommand::wants(Recordset& job) const {
  if (day_) {
    const auto received = parseGermanDate(job.text("Eingangsdatum"));
    if (!received || *received < *day_) return false;
  }
  if (search.empty()) return true;
  const std::string wanted = lowerCase(search);
  return std::ranges::any_of(searchedColumns, [&](ColumnName column) {
    return lowerCase(job.text(column)).find(wanted) != std::string::npos;
  });
}

ExitCode ListCommand::work(const CommandContext& context) {
  if (csv && context.output.json)
    throw ProgramError(ExitCode::BadInput, "--csv and --json exclude each other", "Omit one of them.");
  const auto jobs = context.connection().openStream(query());
  ListPrinter printer(context.output, *jobs, columns, csv);
  std::int64_t count = 0;
  for (; !jobs->eof() && (!limit || count < *limit); jobs->moveNext()) {
    if (!wants(*jobs)) continue;
    printer.add();
    ++count;
  }
  printer.finish();
  return ExitCode::Success;
}

} // namespace qx::cli
