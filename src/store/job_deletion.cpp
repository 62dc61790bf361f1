#include "store/job_deletion.h"

#include "model/job_codes.h"
#include "rules/active_connection.h"

#include <optional>

namespace qx {
namespace {

bool isCustomerJob(std::int64_t jobType) { return jobType >= qxtjobkunden && jobType <= qxtJobKundenDone; }

} // namespace

/// Runs a step whose failure must not keep the next one from running.
template <class Step>
void JobDeletion::skipping(std::string_view where, std::string_view job, Step&& step) {
  try {
    step();
  } catch (const DatabaseError& failure) {
    const bool refused = dynamic_cast<const StatementError*>(&failure) != nullptr;
    if (!refused && activeConnection(environment_).ownsWork()) throw;
    ++refusedStatements_;
    environment_.diagnostics.report({where, failure.what(), job});
  }
}

/// Runs the work, which returns a number of deleted headers, as one unit of our own unless one is open.
template <class Work>
void JobDeletion::inUnit(Work&& work) {
  Connection& connection = activeConnection(environment_);
  std::optional<WorkUnit> unit;
  if (connection.ownsWork() && !connection.inWork()) unit.emplace(connection);
  const std::int64_t deleted = work();
  if (unit) unit->commit();
  deletedHeaders_ += deleted;
}

void JobDeletion::DelItem(std::string_view ItemName, bool DelKundenVertrag) {
  inUnit([&] {
    std::int64_t deleted = 0;
    std::optional<std::string> customer;
    // What the header says matters only when its contracts go too; the key of a position finds no header.
    if (DelKundenVertrag)
      skipping("DelItem", ItemName, [&] {
        const auto header = activeConnection(environment_)
                                .open(sql("Select JobType, Kundennummer From ImportKopf where JobID = '"_sql,
                                          value(ItemName), "'"_sql));
        if (!header->eof() && isCustomerJob(header->value("JobType").integer().value_or(0)))
          customer = header->text("Kundennummer");
      });
    if (customer) deleted += deleteContractsOf(*customer, ItemName);
    return deleted + deleteRows(ItemName);
  });
}

/// Deletes the headers only: the positions of customer contracts stay, on purpose, as does 43.
std::int64_t JobDeletion::deleteContractsOf(std::string_view customer, std::string_view job) {
  std::int64_t deleted = 0;
  skipping("DelItem", job, [&] {
    deleted = activeConnection(environment_)
                  .execute(sql("Delete From ImportKopf where Kundennummer = '"_sql, value(customer),
                               "' And (JobType = "_sql, number(qxtjobkundenverträge), " or JobType = "_sql,
                               number(qxtJobKundenVerträgeWarning), " or JobType = "_sql,
                               number(qxtJobKundenVerträgeError), " or JobType ="_sql,
                               number(qxtJobKundenVerträgedel), ")"_sql));
  });
  return deleted;
}

std::int64_t JobDeletion::deleteRows(std::string_view key) {
  std::int64_t deleted = 0;
  skipping("DelItem", key, [&] {
    deleted = activeConnection(environment_)
                  .execute(sql("Delete From [ImportKopf] where [JobID] = '"_sql, value(key), "'"_sql));
  });
  skipping("DelItem", key, [&] {
    activeConnection(environment_)
        .execute(sql("Delete From [ImportPos] where [JobID] = '"_sql, value(key), "' or [ChildID] = '"_sql,
                     value(key), "'"_sql));
  });
  return deleted;
}

void JobDeletion::DelArchives(const AfterJob& afterJob) {
  deleteDone(jobIds(sql("Select JobID From ImportKopf Where Right(JobType,1) = '3' "_sql)), afterJob);
}

void JobDeletion::deleteDoneBefore(const Date& date, const AfterJob& afterJob) {
  deleteDone(doneBefore(date), afterJob);
}

std::vector<std::string> JobDeletion::doneBefore(const Date& date) {
  std::vector<std::string> earlier;
  skipping("deleteDoneBefore", {}, [&] {
    const auto rows =
        activeConnection(environment_)
            .openStream(sql("Select JobID,Eingangsdatum From ImportKopf Where Right(JobType,1) = '3'"_sql));
    for (; !rows->eof(); rows->moveNext()) {
      const std::string received = rows->text("Eingangsdatum");
      const auto day = parseGermanDate(received);
      if (!day) {
        ++undatedJobs_;
        environment_.diagnostics.report({"deleteDoneBefore",
                                         "the job stays: '" + received + "' is no date of receipt",
                                         rows->text("JobID")});
      } else if (*day < date) {
        earlier.push_back(rows->text("JobID"));
      }
    }
  });
  return earlier;
}

void JobDeletion::deleteDone(const std::vector<std::string>& jobIds, const AfterJob& afterJob) {
  for (const std::string& jobId : jobIds) {
    deleteDone(jobId);
    if (afterJob) afterJob();
  }
}

void JobDeletion::deleteDone(std::string_view jobId) {
  inUnit([&] { return isDone(jobId) ? deleteRows(jobId) : 0; });
}

/// Another program may have staged the job afresh since its key was read.
bool JobDeletion::isDone(std::string_view jobId) {
  bool done = false;
  skipping("DelItem", jobId, [&] {
    const auto header = activeConnection(environment_)
                            .open(sql("Select JobType, Kundennummer From ImportKopf where JobID = '"_sql,
                                      value(jobId), "'"_sql));
    done = !header->eof() && header->text("JobType").ends_with('3');
  });
  return done;
}

std::vector<std::string> JobDeletion::jobIds(const Sql& select) {
  std::vector<std::string> keys;
  skipping("jobIds", {}, [&] {
    const auto rows = activeConnection(environment_).openStream(select);
    for (; !rows->eof(); rows->moveNext())
      if (std::string key = rows->value(std::size_t{0}).text(); !key.empty()) keys.push_back(std::move(key));
  });
  return keys;
}

} // namespace qx
