#include "store/job_list.h"

#include "model/job_codes.h"
#include "model/text.h"

#include <algorithm>
#include <utility>

namespace qx {
namespace {

/// The fragments join without a blank: the closing quote of one code precedes the "Or" of the next.
Sql stateCondition(const JobListFilter& filter) {
  Sql clause = sql("JobType = '0' "_sql);
  if (filter.waiting) clause.append(sql("Or JobType = '10' Or JobType = '20' Or JobType = '30'"_sql));
  if (filter.warnings) clause.append(sql("Or JobType = '11' Or JobType = '21' Or JobType = '31'"_sql));
  if (filter.errors) clause.append(sql("Or JobType = '12' Or JobType = '22' Or JobType = '32'"_sql));
  if (filter.done) clause.append(sql("Or JobType = '13' Or JobType = '23' Or JobType = '33'"_sql));
  return clause;
}

Sql orderClause(JobListKey key) {
  switch (key) {
  case JobListKey::JobType:
    return sql(" Order by JobType "_sql);
  case JobListKey::FormatDatum:
    return sql(" Order by FormatDatum "_sql);
  case JobListKey::Kundennummer:
    return sql(" Order by Kundennummer "_sql);
  case JobListKey::Bez1:
    return sql(" Order by Bez1 "_sql);
  case JobListKey::Betreff:
    return sql(" Order by Betreff "_sql);
  case JobListKey::Eingangsdatum:
    break;
  }
  return sql(" Order by Eingangsdatum "_sql);
}

/// Servers return a point in time, an embedded database the digits "yyyymmdd".
std::optional<Date> dayOf(const Value& value) {
  if (const auto moment = value.moment()) return moment->date;
  const auto digits = value.integer();
  if (!digits) return std::nullopt;
  constexpr std::int64_t year = 10000;
  constexpr std::int64_t month = 100;
  const Date date = makeDate(static_cast<int>(*digits / year), static_cast<unsigned>(*digits / month % month),
                             static_cast<unsigned>(*digits % month));
  return date.ok() ? std::optional(date) : std::nullopt;
}

Sql listColumns() {
  return sql("JobType, JobID, JobType as Vorgang, Eingangsdatum, Kundennummer, Bez1, Bemerkung, "
             "Convert(DateTime, Eingangsdatum, 104) as FormatDatum, Betreff  From [ImportKopf]"_sql);
}

Sql inOrder(Sql query, const JobListOrder& order) {
  query.append(orderClause(order.key));
  if (order.descending) query.append(sql("DESC"_sql));
  return query;
}

/// A pattern that finds the word and little else. Databases differ in the case of letters beyond ASCII and in
/// the special characters of patterns: each of those stands for any character.
std::string patternOf(std::string_view word) {
  std::string pattern = "%";
  for (const char c : word) {
    if (!beginsCharacter(c)) continue;
    const bool plain = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
    pattern += plain ? c : '_';
  }
  return pattern + '%';
}

Sql searchQuery(const JobListFilter& filter, const JobListOrder& order, const JobSearch& search) {
  Sql query = sql("Select "_sql).append(listColumns()).append(sql(" Where ("_sql));
  query.append(stateCondition(filter)).append(sql(")"_sql));
  // As a text, since servers do not look into codes, which they compare without regard to case.
  for (const std::string& word : search.words()) {
    const std::string pattern = patternOf(word);
    query.append(sql(" And (Lower(Cast(Bez1 as text)) Like '"_sql, value(pattern),
                     "' Or Lower(Cast(Kundennummer as text)) Like '"_sql, value(pattern),
                     "' Or Lower(Cast(Betreff as text)) Like '"_sql, value(pattern), "')"_sql));
  }
  return inOrder(std::move(query), order);
}

JobListRow listRowOf(Recordset& found) {
  return {jobCode(found.value("JobType")),
          found.text("JobID"),
          found.text("Eingangsdatum"),
          found.text("Kundennummer"),
          found.text("Bez1"),
          found.text("Bemerkung"),
          found.text("Betreff"),
          dayOf(found.value("FormatDatum"))};
}

} // namespace

Sql jobListQuery(const JobListFilter& filter, const JobListOrder& order) {
  static_assert(jobListLimit == 2000);
  Sql query = sql("Select Top 2000 "_sql).append(listColumns()).append(sql("Where "_sql));
  return inOrder(std::move(query.append(stateCondition(filter))), order);
}

JobSearch::JobSearch(std::string_view text) {
  const std::string all = lowerCase(text);
  for (std::size_t at = all.find_first_not_of(' '); at != std::string::npos;) {
    const std::size_t end = std::min(all.find(' ', at), all.size());
    words_.push_back(all.substr(at, end - at));
    at = all.find_first_not_of(' ', end);
  }
}

bool JobSearch::matches(const JobListRow& row) const {
  if (words_.empty()) return true;
  const std::string searched = lowerCase(row.name + '\n' + row.customer + '\n' + row.subject);
  return std::ranges::all_of(
      words_, [&](const std::string& word) { return searched.find(word) != std::string::npos; });
}

std::vector<JobListRow> findJobs(Connection& connection, const JobListFilter& filter,
                                 const JobListOrder& order, const JobSearch& search, const JobKeys* among) {
  const auto found = connection.openStream(searchQuery(filter, order, search));
  std::vector<JobListRow> rows;
  for (; !found->eof() && rows.size() < jobListLimit; found->moveNext()) {
    if (among != nullptr && !among->contains(found->text("JobID"))) continue;
    if (JobListRow row = listRowOf(*found); search.matches(row)) rows.push_back(std::move(row));
  }
  return rows;
}

std::vector<JobListRow> readJobList(Connection& connection, const JobListFilter& filter,
                                    const JobListOrder& order) {
  const auto found = connection.open(jobListQuery(filter, order));
  std::vector<JobListRow> rows;
  rows.reserve(found->recordCount());
  for (; !found->eof(); found->moveNext()) rows.push_back(listRowOf(*found));
  return rows;
}

JobCounts countJobs(Connection& connection) {
  const auto found = connection.open(sql("Select JobType, Count(*) as Anzahl From ImportKopf "
                                         "Where JobType >= 10 And JobType <= 33 Group by JobType"_sql));
  JobCounts counts;
  for (; !found->eof(); found->moveNext()) {
    const std::int64_t jobs = found->value("Anzahl").integer().value_or(0);
    switch (stateOf(jobCode(found->value("JobType")))) {
    case JobState::Waiting:
      counts.waiting += jobs;
      break;
    case JobState::Warning:
      counts.warnings += jobs;
      break;
    case JobState::Error:
      counts.errors += jobs;
      break;
    case JobState::Done:
      counts.done += jobs;
      break;
    default:
      break;
    }
  }
  return counts;
}

std::string readJobReasons(Connection& connection, std::string_view jobId) {
  const auto job =
      connection.open(sql("Select Fehlertext From ImportKopf Where JobID = '"_sql, value(jobId), "'"_sql));
  return job->eof() ? std::string() : job->text("Fehlertext");
}

} // namespace qx
