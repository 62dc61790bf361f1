#include "store/job_deletion.h"

#include "model/job_codes.h"
#include "platform/conflict_retry.h"
#include "platform/failure.h"
#include "store/work_group.h"

#include <algorithm>
#include <array>

namespace qx {
namespace {

bool isCustomerJob(std::int64_t jobType) { return jobType >= qxtjobkunden && jobType <= qxtJobKundenDone; }

bool isNoDatabaseError(const std::exception& failure) {
  return dynamic_cast<const DatabaseError*>(&failure) == nullptr;
}

/// Which failures of a deletion reach the caller: on a host's connection none of the database's.
auto letsFatal(const Connection& connection) { return connection.ownsWork() ? &isFatal : &isNoDatabaseError; }

struct Pass {
  bool PurgeOptions::*isOn;
  std::string_view text;
  Sql (*selection)();
};

constexpr std::array passes{
    Pass{&PurgeOptions::customers, "Archivdaten werden gelöscht (Kunden)",
         [] { return sql("Select JobID From ImportKopf Where JobType = '13' "_sql); }},
    Pass{&PurgeOptions::contracts, "Archivdaten werden gelöscht (Verträge)",
         [] { return sql("Select JobID From ImportKopf Where JobType = '43' "_sql); }},
    Pass{&PurgeOptions::orders, "Archivdaten werden gelöscht (Aufträge)",
         [] { return sql("Select JobID From ImportKopf Where JobType = '33' "_sql); }},
};

/// The contract jobs of a customer that are not done.
Sql fromContractsOf(std::string_view customer) {
  return sql(" From ImportKopf where Kundennummer = '"_sql, value(customer), "' And (JobType = "_sql,
             number(qxtjobkundenverträge), " or JobType = "_sql, number(qxtJobKundenVerträgeWarning),
             " or JobType = "_sql, number(qxtJobKundenVerträgeError), " or JobType ="_sql,
             number(qxtJobKundenVerträgedel), ")"_sql);
}

/// The mark that a contract is to be deleted is no job of which its sender knows.
void addGone(Recordset& header, std::vector<StateChange>& gone) {
  const auto jobType = jobCode(header.value("JobType"));
  if (stateOf(jobType) != JobState::Deleted)
    gone.push_back({header.text("JobID"), withState(jobType, JobState::Deleted), {}, {}});
}

} // namespace

/// Rolled back as a whole when it fails. Returns the number of deleted headers. A host's connection has no
/// savepoints: there the remaining statements are skipped.
template <class Work>
std::int64_t JobDeletion::part(std::string_view job, Work&& work) {
  Connection& connection = activeConnection(environment_);
  std::int64_t deleted = 0;
  const auto all = [&] {
    Savepoint savepoint(connection);
    const std::int64_t headers = work();
    savepoint.release();
    deleted = headers;
  };
  trapped(environment_.diagnostics, {"DelItem", job, letsFatal(connection)}, all,
          [&](const std::exception& failure) { left_.try_emplace(std::string(job), failure.what()); });
  return deleted;
}

void JobDeletion::DelItem(std::string_view ItemName, bool DelKundenVertrag) {
  feed_.prepare(wait_);
  deletedHeaders_ += doneAgainOnConflict(environment_, "DelItem", [&] {
    feed_.drop();
    WorkUnit unit(activeConnection(environment_), wait_, Join::IfOpen);
    const std::int64_t deleted = deleteItem(ItemName, DelKundenVertrag);
    feed_.write();
    unit.commit();
    return deleted;
  });
}

void JobDeletion::delItems(const std::vector<std::string>& jobIds, bool withContracts) {
  inGroups(jobIds, {}, &feed_, [&](std::string_view jobId) { return deleteItem(jobId, withContracts); });
}

template <class Take>
bool JobDeletion::inGroups(const std::vector<std::string>& jobIds, const GoOn& goOn, StateFeed* feed,
                           Take&& take) {
  activeConnection(environment_);
  WorkGroup group(environment_, wait_, feed);
  const std::size_t taken = group.takeAll(
      jobIds.size(), {[&](std::size_t at) {
                        group.afterCommit([this, deleted = take(jobIds[at])] { deletedHeaders_ += deleted; });
                      },
                      [&](std::size_t at, const WorkLostError& loss) {
                        environment_.diagnostics.report({"DelItem", loss.what(), jobIds[at]});
                        left_.try_emplace(jobIds[at], loss.what());
                        return false;
                      },
                      [&] { return goOn && !goOn(); }});
  return taken == jobIds.size();
}

std::unique_ptr<Recordset> JobDeletion::header(std::string_view jobId) {
  return activeConnection(environment_)
      .open(sql("Select JobType, Kundennummer From ImportKopf where JobID = '"_sql, value(jobId), "'"_sql));
}

std::int64_t JobDeletion::deleteItem(std::string_view key, bool withContracts) {
  std::vector<StateChange> gone;
  const std::int64_t headers = part(key, [&] {
    std::int64_t deleted = 0;
    // The header matters only when its contracts are deleted too; the key of a position finds no header.
    const auto row = withContracts ? header(key) : nullptr;
    if (row && !row->eof() && isCustomerJob(row->value("JobType").integer().value_or(0)))
      deleted = deleteContractsOf(row->text("Kundennummer"), gone);
    if (feed_.isKept())
      if (auto job = deletionOf(activeConnection(environment_), key)) gone.push_back(std::move(*job));
    return deleted + deleteRows(key);
  });
  if (headers > 0)
    for (StateChange& change : gone) feed_.note(std::move(change));
  return headers;
}

/// Deletes the headers only: the positions of customer contracts stay, on purpose, as does 43.
std::int64_t JobDeletion::deleteContractsOf(std::string_view customer, std::vector<StateChange>& gone) {
  Connection& connection = activeConnection(environment_);
  if (feed_.isKept()) {
    Sql select = sql("Select JobID, JobType"_sql);
    const auto contracts = connection.open(select.append(fromContractsOf(customer)));
    for (; !contracts->eof(); contracts->moveNext()) addGone(*contracts, gone);
  }
  Sql statement = sql("Delete"_sql);
  return connection.execute(statement.append(fromContractsOf(customer)));
}

std::vector<std::string> JobDeletion::contractsOf(std::string_view jobId) {
  const auto row = header(jobId);
  if (row->eof() || !isCustomerJob(row->value("JobType").integer().value_or(0))) return {};
  Sql select = sql("Select JobID"_sql);
  return jobIds(select.append(fromContractsOf(row->text("Kundennummer"))));
}

std::int64_t JobDeletion::deleteRows(std::string_view key) {
  Connection& connection = activeConnection(environment_);
  const std::int64_t deleted =
      connection.execute(sql("Delete From [ImportKopf] where [JobID] = '"_sql, value(key), "'"_sql));
  // A trigger can silently keep a row.
  if (deleted == 0 && !header(key)->eof()) throw StatementError("the database did not delete the job", 0);
  connection.execute(sql("Delete From [ImportPos] where [JobID] = '"_sql, value(key),
                         "' or [ChildID] = '"_sql, value(key), "'"_sql));
  return deleted;
}

std::vector<std::string> JobDeletion::doneJobs() {
  return jobIds(sql("Select JobID From ImportKopf Where Right(JobType,1) = '3' "_sql));
}

/// Another program may have staged a job afresh since its key was read.
bool JobDeletion::deleteDone(const std::vector<std::string>& jobIds, const GoOn& goOn) {
  return inGroups(jobIds, goOn, nullptr, [&](std::string_view jobId) {
    return part(jobId, [&]() -> std::int64_t {
      const auto row = header(jobId);
      return !row->eof() && row->text("JobType").ends_with('3') ? deleteRows(jobId) : 0;
    });
  });
}

template <class Select>
void JobDeletion::selecting(std::string_view where, Select&& select) {
  trapped(environment_.diagnostics, {where, {}, letsFatal(activeConnection(environment_))}, select,
          [this](const std::exception&) { ++refusedSelections_; });
}

std::vector<std::string> JobDeletion::doneBefore(const Date& date) {
  std::vector<std::string> earlier;
  selecting("deleteDoneBefore", [&] {
    const auto rows =
        activeConnection(environment_)
            .openStream(sql("Select JobID,Eingangsdatum From ImportKopf Where Right(JobType,1) = '3'"_sql));
    for (; !rows->eof(); rows->moveNext()) {
      const std::string received = rows->text("Eingangsdatum");
      const auto day = parseGermanDate(received);
      if (!day) {
        constexpr std::size_t mostNamed = 100;
        ++undatedJobs_;
        if (undated_.size() < mostNamed) undated_.push_back(rows->text("JobID"));
        environment_.diagnostics.report({"deleteDoneBefore",
                                         "the job is kept: '" + received + "' is not a date of receipt",
                                         rows->text("JobID")});
      } else if (*day < date) {
        earlier.push_back(rows->text("JobID"));
      }
    }
  });
  return earlier;
}

std::vector<std::string> JobDeletion::jobIds(const Sql& select) {
  std::vector<std::string> keys;
  selecting("jobIds", [&] {
    const auto rows = activeConnection(environment_).openStream(select);
    for (; !rows->eof(); rows->moveNext())
      if (std::string key = rows->value(std::size_t{0}).text(); !key.empty()) keys.push_back(std::move(key));
  });
  return keys;
}

std::string JobDeletion::germanLeft() const {
  constexpr std::size_t named = 10;
  if (left_.empty()) return {};
  std::string keys;
  std::size_t rest = left_.size();
  for (const auto& [jobId, reason] : left_) {
    if (left_.size() - rest == named) break;
    keys += (keys.empty() ? "" : ", ") + jobId;
    --rest;
  }
  if (rest > 0) keys += " und " + std::to_string(rest) + " weitere";
  return "Die Datenbank lehnt es ab, diese Vorgänge zu löschen: " + keys;
}

PurgeOptions PurgeOptions::read(const Settings& settings) {
  return {settings[option::purgeCustomers], settings[option::purgeContracts], settings[option::purgeOrders]};
}

bool purgeArchives(JobDeletion& deletion, const PurgeOptions& options,
                   const std::function<void(std::string_view text)>& progress,
                   const JobDeletion::GoOn& goOn) {
  return std::ranges::all_of(passes, [&](const Pass& pass) {
    if (!(options.*pass.isOn)) return true;
    if (!goOn()) return false;
    progress(pass.text);
    return deletion.deleteDone(deletion.jobIds(pass.selection()), goOn);
  });
}

} // namespace qx
