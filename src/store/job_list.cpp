#include "store/job_list.h"

#include "model/job_codes.h"

#include <utility>

namespace qx {
namespace {

/// The fragments join without a blank: the closing quote of one code precedes the "Or" of the next.
Sql whereClause(const JobListFilter& filter) {
  Sql clause = sql("Where JobType = '0' "_sql);
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

Sql listQuery(Sql query, const JobListFilter& filter, const JobListOrder& order) {
  query.append(sql("JobType, JobID, JobType as Vorgang, Eingangsdatum, Kundennummer, Bez1, Bemerkung, "
                   "Convert(DateTime, Eingangsdatum, 104) as FormatDatum, Betreff  From [ImportKopf]"_sql));
  query.append(whereClause(filter)).append(orderClause(order.key));
  if (order.descending) query.append(sql("DESC"_sql));
  return query;
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
  return listQuery(sql("Select Top 2000 "_sql), filter, order);
}

std::vector<JobListRow> findJobs(Connection& connection, const JobListFilter& filter,
                                 const JobListOrder& order,
                                 const std::function<bool(const JobListRow&)>& wanted) {
  const auto found = connection.openStream(listQuery(sql("Select "_sql), filter, order));
  std::vector<JobListRow> rows;
  for (; !found->eof() && rows.size() < jobListLimit; found->moveNext())
    if (JobListRow row = listRowOf(*found); wanted(row)) rows.push_back(std::move(row));
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
