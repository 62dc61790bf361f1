#include "store/parked_jobs.h"

#include "platform/conflict_retry.h"

namespace qx {
namespace {

Sql parkedCondition(const JobListFilter& filter) {
  // Code 0 makes a list of the codes that are left out.
  Sql condition = sql("JobType In (0"_sql);
  if (filter.warnings) condition.append(sql(", 11, 21, 31"_sql));
  if (filter.errors) condition.append(sql(", 12, 22, 32"_sql));
  return condition.append(sql(")"_sql));
}

Sql releaseOf(std::string_view jobId, bool released) {
  return sql("Update ImportKopf Set ProcessWarning = "_sql, number(released ? 1 : 0), " Where JobID = '"_sql,
             value(jobId), "' And "_sql)
      .append(parkedCondition({}));
}

std::vector<std::string> keysOf(Connection& connection, const Sql& select) {
  std::vector<std::string> keys;
  const auto rows = connection.open(select);
  for (; !rows->eof(); rows->moveNext()) keys.push_back(rows->text("JobID"));
  return keys;
}

} // namespace

ReleasedJobs readReleasedJobs(Connection& connection) {
  ReleasedJobs released;
  const auto rows =
      connection.openStream(sql("Select JobID, JobType From ImportKopf Where ProcessWarning = 1 And "_sql)
                                .append(parkedCondition({})));
  for (; !rows->eof(); rows->moveNext()) {
    const JobState state = stateOf(jobCode(rows->value("JobType")));
    ++(state == JobState::Warning ? released.counts.warnings : released.counts.errors);
    released.keys.insert(rows->text("JobID"));
  }
  return released;
}

std::size_t setReleased(Environment& environment, const std::vector<std::string>& jobIds, bool released,
                        BusyWait* wait) {
  return doneAgainOnConflict(environment, "release", [&] {
    Connection& connection = activeConnection(environment);
    WorkUnit unit(connection, wait, Join::IfOpen);
    std::size_t changed = 0;
    for (const std::string& jobId : jobIds)
      if (connection.execute(releaseOf(jobId, released)) > 0) ++changed;
    unit.commit();
    return changed;
  });
}

void forEachReason(Connection& connection, const JobListFilter& filter,
                   const std::function<void(const std::string& jobId, const std::string& reasons)>& take) {
  const auto rows = connection.openStream(sql("Select JobID, Fehlertext From ImportKopf Where "_sql)
                                              .append(parkedCondition(filter))
                                              .append(sql(" And Fehlertext Is Not Null"_sql)));
  for (; !rows->eof(); rows->moveNext()) take(rows->text("JobID"), rows->text("Fehlertext"));
}

std::vector<std::string> waitingJobs(Connection& connection) {
  return keysOf(connection, sql("Select JobID From ImportKopf Where JobType In (10, 20, 30)"_sql));
}

std::vector<std::string> contractsWithCustomer(Connection& connection, std::string_view customer) {
  return keysOf(connection, sql("Select JobID From ImportKopf Where Kundennummer = '"_sql, value(customer),
                                "' And JobType In (40, 41, 42, 44)"_sql));
}

} // namespace qx
